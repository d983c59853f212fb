#include "input/frmAcc.h"

#include "input/Conditions.h"

using namespace Qt::StringLiterals;

namespace quarry {

frmAcc::frmAcc()
    : EmptyQueryPatternDialog(u"frmAcc"_s, u"账号查询"_s, wildcardPrompt(u"账号"_s), u"txtAcc"_s)
{
}

QString frmAcc::buildCondition(const QString &typed) const
{
    return accCondition(typed);
}

} // namespace quarry
