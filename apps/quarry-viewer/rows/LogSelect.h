#pragma once

#include "LogEntry.h"

#include <QString>
#include <QStringList>

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

// The order of the rows: by columns and then the key, all one way (no
// columns: the key alone). The key (one value per row) makes the order
// total, so that a page can start exactly after the last row of the one
// before. Every engine sorts NULL before any value going up, after going
// down.
struct RowOrder
{
    QStringList columns; // as the engine names them
    Qt::SortOrder direction = Qt::AscendingOrder;

    friend bool operator==(const RowOrder &, const RowOrder &) = default;
};

// The log's own order: newest first, by its day and time and then the key.
RowOrder newestFirst(const LogEntry &entry);

// Where a page starts: after `offset` rows from the first or (when keyAfter
// is a literal of the driver's) from the row after the one with that key
// and, for each column of the order, the literal in columnsAfter ("NULL"
// for none). Reading on from the last row of the page before costs the
// server nothing for the rows it skips; an offset makes it walk them.
struct PageStart
{
    qint64 offset = 0;
    QString keyAfter;
    QStringList columnsAfter;
};

// Where the engine keeps an order sorted once, for pages read by position:
// a temporary table of the keys or of the rows themselves (of the
// connection that sorted), numbered from 1 in the order as it is filled:
// by SQLite's rowid, by MySQL's and MariaDB's AUTO_INCREMENT.
enum class PositionTable {
    None, // each page is sorted anew
    RowId,
    AutoIncrement,
};

// The statements that sort the rows of select in the order into the table:
// copies of the columns `copied` (as the engine names them), or their keys
// where there are none.
QStringList positionsFill(PositionTable table, const QString &select, const QString &key,
                          const QStringList &copied, const RowOrder &order);
// The rows of select at positions first + 1 to first + rows of the table
// (to the last for -1): the copies where the table holds them.
QString positionsPage(PositionTable table, const QString &select, const QString &key,
                      const QStringList &copied, qint64 first, int rows);

// Every row of select in the order.
QString orderedSelect(const QString &select, const QString &key, const RowOrder &order);
// At most `rows` rows of select in the order, from start.
QString pageSelect(const QString &select, const QString &key, const RowOrder &order, Paging paging,
                   const PageStart &start, int rows);

} // namespace quarry::viewer
