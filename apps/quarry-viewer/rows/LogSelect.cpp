#include "LogSelect.h"

using namespace Qt::StringLiterals;

namespace quarry::viewer {

QString logSelect(const LogEntry &entry, const QString &condition)
{
    if (condition.isEmpty())
        return {};
    if (entry.result == LogEntry::Result::Select)
        return condition;
    return u"SELECT * FROM "_s + entry.table + condition;
}

RowOrder newestFirst(const LogEntry &entry)
{
    RowOrder order{{}, Qt::DescendingOrder};
    for (const QString &column : {entry.dateColumn, entry.timeColumn}) {
        if (!column.isEmpty())
            order.columns.append(column);
    }
    return order;
}

QString countSelect(const QString &select)
{
    return u"SELECT COUNT(*) FROM ("_s + select + u") counted"_s;
}

namespace {

QString orderBy(const QString &key, const RowOrder &order)
{
    const QString direction = order.direction == Qt::AscendingOrder ? QString() : u" DESC"_s;
    QStringList terms;
    for (const QString &column : order.columns)
        terms.append(column + direction);
    terms.append(key + direction);
    return u" ORDER BY "_s + terms.join(u", "_s);
}

// The rows past `value` in column, in the order; "" for none.
QString beyond(const QString &column, const QString &value, bool up)
{
    if (value == u"NULL"_s)
        return up ? column + u" IS NOT NULL"_s : QString();
    return up ? column + u" > "_s + value
              : u"("_s + column + u" < "_s + value + u" OR "_s + column + u" IS NULL)"_s;
}

// At most `rows` rows, after `offset`.
QString slice(Paging paging, qint64 offset, int rows)
{
    switch (paging) {
    case Paging::LimitOffset:
        return offset > 0 ? u" LIMIT %1 OFFSET %2"_s.arg(rows).arg(offset)
                          : u" LIMIT %1"_s.arg(rows);
    case Paging::OffsetFetch:
        return u" OFFSET %1 ROWS FETCH NEXT %2 ROWS ONLY"_s.arg(offset).arg(rows);
    case Paging::None:
        break;
    }
    return {};
}

// The rows after the last one of the page before, in the order: past it in
// a column and equal to it in the columns before. The bound on the first
// column alone lets the server start where it is in an index. Going up,
// the bound is also given with both ends (up to the largest value of
// select, the first going down, which the index finds at once): SQLite
// takes one range of an index only, and prefers one with both ends, such
// as a condition's BETWEEN on the day, which would have it walk from the
// first day of the condition to the page.
QString after(const QString &select, const QString &key, const RowOrder &order, Paging paging,
              const PageStart &start)
{
    const bool up = order.direction == Qt::AscendingOrder;
    QStringList rows;
    QStringList equal;
    for (qsizetype i = 0; i < order.columns.size(); ++i) {
        const QString &column = order.columns[i];
        const QString &value = start.columnsAfter.value(i, u"NULL"_s);
        if (const QString past = beyond(column, value, up); !past.isEmpty())
            rows.append(QStringList(equal + QStringList{past}).join(u" AND "_s));
        equal.append(value == u"NULL"_s ? column + u" IS NULL"_s : column + u" = "_s + value);
    }
    equal.append(key + (up ? u" > "_s : u" < "_s) + start.keyAfter);
    rows.append(equal.join(u" AND "_s));
    const QString any = u"("_s + rows.join(u") OR ("_s) + u")"_s;
    const QString first = order.columns.isEmpty() ? QString() : start.columnsAfter.value(0);
    if (first.isEmpty() || first == u"NULL"_s)
        return any;
    const QString &column = order.columns.first();
    const QString bound = up
        ? column + u" >= "_s + first + u" AND "_s + column + u" BETWEEN "_s + first
            + u" AND (SELECT "_s + column + u" FROM ("_s + select + u") quarry_last ORDER BY "_s
            + column + u" DESC"_s + slice(paging, 0, 1) + u")"_s
        : u"("_s + column + u" <= "_s + first + u" OR "_s + column + u" IS NULL)"_s;
    return bound + u" AND ("_s + any + u")"_s;
}

} // namespace

QStringList positionsFill(PositionTable table, const QString &select, const QString &key,
                          const RowOrder &order)
{
    const QString sorted
        = u"SELECT "_s + key + u" AS k FROM ("_s + select + u") paged"_s + orderBy(key, order);
    if (table == PositionTable::RowId)
        return {u"DROP TABLE IF EXISTS temp.quarry_positions"_s,
                u"CREATE TEMP TABLE quarry_positions AS "_s + sorted};
    return {u"DROP TEMPORARY TABLE IF EXISTS quarry_positions"_s,
            u"CREATE TEMPORARY TABLE quarry_positions (pos BIGINT AUTO_INCREMENT PRIMARY KEY) "_s
                + sorted};
}

QString positionsPage(PositionTable table, const QString &select, const QString &key, qint64 first,
                      int rows)
{
    const QString position = table == PositionTable::RowId ? u"p.rowid"_s : u"p.pos"_s;
    return u"SELECT paged.* FROM quarry_positions p JOIN ("_s + select + u") paged ON paged."_s
        + key + u" = p.k WHERE "_s + position
        + u" BETWEEN %1 AND %2 ORDER BY "_s.arg(first + 1).arg(first + rows) + position;
}

QString orderedSelect(const QString &select, const QString &key, const RowOrder &order)
{
    return u"SELECT * FROM ("_s + select + u") paged"_s + orderBy(key, order);
}

QString pageSelect(const QString &select, const QString &key, const RowOrder &order, Paging paging,
                   const PageStart &start, int rows)
{
    const QString where = start.keyAfter.isEmpty()
        ? QString()
        : u" WHERE "_s + after(select, key, order, paging, start);
    if (start.offset > 0 && paging != Paging::None) {
        // The rows skipped are walked for their keys alone, which an index of
        // the order's columns holds: the server reads the rows of the page only.
        const QString keys = u"SELECT "_s + key + u" AS quarry_key FROM ("_s + select + u") paged"_s
            + where + orderBy(key, order) + slice(paging, start.offset, rows);
        return u"SELECT paged.* FROM ("_s + select + u") paged JOIN ("_s + keys
            + u") skipped ON paged."_s + key + u" = skipped.quarry_key"_s + orderBy(key, order);
    }
    return u"SELECT * FROM ("_s + select + u") paged"_s + where + orderBy(key, order)
        + slice(paging, start.offset, rows);
}

} // namespace quarry::viewer
