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
        return u" LIMIT %1 OFFSET %2"_s.arg(rows).arg(offset);
    case Paging::OffsetFetch:
        return u" OFFSET %1 ROWS FETCH NEXT %2 ROWS ONLY"_s.arg(offset).arg(rows);
    case Paging::None:
        break;
    }
    return {};
}

// The rows after the last one of the page before, in the order: past it in
// a column and equal to it in the columns before.
QString following(const QString &key, const RowOrder &order, const PageStart &start)
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
    // Whole, for the bound that goes before it with AND.
    return u"(("_s + rows.join(u") OR ("_s) + u"))"_s;
}

// The value of the order's first column nearest an end of select's rows:
// the smallest or the largest that is not NULL, which an index finds at once
// (NULLs come first going up, and last going down).
QString edgeValue(const QString &select, const QString &column, Paging paging, bool largest)
{
    return u"(SELECT "_s + column + u" FROM ("_s + select + u") quarry_edge"_s
        + (largest ? u" ORDER BY "_s + column + u" DESC"_s
                   : u" WHERE "_s + column + u" IS NOT NULL ORDER BY "_s + column)
        + slice(paging, 0, 1) + u")"_s;
}

// The first value of the order's first column after the page before, ""
// when there is none (a start holds the order's values only beside a key,
// and none for an order of the key alone) or it is NULL.
QString firstAfter(const PageStart &start)
{
    const QString first = start.columnsAfter.value(0);
    return first == u"NULL"_s ? QString() : first;
}

// following(), with a bound on the first column alone that lets the server
// start where it is in an index. The bound is given with both ends: SQLite
// takes one range of an index only, and prefers one with both ends, such
// as a condition's BETWEEN on the day, which would have it walk from the
// first day of the condition to the page. Going down, the rows past the
// bound are those below it or NULL, which no index finds as one range.
QString after(const QString &select, const QString &key, const RowOrder &order, Paging paging,
              const PageStart &start)
{
    const QString rows = following(key, order, start);
    const QString first = firstAfter(start);
    if (first.isEmpty())
        return rows;
    const QString &column = order.columns.first();
    const QString bound = order.direction == Qt::AscendingOrder
        ? column + u" BETWEEN "_s + first + u" AND "_s + edgeValue(select, column, paging, true)
        : u"("_s + column + u" <= "_s + first + u" OR "_s + column + u" IS NULL)"_s;
    return bound + u" AND "_s + rows;
}

// A page going down from a value of the order's first column: the rows
// below it, within both ends, then those that are NULL (which come last),
// each read from its own range of an index, at most `rows` of each.
QString belowThenNull(const QString &select, const QString &key, const RowOrder &order,
                      Paging paging, const PageStart &start, int rows)
{
    const QString &column = order.columns.first();
    // Not a template with arg(): select holds the operator's patterns, "%1" among them.
    const auto part = [&](const QString &where, const QString &name) {
        return u"SELECT * FROM (SELECT * FROM ("_s + select + u") paged WHERE "_s + where
            + orderBy(key, order) + slice(paging, 0, rows) + u") "_s + name;
    };
    const QString below = column + u" BETWEEN "_s + edgeValue(select, column, paging, false)
        + u" AND "_s + firstAfter(start) + u" AND "_s + following(key, order, start);
    return u"SELECT * FROM ("_s + part(below, u"quarry_below"_s) + u" UNION ALL "_s
        + part(column + u" IS NULL"_s, u"quarry_null"_s) + u") paged"_s + orderBy(key, order)
        + slice(paging, 0, rows);
}

} // namespace

QStringList positionsFill(PositionTable table, const QString &select, const QString &key,
                          const QStringList &copied, const RowOrder &order)
{
    const QString kept = copied.isEmpty() ? key + u" AS k"_s : copied.join(u", "_s);
    const QString sorted
        = u"SELECT "_s + kept + u" FROM ("_s + select + u") paged"_s + orderBy(key, order);
    if (table == PositionTable::RowId)
        return {u"DROP TABLE IF EXISTS temp.quarry_positions"_s,
                u"CREATE TEMP TABLE quarry_positions AS "_s + sorted};
    return {
        u"DROP TEMPORARY TABLE IF EXISTS quarry_positions"_s,
        u"CREATE TEMPORARY TABLE quarry_positions (quarry_pos BIGINT AUTO_INCREMENT PRIMARY KEY) "_s
            + sorted};
}

QString positionsPage(PositionTable table, const QString &select, const QString &key,
                      const QStringList &copied, qint64 first, int rows)
{
    const QString position = table == PositionTable::RowId ? u"p.rowid"_s : u"p.quarry_pos"_s;
    const QString range = rows < 0 ? u" > %1"_s.arg(first)
                                   : u" BETWEEN %1 AND %2"_s.arg(first + 1).arg(first + rows);
    const QString where = u" WHERE "_s + position + range + u" ORDER BY "_s + position;
    if (!copied.isEmpty())
        return u"SELECT "_s + copied.join(u", "_s) + u" FROM quarry_positions p"_s + where;
    return u"SELECT paged.* FROM quarry_positions p JOIN ("_s + select + u") paged ON paged."_s
        + key + u" = p.k"_s + where;
}

QString orderedSelect(const QString &select, const QString &key, const RowOrder &order)
{
    return u"SELECT * FROM ("_s + select + u") paged"_s + orderBy(key, order);
}

QString pageSelect(const QString &select, const QString &key, const RowOrder &order, Paging paging,
                   const PageStart &start, int rows)
{
    if (order.direction == Qt::DescendingOrder && paging == Paging::LimitOffset && start.offset == 0
        && !firstAfter(start).isEmpty())
        return belowThenNull(select, key, order, paging, start, rows);
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
