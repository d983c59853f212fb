#include <quarry/CQuarry.h>

#include "component/LogRouting.h"
#include "input/FrmDate.h"
#include "input/FrmYJK.h"
#include "input/frmAcc.h"
#include "input/frmChequeSeriesNo.h"
#include "input/frmClerk.h"
#include "input/frmWdh.h"
#include "logdialogs/frmHYLog.h"
#include "logdialogs/frmPJSBLog.h"
#include "logdialogs/frmPTFHLog.h"
#include "logdialogs/frmSJLog.h"
#include "logdialogs/frmSealResultStat.h"
#include "logdialogs/frmYWLog.h"
#include "logdialogs/frmYYLog.h"
#include "logdialogs/frmYjReqLog.h"
#include "logdialogs/frmZGSQLog.h"
#include "logdialogs/frmZPGLLog.h"

#include "platform/FaultWatch.h"

#include <quarry/CSysCfg.h>
#include <quarry/QuarryError.h>

#include <QApplication>
#include <QThread>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

using Outcome = CQuarry::Outcome;

// Shows dialog and keeps what it hands back in sqlStr, accepted or not.
Outcome askFor(ConditionDialog &dialog, QString &sqlStr)
{
    sqlStr = dialog.execForCondition();
    return dialog.result() == QDialog::Accepted ? Outcome::Accepted : Outcome::Cancelled;
}

// A pattern dialog with its one text box limited to length.
template<typename Dialog>
Outcome askPattern(qint32 length, QString &sqlStr)
{
    Dialog dialog;
    dialog.setMaxLength(length);
    return askFor(dialog, sqlStr);
}

// Dialogs need the application's event loop, on its thread: without a
// QApplication Qt would abort the host, and off its thread the dialog would
// never show while the call waited for it.
void requireGuiThread(const char *operation)
{
    const QString source = u"CQuarry.%1()"_s.arg(QLatin1StringView(operation));
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        throw QuarryError(QuarryError::NoApplication, source,
                          u"程序没有创建 QApplication，无法显示查询条件对话框：请先创建 "
                          u"QApplication，再调用 CQuarry。"_s);
    if (QThread::currentThread() != QCoreApplication::instance()->thread())
        throw QuarryError(QuarryError::NotGuiThread, source,
                          u"CQuarry 只能在界面线程（创建 QApplication 的线程）上调用，"
                          u"本次调用来自另一个线程，未显示对话框。"_s);
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

CQuarry::Outcome CQuarry::lastOutcome() const
{
    return m_outcome;
}

std::optional<QuarryError> CQuarry::lastError() const
{
    return m_error;
}

void CQuarry::run(const char *operation, const std::function<Outcome()> &show)
{
    m_error.reset();
    try {
        requireGuiThread(operation);
        const FaultWatch faults;
        m_outcome = show();
        m_error = faults.firstFault();
    } catch (const QuarryError &error) {
        m_error = error;
        m_outcome = Outcome::Failed;
        throw;
    }
    if (m_error)
        m_outcome = Outcome::Failed;
}

void CQuarry::showClerk(qint32 lClerkLen)
{
    run("showClerk", [&] { return askPattern<frmClerk>(lClerkLen, m_sqlStr); });
}

void CQuarry::ShowYJK(qint32 YJKLEN)
{
    run("ShowYJK", [&] { return askPattern<FrmYJK>(YJKLEN, m_sqlStr); });
}

void CQuarry::showAcc(qint32 lAccLen)
{
    run("showAcc", [&] { return askPattern<frmAcc>(lAccLen, m_sqlStr); });
}

void CQuarry::showDate()
{
    run("showDate", [this] {
        FrmDate dialog;
        return askFor(dialog, m_sqlStr);
    });
}

void CQuarry::showComplex(const QString &szLogType, const QList<qint16> &arrTmpIdA,
                          const QStringList &arrTmpDesA, const QList<qint16> &arrTmpIdB,
                          const QStringList &arrTmpDesB, qint32 lTmpCountA, qint32 lTmpCountB,
                          qint32 lClerkLen, qint32 lAccLen, qint32 lChequeLen, bool ShowWDH,
                          bool ShowYJK, bool ShowOpCode)
{
    run("showComplex", [&] {
        const LogDialog dialog = complexLogDialog(szLogType, m_config->ProfileCode);
        switch (dialog) {
        case LogDialog::None:
            break;
        case LogDialog::YWLog: {
            frmYWLog form;
            form.ShowWDH = ShowWDH;
            form.ShowYJK = ShowYJK;
            form.setMaxLength(u"TxtHy"_s, lClerkLen);
            form.setMaxLength(u"TxtAccNo"_s, lAccLen);
            form.setYwId(arrTmpIdA);
            form.setYwName(arrTmpDesA);
            form.lYwCount = lTmpCountA;
            form.showYwDes();
            return askFor(form, m_sqlStr);
        }
        case LogDialog::YYLog: {
            frmYYLog form;
            form.ShowWDH = ShowWDH;
            form.ShowYJK = ShowYJK;
            form.setMaxLength(u"TxtHy"_s, lClerkLen);
            form.setMaxLength(u"TxtAccNo"_s, lAccLen);
            form.setOpId(arrTmpIdA);
            form.setOpStyle(arrTmpDesA);
            form.lOpCount = lTmpCountA;
            form.setResId(arrTmpIdB);
            form.setResName(arrTmpDesB);
            form.lResCount = lTmpCountB;
            form.setMaxLength(u"TxtBZP"_s, lChequeLen);
            form.setMaxLength(u"TxtEZP"_s, lChequeLen);
            form.showYyDes();
            return askFor(form, m_sqlStr);
        }
        case LogDialog::HYLog: {
            frmHYLog form;
            form.ShowWDH = ShowWDH ? u"True"_s : u"False"_s;
            form.setMaxLength(u"TxtHy"_s, lClerkLen);
            form.setMaxLength(u"TxtCha"_s, lClerkLen);
            form.setOpId(arrTmpIdA);
            form.setOpType(arrTmpDesA);
            form.lOpCount = lTmpCountA;
            form.showOpDes();
            return askFor(form, m_sqlStr);
        }
        case LogDialog::SJLog: {
            frmSJLog form;
            form.ShowWDH = ShowWDH;
            form.setMaxLength(u"TxtHy"_s, lClerkLen);
            form.setAppId(arrTmpIdA);
            form.setAppName(arrTmpDesA);
            form.lAppCount = lTmpCountA;
            form.showAppDes();
            return askFor(form, m_sqlStr);
        }
        case LogDialog::ZGSQLog: {
            frmZGSQLog form;
            form.setMaxLength(u"TxtCha"_s, lClerkLen);
            form.setZgsqId(arrTmpIdA);
            form.setZgsqType(arrTmpDesA);
            form.lZgsqCount = lTmpCountA;
            form.showZgsqDes();
            return askFor(form, m_sqlStr);
        }
        case LogDialog::ZPGLLog: {
            frmZPGLLog form;
            form.setMaxLength(u"TxtHy"_s, lClerkLen);
            form.setMaxLength(u"TxtAccNo"_s, lAccLen);
            form.setMaxLength(u"TxtBZP"_s, lChequeLen);
            form.setMaxLength(u"TxtEZP"_s, lChequeLen);
            form.setPzId(arrTmpIdA);
            form.setPzType(arrTmpDesA);
            form.lPzCount = lTmpCountA;
            form.showPzDes();
            return askFor(form, m_sqlStr);
        }
        case LogDialog::PJSBLog: {
            frmPJSBLog form;
            form.ShowWDH = ShowWDH;
            form.setMaxLength(u"TxtBZP"_s, lChequeLen);
            form.setMaxLength(u"TxtEZP"_s, lChequeLen);
            form.setMaxLength(u"TxtHy"_s, lClerkLen);
            form.setMaxLength(u"TxtAccNo"_s, lAccLen);
            form.setPzId(arrTmpIdA);
            form.setPzType(arrTmpDesA);
            form.lPzCount = lTmpCountA;
            form.showPzDes();
            form.setPjsbId(arrTmpIdB);
            form.setPjsbResult(arrTmpDesB);
            form.lPjsbCount = lTmpCountB;
            form.showPjsbResultDes();
            return askFor(form, m_sqlStr);
        }
        case LogDialog::ChequeSeriesNo:
            // The account length, not the cheque length: hosts have always
            // passed the series number's limit there.
            return askPattern<frmChequeSeriesNo>(lAccLen, m_sqlStr);
        case LogDialog::SealResultStat: {
            frmSealResultStat form;
            form.setMaxLength(u"TxtHy"_s, lClerkLen);
            return askFor(form, m_sqlStr);
        }
        case LogDialog::PTFHLog: {
            frmPTFHLog form;
            form.ShowWDH = ShowWDH;
            form.ShowYJK = ShowYJK;
            form.ShowOpCode = ShowOpCode;
            form.setMaxLength(u"TxtHy"_s, lClerkLen);
            form.setMaxLength(u"TxtAccNo"_s, lAccLen);
            return askFor(form, m_sqlStr);
        }
        }
        return Outcome::NothingAsked;
    });
}

void CQuarry::showBranch(qint32 LWDHLen)
{
    run("showBranch", [&] { return askPattern<frmWdh>(LWDHLen, m_sqlStr); });
}

void CQuarry::showComplexEx(const QString &logType, const QVariant &, const QVariant &,
                            const QVariant &)
{
    run("showComplexEx", [&] {
        if (!isSealRequestLog(logType))
            return Outcome::NothingAsked;
        frmYjReqLog form;
        return askFor(form, m_sqlStr);
    });
}

} // namespace quarry
