#include "input/frmClerk.h"

#include "input/Conditions.h"

using namespace Qt::StringLiterals;

namespace quarry {

frmClerk::frmClerk()
    : EmptyQueryPatternDialog(u"frmClerk"_s, u"行员查询"_s, wildcardPrompt(u"行员"_s),
                              u"txtClerk"_s)
{
}

QString frmClerk::buildCondition(const QString &typed) const
{
    return clerkCondition(typed, config().ProfileCode);
}

} // namespace quarry
