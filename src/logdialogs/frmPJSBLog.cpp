#include "logdialogs/frmPJSBLog.h"

#include "input/EmptyQueryRule.h"
#include "input/OperatorMessage.h"
#include "input/PublicFunction.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

QString completedDate(const QString &masked, QChar fill)
{
    return QString(masked).replace(u' ', fill);
}

QString pjsbLogClause(const PJSBLogValues &v, qint16 profileCode, SqlDialect dialect,
                      const QString &branchPart)
{
    const QString voucherType = literalText(orAny(v.voucherType), dialect, LiteralUse::LikePattern);
    const QString teller = quotable(orAny(v.teller));
    QString clause = u" where (accno like '"_s + quotable(orAny(v.account))
        + u"') and (opcode like '"_s + teller;
    if (profileCode == 39)
        clause += u"'  or OpName like '"_s + teller;
    clause += u"') and  (CHEQUENO between '"_s + quotable(v.cheques.begin) + u"' and '"_s
        + quotable(v.cheques.end);
    if (profileCode == 39) {
        clause += u"') and (opdate between '"_s + quotable(v.startDate) + u"' and '"_s
            + quotable(v.endDate) + u"') and  (pztype like'"_s + voucherType + u"')"_s;
    } else {
        const bool joinsWithPlus
            = dialect == SqlDialect::SqlServer || dialect == SqlDialect::Sybase;
        clause += (joinsWithPlus ? u"') and (opdate+optime between '"_s
                                 : u"') and (concat(opdate,optime) between '"_s)
            + quotable(v.startDate + v.startTime) + u"' and '"_s + quotable(v.endDate + v.endTime)
            + u"') and  (pztype like '"_s + voucherType + u"') and (ChequeResult like '"_s
            + literalText(orAny(v.result), dialect, LiteralUse::LikePattern) + u"')"_s;
    }
    if (!branchPart.isEmpty())
        clause += u" and  "_s + branchPart;
    return clause;
}

frmPJSBLog::frmPJSBLog()
    : LogQueryDialog(u"frmPJSBLog"_s, u"票据识别日志查询"_s)
{
    TxtAccNo = addTextBox(u"TxtAccNo"_s, u"帐号特征:"_s, Typing::Pattern);
    TxtHy = addTextBox(u"TxtHy"_s, u"操作行员:"_s, Typing::AsTyped);
    TxtBZP = addTextBox(u"TxtBZP"_s, u"起始支票号:"_s, Typing::AsTyped);
    TxtEZP = addTextBox(u"TxtEZP"_s, u"截止支票号:"_s, Typing::AsTyped);
    addBranch(u"网点号:"_s, BranchBoxes::SubBranches::Offered);
    addDateRange();
    // The range takes the boxes' texts as they stand (completedDate).
    dates().start()->keepTextOnLeave();
    dates().end()->keepTextOnLeave();
    maskBeginTime = addTimeBox(u"maskBeginTime"_s, u"起始时间:"_s);
    maskEndTime = addTimeBox(u"maskEndTime"_s, u"截止时间:"_s);
    ComPZ = addList(u"ComPZ"_s, u"凭证类型:"_s);
    ComPjsbResult = addList(u"ComPjsbResult"_s, u"识别结果:"_s);
    form()->labelForField(ComPjsbResult)->setObjectName(u"Label1"_s);
    addButtons(u"CmdYes"_s, u"确定"_s, u"cmdCancel"_s, u"取消"_s, [this] { CmdYes_Click(); });
    setCancelKeys(CancelKeys::Both);

    setKeys({TxtAccNo, branch().box()}, {.up = Move::Keep});
    setKeys({TxtHy, TxtBZP, TxtEZP, maskBeginTime, maskEndTime}, {});
    setKeys({dates().start()}, {.beforeNext = [this] {
                m_values.startDate = completedDate(dates().start()->maskedText(), u'0');
                return true;
            }});
    setKeys({dates().end()}, {.beforeNext = [this] {
                m_values.endDate = completedDate(dates().end()->maskedText(), u'9');
                return datesInOrder();
            }});
    storeWhenChosen(ComPZ, m_values.voucherType);
    storeWhenChosen(ComPjsbResult, m_values.result);

    onLeave(dates().start(), [this] { checkOnLeave(dates().start(), u"日期输入错误！"_s); });
    onLeave(dates().end(), [this] { checkOnLeave(dates().end(), u"日期输入错误！"_s); });
    onLeave(maskBeginTime, [this] { checkOnLeave(maskBeginTime, u"时间输入错误！"_s); });
    onLeave(maskEndTime, [this] { checkOnLeave(maskEndTime, u"时间输入错误！"_s); });
}

void frmPJSBLog::showPzDes()
{
    ensureLoaded();
    fillList(ComPZ, m_vouchers, lPzCount);
}

void frmPJSBLog::showPjsbResultDes()
{
    ensureLoaded();
    fillList(ComPjsbResult, m_results, lPjsbCount);
}

void frmPJSBLog::Form_Load()
{
    branch().layOut(ShowWDH, config().ProfileCode);
    const bool withTimes = config().ProfileCode != 39;
    for (QWidget *field :
         std::initializer_list<QWidget *>{maskBeginTime, maskEndTime, ComPjsbResult})
        setRowShown(field, withTimes);
}

void frmPJSBLog::checkOnLeave(MaskEdBox *box, const QString &message)
{
    const bool date = box == dates().start() || box == dates().end();
    if (box->isBlank() || (date ? maskedDate(box->maskedText()) : maskedTime(box->maskedText())))
        return;
    tellOperator(this, message);
    box->setFocus();
}

bool frmPJSBLog::datesInOrder()
{
    if (m_values.startDate == u"0000-00-00"_s || m_values.endDate == u"9999-99-99"_s)
        return true;
    const std::optional<QString> start = maskedDate(dates().start()->maskedText());
    const std::optional<QString> end = maskedDate(dates().end()->maskedText());
    if (!start || !end || *end >= *start)
        return true;
    // The words are the other way round; operators know the message so.
    tellOperator(this, u"截止日期大于开始日期，请重新输入"_s);
    dates().end()->setFocus();
    return false;
}

void frmPJSBLog::CmdYes_Click()
{
    const qint16 profile = config().ProfileCode;
    const bool empty = allBlank({TxtAccNo, TxtHy, TxtBZP, TxtEZP, branch().box(), dates().start(),
                                 dates().end(), maskBeginTime, maskEndTime, ComPZ, ComPjsbResult});
    // This dialog asks under bank profile 2, whatever QueryHintMode says.
    if (!passesEmptyQueryRule(this, profile, profile == 2 ? 2 : 0, empty))
        return;
    m_values.account = ToLikePattern(TxtAccNo->text().trimmed());
    m_values.teller = TxtHy->text().trimmed();
    m_values.cheques = chequeRange(TxtBZP->text(), TxtEZP->text(), hostMaxLength(*TxtBZP), u'z');
    if (m_values.startDate.isEmpty())
        m_values.startDate = completedDate(dates().start()->maskedText(), u'0');
    if (m_values.endDate.isEmpty())
        m_values.endDate = completedDate(dates().end()->maskedText(), u'9');
    if (!datesInOrder())
        return;
    m_values.startTime = maskBeginTime->isBlank() ? u"00:00:00"_s : maskBeginTime->maskedText();
    m_values.endTime = maskEndTime->isBlank() ? u"23:59:59"_s : maskEndTime->maskedText();
    const std::optional<QString> branchPart = ShowWDH ? branch().part(hy()) : QString();
    if (!branchPart)
        return;
    setCondition(pjsbLogClause(m_values, profile, dialect(), *branchPart));
    accept();
}

} // namespace quarry
