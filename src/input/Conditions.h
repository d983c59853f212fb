#pragma once

#include <quarry/quarry_export.h>

#include <QString>

// The WHERE fragments of the single-condition dialogs, built from what the
// operator typed. The fragments' blanks are part of what hosts expect.
namespace quarry {

// text without the characters that could end an SQL string literal or widen
// a LIKE beyond its wildcards on one of the dialects: the single quote, the
// backslash (an escape in MySQL literals) and square brackets (a character
// class in LIKE on SQL Server and Sybase). The text boxes refuse them; this
// catches text that reached a box some other way.
QUARRY_EXPORT QString dropLiteralBreakers(QString text);

// ToLikePattern of typed, safe to put between quotes.
QUARRY_EXPORT QString likeOperand(const QString &typed);

QUARRY_EXPORT QString yjkCondition(const QString &typed);
QUARRY_EXPORT QString wdhCondition(const QString &typed);
QUARRY_EXPORT QString accCondition(const QString &typed);
QUARRY_EXPORT QString clerkCondition(const QString &typed, qint16 profileCode);
QUARRY_EXPORT QString chequeSeriesCondition(const QString &typed);

// The date range of FrmDate, checked: which box is wrong, or both dates as
// yyyy-mm-dd. Blank boxes (masked text "    -  -  ") mean open ends.
struct DateRange
{
    enum class Fault { None, Start, End, EndBeforeStart };
    Fault fault = Fault::None;
    QString start;
    QString end;
};
QUARRY_EXPORT DateRange checkDateRange(const QString &startBox, const QString &endBox);
QUARRY_EXPORT QString dateCondition(const DateRange &range);

} // namespace quarry
