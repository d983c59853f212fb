#include "BranchWalk.h"

#include "platform/DbRecordSet.h"

using namespace Qt::StringLiterals;

namespace quarry::test {

namespace {

void walk(const DbConnection &connection, const QString &wdh, QString &list)
{
    list += u'\'' + wdh + u"',"_s;
    DbRecordSet records;
    records.open(u"select wdh from WDDZ where MASTERNO in (?)"_s, connection, {wdh});
    QStringList below;
    for (; !records.eof(); records.moveNext())
        below.append(records.field(u"wdh"_s));
    for (const QString &branch : std::as_const(below))
        walk(connection, branch, list);
}

} // namespace

QString belongedWdhsOneQueryPerBranch(const DbConnection &connection, const QString &wdh)
{
    QString list;
    walk(connection, wdh, list);
    return list;
}

} // namespace quarry::test
