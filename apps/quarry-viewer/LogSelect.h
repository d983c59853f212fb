#pragma once

#include "LogEntry.h"

#include <QString>

namespace quarry::viewer {

// The statement that shows a log for the condition CQuarry handed back: the
// log table's SELECT with the WHERE clause appended, or the dialog's own
// SELECT. Empty when the condition is (the operator cancelled).
QString logSelect(const LogEntry &entry, const QString &condition);

// The number of rows a statement yields, as one row of one column.
QString countSelect(const QString &select);

// How the station's engine cuts a slice out of an ordered result.
enum class Paging {
    LimitOffset, // SQLite, MySQL and MariaDB
    OffsetFetch, // SQL Server 2012 and later
    None,        // Sybase ASE: the whole ordered result in one read
};

// Where a page starts: after `offset` rows, or (when keyAfter is a literal
// of the driver's) at the first row whose key follows that value. Reading
// on from the key of the page before costs the server nothing for the rows
// it skips; an offset makes it walk them.
struct PageStart
{
    qint64 offset = 0;
    QString keyAfter;
};

// At most `rows` rows of select in the order of its column key (one value
// per row), from start.
QString pageSelect(const QString &select, const QString &key, Paging paging, const PageStart &start,
                   int rows);

} // namespace quarry::viewer
