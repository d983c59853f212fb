#include "logdialogs/frmHYLog.h"

#include "logdialogs/LogClause.h"

#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

QString hyLogClause(const HYLogValues &v, qint16 profileCode, const QString &branchPart)
{
    const QString teller = quotable(orAny(v.operatorTeller));
    QString clause = u" where (Opcode Like '"_s + teller;
    if (profileCode == 39) {
        const QString reviewer = quotable(orAny(v.reviewingTeller));
        clause += u"' or opName like '"_s + teller + u"')   And  (FhName  LIKE  '"_s + reviewer
            + u"' or  FhCode  LIKE  '"_s + reviewer + u"') And OPTYPE  LIKE  '"_s;
    } else {
        clause += u"')    And OPTYPE  LIKE  '"_s;
    }
    clause += quotable(orAny(v.operationType)) + u"' And Opdate Between '"_s
        + quotable(v.dates.start) + u"' And '"_s + quotable(v.dates.end) + u"'"_s;
    if (!branchPart.isEmpty())
        clause += u" and  "_s + branchPart;
    return clause;
}

frmHYLog::frmHYLog()
    : LogQueryDialog(u"frmHYLog"_s, u"复合查询"_s)
{
    TxtHy = addTextBox(u"TxtHy"_s, u"操作行员:"_s, Typing::AsTyped);
    TxtCha = addTextBox(u"TxtCha"_s, u"复核行员:"_s, Typing::AsTyped);
    TxtOpType = addTextBox(u"TxtOpType"_s, u"操作类型:"_s, Typing::AsTyped);
    OpShow = addLabel(u"OpShow"_s, QString());
    Label3
        = addLabel(u"Label3"_s,
                   u" 1:增加行员 2：删除行员 3：变更行员权限 4：增加组 5：删除组 6：变更组权限"_s);
    // Chinese text wraps between any two characters: a legend would break
    // inside a description. The dialog is as wide as the legend instead.
    Label3->setWordWrap(false);
    addDateRange();
    addBranch(u" 网点号:"_s, BranchBoxes::SubBranches::Offered);
    addButtons(u"BtnOk"_s, u"确定"_s, u"BtnCancel"_s, u"取消"_s, [this] { BtnOk_Click(); });

    setKeys({TxtHy}, {.up = Move::Keep, .down = Move::Next});
    setKeys({TxtCha, TxtOpType}, {.down = Move::Next});
    setKeys({branch().box()}, {.up = Move::Keep});
    setKeys({dates().start(), dates().end()}, {});

    onLeave(TxtHy, [this] { m_values.operatorTeller = TxtHy->text().trimmed(); });
    onLeave(TxtCha, [this] { m_values.reviewingTeller = TxtCha->text().trimmed(); });
    onLeave(TxtOpType, [this] { m_values.operationType = TxtOpType->text(); });
    connect(TxtOpType, &QLineEdit::textChanged, this, &frmHYLog::TxtOpType_KeyUp);
}

void frmHYLog::showOpDes()
{
    ensureLoaded();
    Label3->setText(m_types.legend(lOpCount));
}

bool frmHYLog::branchShown() const
{
    return ShowWDH.compare(u"True"_s, Qt::CaseInsensitive) == 0;
}

void frmHYLog::Form_Load()
{
    branch().layOut(branchShown(), config().ProfileCode);
}

// The description of the typed code, as the operator types it. A code the
// list does not know leaves the last description shown.
void frmHYLog::TxtOpType_KeyUp()
{
    if (TxtOpType->text().isEmpty())
        OpShow->clear();
    else if (const std::optional<QString> description
             = m_types.describe(TxtOpType->text(), lOpCount))
        OpShow->setText(*description);
}

void frmHYLog::BtnOk_Click()
{
    // Under bank profile 54 the operating teller alone is no condition.
    const bool empty = allBlank({branch().box(), TxtCha, TxtOpType, dates().start(), dates().end()})
        && (config().ProfileCode == 54 || allBlank({TxtHy}));
    if (!passesEmptyQuery(empty))
        return;
    const std::optional<DateRange> range = dates().check();
    if (!range)
        return;
    m_values.dates = *range;
    // Stored before the branch is checked, as with the seal verification log.
    setCondition(hyLogClause(m_values, config().ProfileCode, QString()));
    const std::optional<QString> branchPart = branchShown() ? branch().part(hy()) : QString();
    if (!branchPart)
        return;
    setCondition(hyLogClause(m_values, config().ProfileCode, *branchPart));
    accept();
}

} // namespace quarry
