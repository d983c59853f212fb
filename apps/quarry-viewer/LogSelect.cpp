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

QString countSelect(const QString &select)
{
    return u"SELECT COUNT(*) FROM ("_s + select + u") counted"_s;
}

namespace {

QString orderBy(const QString &key, const RowOrder &order)
{
    const QString direction = order.direction == Qt::AscendingOrder ? QString() : u" DESC"_s;
    if (order.column.isEmpty())
        return u" ORDER BY "_s + key + direction;
    return u" ORDER BY "_s + order.column + direction + u", "_s + key + direction;
}

// The rows after the last one of the page before, in the order.
QString after(const QString &key, const RowOrder &order, const PageStart &start)
{
    const bool up = order.direction == Qt::AscendingOrder;
    const QString keyAfter = key + (up ? u" > "_s : u" < "_s) + start.keyAfter;
    if (order.column.isEmpty())
        return keyAfter;
    const QString &column = order.column;
    if (start.columnAfter == u"NULL"_s) {
        return up ? u"("_s + column + u" IS NULL AND "_s + keyAfter + u") OR "_s + column
                + u" IS NOT NULL"_s
                  : column + u" IS NULL AND "_s + keyAfter;
    }
    QString rows = column + (up ? u" > "_s : u" < "_s) + start.columnAfter + u" OR ("_s + column
        + u" = "_s + start.columnAfter + u" AND "_s + keyAfter + u")"_s;
    if (!up)
        rows += u" OR "_s + column + u" IS NULL"_s;
    return rows;
}

} // namespace

QString orderedSelect(const QString &select, const QString &key, const RowOrder &order)
{
    return u"SELECT * FROM ("_s + select + u") paged"_s + orderBy(key, order);
}

QString pageSelect(const QString &select, const QString &key, const RowOrder &order, Paging paging,
                   const PageStart &start, int rows)
{
    QString page = u"SELECT * FROM ("_s + select + u") paged"_s;
    if (!start.keyAfter.isEmpty())
        page += u" WHERE "_s + after(key, order, start);
    page += orderBy(key, order);
    switch (paging) {
    case Paging::LimitOffset:
        page += u" LIMIT %1"_s.arg(rows);
        if (start.offset > 0)
            page += u" OFFSET %1"_s.arg(start.offset);
        break;
    case Paging::OffsetFetch:
        page += u" OFFSET %1 ROWS FETCH NEXT %2 ROWS ONLY"_s.arg(start.offset).arg(rows);
        break;
    case Paging::None:
        break;
    }
    return page;
}

} // namespace quarry::viewer
