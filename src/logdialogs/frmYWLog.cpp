#include "logdialogs/frmYWLog.h"

#include "input/PublicFunction.h"
#include "logdialogs/LogClause.h"

#include <QComboBox>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

QString ywLogClause(const YWLogValues &v, const QString &branchPart, SqlDialect dialect)
{
    QString clause = u" where  ACCNO  LIKE  '"_s + quotable(orAny(v.account))
        + u"'  and (Opcode Like '"_s + quotable(orAny(v.teller)) + u"')  And  OPTYPE  LIKE  '"_s
        + literalText(orAny(v.businessType), dialect, LiteralUse::LikePattern)
        + u"'   And Opdate Between '"_s + quotable(v.dates.start) + u"' And '"_s
        + quotable(v.dates.end) + u"'"_s;
    if (!branchPart.isEmpty())
        clause += u" and  "_s + branchPart;
    if (orAny(v.sealCard) != u"%"_s)
        clause += u" And YJKNUMBER like '"_s + quotable(v.sealCard) + u"'"_s;
    return clause;
}

frmYWLog::frmYWLog()
    : LogQueryDialog(u"frmYWLog"_s, u"业务日志查询"_s)
{
    TxtAccNo = addTextBox(u"TxtAccNo"_s, u"帐号特征:"_s, Typing::Pattern);
    TxtHy = addTextBox(u"TxtHy"_s, u"操作行员:"_s, Typing::AsTyped);
    comOpType = addList(u"comOpType"_s, u"业务类型:"_s);
    addDateRange();
    addBranch(u"网点号:"_s, BranchBoxes::SubBranches::Offered);
    TxtYJKNumber = addTextBox(u"TxtYJKNumber"_s, u"印鉴卡号:"_s, Typing::AsTyped);
    addButtons(u"BtnOk"_s, u"确定"_s, u"BtnCancel"_s, u"取消"_s, [this] { BtnOk_Click(); });

    setKeys({TxtAccNo, TxtHy, dates().start(), dates().end(), branch().box(), TxtYJKNumber}, {});
    setKeys({comOpType}, {.up = Move::Keep});

    onLeave(TxtAccNo, [this] { m_values.account = ToLikePattern(TxtAccNo->text().trimmed()); });
    onLeave(TxtHy, [this] { m_values.teller = TxtHy->text().trimmed(); });
    onLeave(comOpType, [this] { m_values.businessType = comOpType->currentText(); });
    onLeave(TxtYJKNumber, [this] { TxtYJKNumber_LostFocus(); });
}

void frmYWLog::showYwDes()
{
    ensureLoaded();
    fillList(comOpType, m_types, lYwCount);
}

void frmYWLog::Form_Load()
{
    branch().layOut(ShowWDH, config().ProfileCode);
    TxtYJKNumber->setEnabled(ShowYJK);
    if (!ShowYJK)
        m_values.sealCard.clear();
}

// A seal-card number that is no number is refused as the operator leaves it.
void frmYWLog::TxtYJKNumber_LostFocus()
{
    const QString typed = TxtYJKNumber->text().trimmed();
    const bool refused = !typed.isEmpty() && !checkNumber(typed);
    m_values.sealCard = refused ? QString() : typed;
    if (refused) {
        TxtYJKNumber->clear();
        TxtYJKNumber->setFocus();
    }
}

void frmYWLog::BtnOk_Click()
{
    if (!passesEmptyQuery(allBlank({TxtAccNo, TxtHy, branch().box(), TxtYJKNumber, dates().start(),
                                    dates().end(), comOpType})))
        return;
    const std::optional<DateRange> range = dates().check();
    if (!range)
        return;
    m_values.dates = *range;
    const std::optional<QString> branchPart = ShowWDH ? branch().part(hy()) : QString();
    if (!branchPart)
        return;
    setCondition(ywLogClause(m_values, *branchPart, dialect()));
    accept();
}

} // namespace quarry
