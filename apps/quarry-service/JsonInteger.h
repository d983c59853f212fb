#pragma once

#include <QJsonValue>

#include <cmath>
#include <limits>
#include <optional>

namespace quarry::service {

// A JSON number that is a whole number in Int's range; nullopt for any
// other value.
template<typename Int>
std::optional<Int> jsonInteger(const QJsonValue &value)
{
    // 0.5 for what is no number at all.
    const double number = value.toDouble(0.5);
    if (number < std::numeric_limits<Int>::min() || number > std::numeric_limits<Int>::max()
        || number != std::trunc(number))
        return std::nullopt;
    return Int(number);
}

} // namespace quarry::service
