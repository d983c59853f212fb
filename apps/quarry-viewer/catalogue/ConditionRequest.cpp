#include "ConditionRequest.h"

#include <quarry/CQuarry.h>

namespace quarry::viewer {

QString askCondition(const LogEntry &entry)
{
    CQuarry quarry;
    if (entry.call == LogEntry::Call::ComplexEx) {
        quarry.showComplexEx(entry.logType);
    } else {
        quarry.showComplex(entry.logType, entry.listA.ids, entry.listA.names, entry.listB.ids,
                           entry.listB.names, qint32(entry.listA.ids.size()),
                           qint32(entry.listB.ids.size()), entry.clerkLength, entry.accLength,
                           entry.chequeLength, entry.showWdh, entry.showYjk, entry.showOpCode);
    }
    return quarry.SQLStr();
}

} // namespace quarry::viewer
