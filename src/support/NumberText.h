#pragma once

#include <quarry/quarry_export.h>

#include <QString>

#include <optional>

// Numbers in text, read as the system's old conversions read them.
namespace quarry {

// The number at the start of the text, 0 when there is none, nothing when it
// is too large for a Double. Blanks, tabs and line breaks anywhere in it are
// skipped, and "D" works as the exponent letter, as the lenient conversion
// always did.
QUARRY_EXPORT std::optional<double> leadingNumber(const QString &text);

// The whole text as a number (blanks around it allowed), or nothing.
QUARRY_EXPORT std::optional<double> strictNumber(const QString &text);

} // namespace quarry
