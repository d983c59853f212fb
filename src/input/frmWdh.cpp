#include "input/frmWdh.h"

#include "input/Conditions.h"

using namespace Qt::StringLiterals;

namespace quarry {

frmWdh::frmWdh()
    : PatternDialog(u"frmWdh"_s, u"网点号查询"_s, wildcardPrompt(u"网点号"_s), u"txtWdh"_s)
{
}

QString frmWdh::buildCondition(const QString &typed) const
{
    return wdhCondition(typed);
}

} // namespace quarry
