#include <quarry/CQuarry.h>

#include "component/LogRouting.h"
#include "input/FrmDate.h"
#include "input/FrmYJK.h"
#include "input/frmAcc.h"
#include "input/frmChequeSeriesNo.h"
#include "input/frmClerk.h"
#include "input/frmWdh.h"

#include <quarry/CSysCfg.h>
#include <quarry/QuarryError.h>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

// Shows a configured dialog modally, with no owner, and hands back its
// condition; the dialog goes with the caller's scope.
QString conditionOf(ConditionDialog &dialog)
{
    dialog.exec();
    return dialog.CurFilterStr();
}

// A pattern dialog with its one text box limited to length.
template<typename Dialog>
QString askPattern(qint32 length)
{
    Dialog dialog;
    dialog.setMaxLength(length);
    return conditionOf(dialog);
}

[[noreturn]] void raiseNotAvailable(const QString &source, const QString &logType,
                                    const QString &dialogName)
{
    throw QuarryError(QuarryError::DataError, source,
                      u"日志类型“%1”的查询窗口 %2 尚未提供，无法输入查询条件。"_s.arg(logType, dialogName));
}

} // namespace

CQuarry::CQuarry(QObject *parent)
    : QObject(parent)
    , m_config(std::make_unique<CSysCfg>())
{
    m_config->GetParameter();
}

CQuarry::~CQuarry() = default;

QString CQuarry::SQLStr() const
{
    return m_sqlStr;
}

void CQuarry::showClerk(qint32 lClerkLen)
{
    m_sqlStr = askPattern<frmClerk>(lClerkLen);
}

void CQuarry::ShowYJK(qint32 YJKLEN)
{
    m_sqlStr = askPattern<FrmYJK>(YJKLEN);
}

void CQuarry::showAcc(qint32 lAccLen)
{
    m_sqlStr = askPattern<frmAcc>(lAccLen);
}

void CQuarry::showDate()
{
    FrmDate dialog;
    m_sqlStr = conditionOf(dialog);
}

void CQuarry::showComplex(const QString &szLogType,
    [[maybe_unused]] const QList<qint16> &arrTmpIdA, [[maybe_unused]] const QStringList &arrTmpDesA,
    [[maybe_unused]] const QList<qint16> &arrTmpIdB, [[maybe_unused]] const QStringList &arrTmpDesB,
    [[maybe_unused]] qint32 lTmpCountA, [[maybe_unused]] qint32 lTmpCountB,
    [[maybe_unused]] qint32 lClerkLen, qint32 lAccLen, [[maybe_unused]] qint32 lChequeLen,
    [[maybe_unused]] bool ShowWDH, [[maybe_unused]] bool ShowYJK, [[maybe_unused]] bool ShowOpCode)
{
    const LogDialog dialog = complexLogDialog(szLogType, m_config->ProfileCode);
    switch (dialog) {
    case LogDialog::None:
        return;
    case LogDialog::ChequeSeriesNo:
        // The account length, not the cheque length: hosts have always
        // passed the series number's limit there.
        m_sqlStr = askPattern<frmChequeSeriesNo>(lAccLen);
        return;
    default:
        raiseNotAvailable(u"CQuarry.showComplex()"_s, szLogType, logDialogName(dialog));
    }
}

void CQuarry::showBranch(qint32 LWDHLen)
{
    m_sqlStr = askPattern<frmWdh>(LWDHLen);
}

void CQuarry::showComplexEx(const QString &logType, const QVariant &, const QVariant &,
                            const QVariant &)
{
    if (isSealRequestLog(logType))
        raiseNotAvailable(u"CQuarry.showComplexEx()"_s, logType, u"frmYjReqLog"_s);
}

} // namespace quarry
