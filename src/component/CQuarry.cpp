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

#include <quarry/CSysCfg.h>
#include <quarry/QuarryError.h>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

// A pattern dialog with its one text box limited to length.
template<typename Dialog>
QString askPattern(qint32 length)
{
    Dialog dialog;
    dialog.setMaxLength(length);
    return dialog.execForCondition();
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
    m_sqlStr = dialog.execForCondition();
}

void CQuarry::showComplex(const QString &szLogType, const QList<qint16> &arrTmpIdA,
                          const QStringList &arrTmpDesA, const QList<qint16> &arrTmpIdB,
                          const QStringList &arrTmpDesB, qint32 lTmpCountA, qint32 lTmpCountB,
                          qint32 lClerkLen, qint32 lAccLen, qint32 lChequeLen, bool ShowWDH,
                          bool ShowYJK, bool ShowOpCode)
{
    const LogDialog dialog = complexLogDialog(szLogType, m_config->ProfileCode);
    switch (dialog) {
    case LogDialog::None:
        return;
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
        m_sqlStr = form.execForCondition();
        return;
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
        m_sqlStr = form.execForCondition();
        return;
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
        m_sqlStr = form.execForCondition();
        return;
    }
    case LogDialog::SJLog: {
        frmSJLog form;
        form.ShowWDH = ShowWDH;
        form.setMaxLength(u"TxtHy"_s, lClerkLen);
        form.setAppId(arrTmpIdA);
        form.setAppName(arrTmpDesA);
        form.lAppCount = lTmpCountA;
        form.showAppDes();
        m_sqlStr = form.execForCondition();
        return;
    }
    case LogDialog::ZGSQLog: {
        frmZGSQLog form;
        form.setMaxLength(u"TxtCha"_s, lClerkLen);
        form.setZgsqId(arrTmpIdA);
        form.setZgsqType(arrTmpDesA);
        form.lZgsqCount = lTmpCountA;
        form.showZgsqDes();
        m_sqlStr = form.execForCondition();
        return;
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
        m_sqlStr = form.execForCondition();
        return;
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
        m_sqlStr = form.execForCondition();
        return;
    }
    case LogDialog::ChequeSeriesNo:
        // The account length, not the cheque length: hosts have always
        // passed the series number's limit there.
        m_sqlStr = askPattern<frmChequeSeriesNo>(lAccLen);
        return;
    case LogDialog::SealResultStat: {
        frmSealResultStat form;
        form.setMaxLength(u"TxtHy"_s, lClerkLen);
        m_sqlStr = form.execForCondition();
        return;
    }
    case LogDialog::PTFHLog: {
        frmPTFHLog form;
        form.ShowWDH = ShowWDH;
        form.ShowYJK = ShowYJK;
        form.ShowOpCode = ShowOpCode;
        form.setMaxLength(u"TxtHy"_s, lClerkLen);
        form.setMaxLength(u"TxtAccNo"_s, lAccLen);
        m_sqlStr = form.execForCondition();
        return;
    }
    }
}

void CQuarry::showBranch(qint32 LWDHLen)
{
    m_sqlStr = askPattern<frmWdh>(LWDHLen);
}

void CQuarry::showComplexEx(const QString &logType, const QVariant &, const QVariant &,
                            const QVariant &)
{
    if (!isSealRequestLog(logType))
        return;
    frmYjReqLog form;
    m_sqlStr = form.execForCondition();
}

} // namespace quarry
