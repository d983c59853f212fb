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

QString pageSelect(const QString &select, const QString &key, Paging paging, const PageStart &start,
                   int rows)
{
    QString page = u"SELECT * FROM ("_s + select + u") paged"_s;
    if (!start.keyAfter.isEmpty())
        page += u" WHERE "_s + key + u" > "_s + start.keyAfter;
    page += u" ORDER BY "_s + key;
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
