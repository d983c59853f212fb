#pragma once

#include <quarry/quarry_export.h>

#include <QString>

#include <optional>

namespace quarry {

// The operator's pattern ("*" any run, "?" one character, empty for all) as
// an SQL LIKE pattern. Only the first "*" becomes "%": a second one reaches
// the SQL as a literal "*", which the system has always done. Single quotes
// are dropped, but only after the empty test, so a text of quotes only gives
// an empty pattern rather than "%".
QUARRY_EXPORT QString ToLikePattern(QString text);

// 1 when text is a date, rewritten in place as yyyy-mm-dd; 0 when it is not,
// text then unchanged. Takes yyyy-m-d and yyyy/m/d (one or two digit month
// and day, years 100 to 9999); anything with a blank in it, such as a partly
// filled date mask, is no date.
QUARRY_EXPORT qint16 CheckDateText(QString &text);

// The date in a masked date box's text, blanks left out ("2009-1 -5 " is
// 2009-01-05), as yyyy-mm-dd; nothing when it holds no date.
QUARRY_EXPORT std::optional<QString> maskedDate(const QString &masked);
// The time of day in a masked time box's text, blanks left out, as
// hh:mm:ss; nothing when it holds no time.
QUARRY_EXPORT std::optional<QString> maskedTime(const QString &masked);

} // namespace quarry
