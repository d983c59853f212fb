#include "input/frmAcc.h"

#include "input/Conditions.h"
#include "input/EmptyQueryRule.h"

using namespace Qt::StringLiterals;

namespace quarry {

frmAcc::frmAcc()
    : PatternDialog(u"frmAcc"_s, u"账号查询"_s, wildcardPrompt(u"账号"_s), u"txtAcc"_s)
{
    m_config.GetParameter();
}

bool frmAcc::mayQuery(const QString &typed)
{
    return passesEmptyQueryRule(this, m_config, typed.trimmed().isEmpty());
}

QString frmAcc::buildCondition(const QString &typed) const
{
    return accCondition(typed);
}

} // namespace quarry
