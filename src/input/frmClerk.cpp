#include "input/frmClerk.h"

#include "input/Conditions.h"
#include "input/EmptyQueryRule.h"

using namespace Qt::StringLiterals;

namespace quarry {

frmClerk::frmClerk()
    : PatternDialog(u"frmClerk"_s, u"行员查询"_s, wildcardPrompt(u"行员"_s), u"txtClerk"_s)
{
    m_config.GetParameter();
}

bool frmClerk::mayQuery(const QString &typed)
{
    return passesEmptyQueryRule(this, m_config, typed.trimmed().isEmpty());
}

QString frmClerk::buildCondition(const QString &typed) const
{
    return clerkCondition(typed, m_config.ProfileCode);
}

} // namespace quarry
