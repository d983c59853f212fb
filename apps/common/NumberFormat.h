#pragma once

#include <QString>
#include <QVariant>

namespace quarry::viewer {

// The role under which a log's rows give a column's number format, for a
// spreadsheet to keep the number and show it so.
constexpr int NumberFormatRole = Qt::UserRole + 1;

// Whether pattern is a number format of the catalogue: zeros for the
// digits always written before the point, and after it the decimals
// ("0.00" an amount as the bank writes it, "0000" a code of four digits).
bool isNumberFormat(const QString &pattern);

// The value written by the pattern: 5172.8 by "0.00" is "5172.80", 101 by
// "0000" is "0101". A value that is no number stays the text it is.
QString formatNumber(const QVariant &value, const QString &pattern);

} // namespace quarry::viewer
