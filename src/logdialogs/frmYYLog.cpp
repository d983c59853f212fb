#include "logdialogs/frmYYLog.h"

#include "input/OperatorMessage.h"
#include "input/PublicFunction.h"
#include "input/MaskEdBox.h"

#include <QComboBox>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

QString yyLogHead(const YYLogValues &v)
{
    return u" where Opcode Like '"_s + quotable(orAny(v.teller)) + u"' And ACCNO  LIKE  '"_s
        + quotable(orAny(v.account)) + u"' And Opdate Between '"_s + quotable(v.dates.start)
        + u"' And '"_s + quotable(v.dates.end) + u"' and chequeno between '"_s
        + quotable(v.cheques.begin) + u"' and '"_s + quotable(v.cheques.end) + u"'"_s;
}

QString yyLogClause(const YYLogValues &v, const QString &branchPart, SqlDialect dialect)
{
    QString clause = yyLogHead(v);
    if (!branchPart.isEmpty())
        clause += u" and  "_s + branchPart;
    if (orAny(v.sealCard) != u"%"_s)
        clause += u" and ( YJKNumber like '"_s + quotable(v.sealCard) + u"') "_s;
    if (orAny(v.method) != u"%"_s)
        clause += u" and ( OPTYPE = '"_s + literalText(v.method, dialect) + u"') "_s;
    if (orAny(v.result) != u"%"_s)
        clause += u" and Result='"_s + literalText(v.result, dialect) + u"'"_s;
    return clause;
}

frmYYLog::frmYYLog()
    : LogQueryDialog(u"frmYYLog"_s, u"复合查询"_s)
{
    TxtHy = addTextBox(u"TxtHy"_s, u"操作行员:"_s, Typing::AsTyped);
    TxtAccNo = addTextBox(u"TxtAccNo"_s, u"帐号特征:"_s, Typing::Pattern);
    addDateRange();
    TxtBZP = addChequeBox(u"TxtBZP"_s, u"起始支票号:"_s);
    TxtEZP = addChequeBox(u"TxtEZP"_s, u"截止支票号:"_s);
    addBranch(u"网点号:"_s, BranchBoxes::SubBranches::Offered);
    TxtYJKNumber = addTextBox(u"TxtYJKNumber"_s, u"印鉴卡号:"_s, Typing::Pattern);
    cmbOpType = addList(u"cmbOpType"_s, u"验印方式:"_s);
    cmbOpResult = addList(u"cmbOpResult"_s, u"验印结果:"_s);
    addButtons(u"BtnOk"_s, u"确定"_s, u"BtnCancel"_s, u"取消"_s, [this] { BtnOk_Click(); });

    setKeys({TxtHy}, {.multiply = Move::Next});
    setKeys({TxtAccNo, branch().box(), TxtYJKNumber}, {.up = Move::Keep});
    setKeys({dates().start(), dates().end(), TxtBZP, TxtEZP}, {});
    storeWhenChosen(cmbOpType, m_values.method);
    storeWhenChosen(cmbOpResult, m_values.result);

    onLeave(TxtHy, [this] { m_values.teller = TxtHy->text().trimmed(); });
    onLeave(TxtAccNo, [this] { m_values.account = ToLikePattern(TxtAccNo->text().trimmed()); });
    onLeave(TxtYJKNumber, [this] { m_values.sealCard = ToLikePattern(TxtYJKNumber->text()); });
}

void frmYYLog::showYyDes()
{
    ensureLoaded();
    fillList(cmbOpType, m_methods, lOpCount);
    fillList(cmbOpResult, m_results, lResCount);
}

void frmYYLog::Form_Load()
{
    branch().layOut(ShowWDH, config().ProfileCode);
    TxtYJKNumber->setEnabled(ShowYJK);
    if (!ShowYJK) {
        QPalette palette = TxtYJKNumber->palette();
        palette.setColor(QPalette::Text, palette.color(QPalette::Disabled, QPalette::Text));
        TxtYJKNumber->setPalette(palette);
    }
}

void frmYYLog::BtnOk_Click()
{
    // The cheque boxes count as input only where the operator is asked.
    const bool empty = allBlank({branch().box(), TxtAccNo, TxtYJKNumber, TxtHy, dates().start(),
                                 dates().end(), cmbOpType, cmbOpResult})
        && (config().ProfileCode == 54 || allBlank({TxtBZP, TxtEZP}));
    if (!passesEmptyQuery(empty))
        return;
    m_values.cheques = chequeRange(TxtBZP->text(), TxtEZP->text(), hostMaxLength(*TxtBZP), u'z');
    if (m_values.cheques.endBeforeBegin()) {
        warnOperator(this, u"截止支票号不能小于起始支票号，请重新输入！"_s);
        TxtEZP->setFocus();
        return;
    }
    const std::optional<DateRange> range = dates().check();
    if (!range)
        return;
    m_values.dates = *range;
    // Stored before the branch is checked: a Cancel after a refused branch
    // hands this back, as hosts have always seen it.
    setCondition(yyLogHead(m_values));
    const std::optional<QString> branchPart = ShowWDH ? branch().part(hy()) : QString();
    if (!branchPart)
        return;
    setCondition(yyLogClause(m_values, *branchPart, dialect()));
    accept();
}

} // namespace quarry
