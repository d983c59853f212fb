#include "input/FrmYJK.h"

#include "input/Conditions.h"

using namespace Qt::StringLiterals;

namespace quarry {

FrmYJK::FrmYJK()
    : PatternDialog(u"FrmYJK"_s, u"印鉴卡号查询"_s, wildcardPrompt(u"印鉴卡号"_s), u"txtYJK"_s)
{
}

QString FrmYJK::buildCondition(const QString &typed) const
{
    return yjkCondition(typed);
}

} // namespace quarry
