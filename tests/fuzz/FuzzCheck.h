#pragma once

#include <QString>

#include <cstdlib>

// What the fuzz targets share: a failed property ends the run, so that
// libFuzzer keeps the input that broke it.
namespace quarry::fuzz {

inline void require(bool property)
{
    if (!property)
        std::abort();
}

} // namespace quarry::fuzz
