#include "logdialogs/frmZPGLLog.h"

#include "input/OperatorMessage.h"
#include "input/PublicFunction.h"

#include <QComboBox>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

// The cheque boxes' length before the host sets its own; the cheque
// defaults are made from it when the dialog loads.
constexpr qint32 DesignedChequeLength = 8;

} // namespace

QString zpglLogClause(const ZPGLLogValues &v, qint16 profileCode, SqlDialect dialect)
{
    const QString teller = quotable(orAny(v.teller));
    QString clause = u" where (accno like '"_s + quotable(orAny(v.account))
        + u"') and (opcode like '"_s + teller;
    if (profileCode == 39)
        clause += u"' opName like '"_s + teller;
    return clause + u"') and  (zpid between '"_s + quotable(v.cheques.begin) + u"' and '"_s
        + quotable(v.cheques.end) + u"') and (opdate between '"_s + quotable(v.dates.start)
        + u"' and '"_s + quotable(v.dates.end) + u"') and  (pztype like'"_s
        + literalText(orAny(v.voucherType), dialect, LiteralUse::LikePattern) + u"')"_s;
}

frmZPGLLog::frmZPGLLog()
    : LogQueryDialog(u"frmZPGLLog"_s, u"支票管理日志查询"_s)
{
    TxtAccNo = addTextBox(u"TxtAccNo"_s, u"帐号特征:"_s, Typing::Pattern);
    TxtHy = addTextBox(u"TxtHy"_s, u"操作行员:"_s, Typing::AsTyped);
    TxtBZP = addTextBox(u"TxtBZP"_s, u"起始支票号:"_s, Typing::AsTyped);
    TxtEZP = addTextBox(u"TxtEZP"_s, u"截止支票号:"_s, Typing::AsTyped);
    addDateRange();
    ComPZ = addList(u"ComPZ"_s, u"凭证类型:"_s, ListKind::Editable);
    addButtons(u"CmdYes"_s, u"确定"_s, u"cmdCancel"_s, u"取消"_s, [this] { CmdYes_Click(); });
    for (QLineEdit *box : {TxtBZP, TxtEZP})
        box->setMaxLength(DesignedChequeLength);
    setCancelKeys(CancelKeys::None);

    setKeys({TxtAccNo}, {.up = Move::Keep});
    setKeys({TxtHy, dates().start(), dates().end()}, {});
    setKeys({TxtBZP}, {.beforeNext = [this] { return chequeNeedsAccount(TxtBZP); }});
    setKeys({TxtEZP}, {.beforeNext = [this] { return chequeNeedsAccount(TxtEZP); }});
    storeWhenChosen(ComPZ, m_values.voucherType);
}

void frmZPGLLog::showPzDes()
{
    ensureLoaded();
    const qsizetype used = m_vouchers.used(lPzCount);
    ComPZ->clear();
    for (qsizetype i = 0; i < used; ++i)
        ComPZ->addItem(m_vouchers.names[i], m_vouchers.ids[i]);
    ComPZ->setEditText(m_vouchers.name(1));
}

void frmZPGLLog::Form_Load()
{
    m_chequeLength = hostMaxLength(*TxtBZP);
}

bool frmZPGLLog::chequeNeedsAccount(const QLineEdit *box)
{
    if (TxtAccNo->text().trimmed().isEmpty() && !box->text().isEmpty()) {
        tellOperator(this, u"不输入帐号，请不要输入支票号"_s);
        return false;
    }
    return true;
}

void frmZPGLLog::CmdYes_Click()
{
    m_values.account = ToLikePattern(TxtAccNo->text().trimmed());
    m_values.teller = TxtHy->text().trimmed();
    if (!chequeNeedsAccount(TxtBZP) || !chequeNeedsAccount(TxtEZP))
        return;
    m_values.cheques = chequeRange(TxtBZP->text(), TxtEZP->text(), m_chequeLength, u'9');
    const std::optional<DateRange> range = dates().check();
    if (!range)
        return;
    m_values.dates = *range;
    setCondition(zpglLogClause(m_values, config().ProfileCode, dialect()));
    accept();
}

} // namespace quarry
