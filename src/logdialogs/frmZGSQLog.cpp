#include "logdialogs/frmZGSQLog.h"

#include "logdialogs/LogClause.h"

#include <QComboBox>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

QString zgsqLogClause(const ZGSQLogValues &v, SqlDialect dialect)
{
    return u" where  ZGCODE  LIKE  '"_s + quotable(orAny(v.supervisor)) + u"' And OPTYPE  LIKE  '"_s
        + literalText(orAny(v.operation), dialect, LiteralUse::LikePattern)
        + u"' And Opdate Between '"_s + quotable(v.dates.start) + u"' And '"_s
        + quotable(v.dates.end) + u"'"_s;
}

frmZGSQLog::frmZGSQLog()
    : LogQueryDialog(u"frmZGSQLog"_s, u"复合查询"_s)
{
    TxtCha = addTextBox(u"TxtCha"_s, u"主管代码:"_s, Typing::AsTyped);
    ComSQLX = addList(u"ComSQLX"_s, u"操作内容:"_s);
    addDateRange();
    addButtons(u"Command1"_s, u"确  定"_s, u"Command2"_s, u"取  消"_s,
               [this] { Command1_Click(); });
    setCancelKeys(CancelKeys::KeypadMultiply);

    setKeys({TxtCha}, {.up = Move::Keep});
    storeWhenChosen(ComSQLX, m_values.operation);
    setKeys({dates().start(), dates().end()}, {});
    onLeave(TxtCha, [this] { m_values.supervisor = TxtCha->text().trimmed(); });
}

void frmZGSQLog::showZgsqDes()
{
    ensureLoaded();
    fillList(ComSQLX, m_operations, lZgsqCount);
}

void frmZGSQLog::Command1_Click()
{
    const std::optional<DateRange> range = dates().check();
    if (!range)
        return;
    m_values.dates = *range;
    setCondition(zgsqLogClause(m_values, dialect()));
    accept();
}

} // namespace quarry
