#include "logdialogs/frmPTFHLog.h"

#include "input/PublicFunction.h"
#include "logdialogs/LogClause.h"

#include <QLabel>
#include <QLineEdit>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quarry {

QString ptfhLogClause(const PTFHLogValues &v)
{
    QString clause = u" where  ACCNO  LIKE  '"_s + quotable(orAny(v.account))
        + u"'  and Opdate Between '"_s + quotable(v.dates.start) + u"' And '"_s
        + quotable(v.dates.end) + u"'"_s;
    if (v.showOpCode && orAny(v.teller) != u"%"_s)
        clause += u"  and (Opcode Like '"_s + quotable(v.teller) + u"')"_s;
    if (v.showWdh && !v.branchPart.isEmpty())
        clause += u" and "_s + v.branchPart;
    if (v.showYjk && orAny(v.sealCard) != u"%"_s)
        clause += u" And YJKNUMBER like '"_s + quotable(v.sealCard) + u"'  "_s;
    return clause;
}

frmPTFHLog::frmPTFHLog()
    : LogQueryDialog(u"frmPTFHLog"_s, u"复合查询"_s)
{
    TxtAccNo = addTextBox(u"TxtAccNo"_s, u"帐号特征:"_s, Typing::Pattern);
    TxtHy = addTextBox(u"TxtHy"_s, u"操作行员:"_s, Typing::AsTyped);
    addBranch(u"网点号:"_s, BranchBoxes::SubBranches::None);
    TxtYJKNumber = addTextBox(u"TxtYJKNumber"_s, u"印鉴卡号:"_s, Typing::Pattern);
    addDateRange();
    lblInfo = addLabel(u"lblInfo"_s, QString(), u"提示信息："_s);
    addButtons(u"BtnOk"_s, u"确定"_s, u"BtnCancel"_s, u"取消"_s, [this] { BtnOk_Click(); });

    QLineEdit *txtWdh = branch().box();
    setKeys({TxtAccNo, TxtHy, txtWdh, TxtYJKNumber, dates().start(), dates().end()}, {});
    const std::pair<QWidget *, QString> hints[] = {
        {dates().start(), u"请输入所要查询操作的开始日期 "_s},
        {dates().end(), u"请输入所要查询操作的结束日期 "_s},
        {TxtAccNo, u"请输入帐号特征，？代表任意一位数字，* 代表多个数字 "_s},
        {txtWdh, u"请输入网点号特征，？代表任意一位数字，* 代表多个数字 "_s},
        {TxtYJKNumber, u"请输入印鉴卡号特征，？代表任意一位数字，* 代表多个数字"_s},
    };
    // Each hint whole on one line (Chinese would wrap inside a word), the
    // dialog as wide as the longest needs from the start.
    lblInfo->setWordWrap(false);
    int widest = 0;
    for (const auto &hint : hints) {
        onArrive(hint.first, [this, text = hint.second] { lblInfo->setText(text); });
        widest = std::max(widest, lblInfo->fontMetrics().horizontalAdvance(hint.second));
    }
    lblInfo->setMinimumSize(widest, lblInfo->fontMetrics().height());

    onLeave(TxtAccNo, [this] { m_values.account = ToLikePattern(TxtAccNo->text().trimmed()); });
    onLeave(TxtYJKNumber,
            [this] { m_values.sealCard = ToLikePattern(TxtYJKNumber->text().trimmed()); });
    onLeave(TxtHy, [this] { m_values.teller = TxtHy->text().trimmed(); });
    onLeave(txtWdh, [this, txtWdh] {
        const QString pattern = ToLikePattern(txtWdh->text().trimmed());
        m_values.branchPart = pattern == u"%"_s ? QString() : branchBothCasesPart(pattern);
    });
}

void frmPTFHLog::Form_Load()
{
    branch().layOut(ShowWDH, config().ProfileCode);
    TxtYJKNumber->setEnabled(ShowYJK);
    TxtHy->setEnabled(ShowOpCode);
    if (!ShowOpCode) {
        QPalette palette = TxtHy->palette();
        palette.setColor(QPalette::Base, palette.color(QPalette::Window));
        TxtHy->setPalette(palette);
    }
}

void frmPTFHLog::BtnOk_Click()
{
    const std::optional<DateRange> range = dates().check();
    if (!range)
        return;
    m_values.dates = *range;
    m_values.showOpCode = ShowOpCode;
    m_values.showWdh = ShowWDH;
    m_values.showYjk = ShowYJK;
    setCondition(ptfhLogClause(m_values));
    accept();
}

} // namespace quarry
