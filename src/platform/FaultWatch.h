#pragma once

#include <quarry/QuarryError.h>
#include <quarry/quarry_export.h>

#include <optional>

namespace quarry {

// Collects the faults that are told the operator in a box and not raised
// (a configuration that cannot be read, a database that cannot be reached)
// while it lives, so that the call under way can tell its caller that it
// failed. One watch per thread is active: a new one stands in for the one
// before it until it ends.
class QUARRY_EXPORT FaultWatch
{
public:
    FaultWatch();
    ~FaultWatch();
    FaultWatch(const FaultWatch &) = delete;
    FaultWatch &operator=(const FaultWatch &) = delete;

    // The first fault reported while the watch was active.
    const std::optional<QuarryError> &firstFault() const { return m_first; }

    // Hands a fault that the operator was told about to the active watch, if any.
    static void report(const QuarryError &fault);

private:
    FaultWatch *m_previous;
    std::optional<QuarryError> m_first;
};

} // namespace quarry
