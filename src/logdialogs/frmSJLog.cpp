#include "logdialogs/frmSJLog.h"

#include "input/PublicFunction.h"
#include "logdialogs/LogClause.h"

#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

QString sjLogClause(const SJLogValues &v, qint16 profileCode, bool showWdh)
{
    const QString teller = quotable(orAny(v.teller));
    QString clause = u" where (Opcode Like '"_s + teller;
    if (profileCode == 39)
        clause += u"' or OpName Like '"_s + teller;
    clause += u"'  ) And APPNAME  LIKE  '"_s + quotable(orAny(v.module))
        + u"'  And Opdate Between '"_s + quotable(v.dates.start) + u"' And '"_s
        + quotable(v.dates.end) + u"'"_s;
    if (showWdh && !v.branchPart.isEmpty())
        clause += u"  and  "_s + v.branchPart;
    return clause;
}

frmSJLog::frmSJLog()
    : LogQueryDialog(u"frmSJLog"_s, u"复合查询"_s)
{
    TxtHy = addTextBox(u"TxtHy"_s, u"登录行员:"_s, Typing::AsTyped);
    TxtApp = addTextBox(u"TxtApp"_s, u"模块名称:"_s, Typing::AsTyped);
    AppShow = addLabel(u"AppShow"_s, QString());
    Label5 = addLabel(u"Label5"_s, QString());
    Label5->setWordWrap(false); // as frmHYLog's legend
    addDateRange();
    addBranch(u" 网点号:"_s, BranchBoxes::SubBranches::None);
    addButtons(u"BtnOk"_s, u"确定"_s, u"BtnCancel"_s, u"取消"_s, [this] { BtnOk_Click(); });

    setKeys({TxtHy, TxtApp, branch().box()}, {.up = Move::Keep});
    setKeys({dates().start(), dates().end()}, {});

    onLeave(TxtHy, [this] { m_values.teller = TxtHy->text().trimmed(); });
    onLeave(TxtApp, [this] { m_values.module = TxtApp->text(); });
    onLeave(branch().box(), [this] {
        const QString pattern = ToLikePattern(branch().box()->text().trimmed());
        m_values.branchPart = pattern == u"%"_s ? QString() : branchBothCasesPart(pattern);
    });
    connect(TxtApp, &QLineEdit::textChanged, this, &frmSJLog::TxtApp_KeyUp);
}

void frmSJLog::showAppDes()
{
    ensureLoaded();
    Label5->setText(m_modules.legend(lAppCount));
}

void frmSJLog::Form_Load()
{
    branch().layOut(ShowWDH, config().ProfileCode);
}

void frmSJLog::TxtApp_KeyUp()
{
    AppShow->clear();
    if (TxtApp->text().isEmpty())
        return;
    AppShow->setText(m_modules.describe(TxtApp->text(), lAppCount).value_or(u"输入错误！"_s));
}

void frmSJLog::BtnOk_Click()
{
    if (!passesEmptyQuery(
            allBlank({branch().box(), TxtHy, TxtApp, dates().start(), dates().end()})))
        return;
    const std::optional<DateRange> range = dates().check();
    if (!range)
        return;
    m_values.dates = *range;
    setCondition(sjLogClause(m_values, config().ProfileCode, ShowWDH));
    accept();
}

} // namespace quarry
