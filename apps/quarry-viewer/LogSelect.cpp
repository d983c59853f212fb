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

} // namespace quarry::viewer
