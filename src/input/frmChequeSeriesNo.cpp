#include "input/frmChequeSeriesNo.h"

#include "input/Conditions.h"

using namespace Qt::StringLiterals;

namespace quarry {

frmChequeSeriesNo::frmChequeSeriesNo()
    : PatternDialog(u"frmChequeSeriesNo"_s, u"支票序列号查询"_s,
                    u"请输入支票序列号的开头部分,空着显示所有."_s, u"txtChequeSeriesNo"_s)
{
}

QString frmChequeSeriesNo::buildCondition(const QString &typed) const
{
    return chequeSeriesCondition(typed);
}

} // namespace quarry
