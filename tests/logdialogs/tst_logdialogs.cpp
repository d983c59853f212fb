// The log query dialogs as hosts and operators meet them: shown by
// CQuarry::showComplex on the offscreen platform, driven with keys and
// clicks, the condition read back from SQLStr; the embedded sample station
// answers the branch lookups and gives the business date.

#include "DialogDriver.h"
#include "SampleLogs.h"
#include "TestFiles.h"

#include "logdialogs/frmHYLog.h"
#include "logdialogs/frmPTFHLog.h"

#include <quarry/CQuarry.h>
#include <quarry/QuarryError.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using quarry::test::Engine;

namespace quarry {

namespace {

// How the host calls showComplex in these tests: two code lists, teller
// length 4, account length 10, cheque length 8, and the flags; or
// showComplexEx.
struct HostCall
{
    QString logType;
    bool showWdh = false;
    bool showYjk = false;
    bool showOpCode = false;
    bool ex = false;
};

void ask(CQuarry &quarry, const HostCall &call)
{
    if (call.ex)
        quarry.showComplexEx(call.logType);
    else
        quarry.showComplex(call.logType, {1, 2}, {u"自动验印"_s, u"人工验印"_s}, {0, 1},
                           {u"通过"_s, u"不通过"_s}, 2, 2, 4, 10, 8, call.showWdh, call.showYjk,
                           call.showOpCode);
}

// "YYRZ", "YYRZ+wdh", "YWRZ+wdh+yjk+op", "ex:YJREQLOG".
HostCall hostCall(const QString &text)
{
    const QStringList parts = text.split(u'+');
    const bool ex = parts[0].startsWith(u"ex:"_s);
    return {ex ? parts[0].mid(3) : parts[0], parts.contains(u"wdh"_s), parts.contains(u"yjk"_s),
            parts.contains(u"op"_s), ex};
}

// What the operator saw, and the condition the host got ("(no dialog)"
// when none was shown).
struct Asked : quarry::test::Outcome
{
    QString sql;
};

Asked operate(CQuarry &quarry, const HostCall &call, const QStringList &steps,
              const std::function<void(QWidget *)> &inspect = {},
              QMessageBox::StandardButton answer = QMessageBox::Ok)
{
    Asked asked{quarry::test::operate([&] { ask(quarry, call); }, steps, answer, inspect), {}};
    asked.sql = asked.shown ? quarry.SQLStr() : u"(no dialog)"_s;
    return asked;
}

// The state of a shown dialog that the host's call decides, as text.
QString describe(QWidget *dialog)
{
    QStringList parts{dialog->objectName(), dialog->windowTitle()};
    for (const QString &name : {u"lblWDH"_s, u"txtWdh"_s, u"chkSub"_s, u"TxtYJKNumber"_s,
                                u"maskBeginTime"_s, u"Label1"_s, u"ComPjsbResult"_s}) {
        if (QWidget *w = dialog->findChild<QWidget *>(name))
            parts.append(name + (!w->isVisible() ? u" hidden"_s : w->isEnabled() ? u" on"_s : u" off"_s)
                         + (w->palette().color(QPalette::Active, QPalette::Text) == w->palette().color(QPalette::Disabled, QPalette::Text) ? u" grey text"_s : u""_s));
    }
    for (const QString &name : {u"TxtHy"_s, u"TxtAccNo"_s, u"TxtCha"_s, u"TxtBZP"_s, u"TxtEZP"_s}) {
        if (auto *box = dialog->findChild<QLineEdit *>(name))
        {
            const bool grey = box->palette().color(QPalette::Base) == box->palette().color(QPalette::Window);
            parts.append(name + u'=' + QString::number(box->maxLength()) + (box->isEnabled() ? u""_s : u" off"_s) + (grey ? u" grey"_s : u""_s));
        }
    }
    const QList<QComboBox *> lists = dialog->findChildren<QComboBox *>();
    for (QComboBox *list : lists) {
        QStringList items;
        for (int i = 0; i < list->count(); ++i)
            items.append(list->itemText(i) + u':' + list->itemData(i).toString());
        parts.append(list->objectName() + u'=' + items.join(u',') + u'@' + QString::number(list->currentIndex())
                     + (list->isEditable() ? u' ' + list->currentText() : QString()));
    }
    for (const QString &name : {u"Label3"_s, u"Label5"_s})
        if (auto *label = dialog->findChild<QLabel *>(name))
            parts.append(name + u'=' + label->text());
    const QList<QPushButton *> buttons = dialog->findChildren<QPushButton *>();
    for (QPushButton *button : buttons)
        parts.append(button->objectName() + u'=' + button->text());
    return parts.join(u" | "_s);
}

// seal.ini's [USER] with bank profile `mode` ("" for the default) and QueryHintMode.
QByteArray user(const QString &mode, int queryHintMode = 0)
{
    return "[USER]\nMODE=" + mode.toUtf8() + "\nQueryHintMode=" + QByteArray::number(queryHintMode) + '\n';
}

} // namespace

class TestLogDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostCalls_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("expected");

        QTest::newRow("YWRZ, everything offered, profile 65") << u"YWRZ+wdh+yjk"_s << u"Vefos"_s << u"frmYWLog | 业务日志查询 | lblWDH on | txtWdh on | chkSub on | TxtYJKNumber on | TxtHy=4 | TxtAccNo=10 | comOpType=:,自动验印:1,人工验印:2@-1 | BtnOk=确定 | BtnCancel=取消"_s;
        QTest::newRow("YWRZ, nothing offered") << u"YWRZ"_s << u"Vefos"_s << u"frmYWLog | 业务日志查询 | lblWDH hidden | txtWdh hidden | chkSub hidden | TxtYJKNumber off | TxtHy=4 | TxtAccNo=10 | comOpType=:,自动验印:1,人工验印:2@-1 | BtnOk=确定 | BtnCancel=取消"_s;
        QTest::newRow("YYRZ, branch without sub-branches") << u"YYRZ+wdh"_s << QString() << u"frmYYLog | 复合查询 | lblWDH on | txtWdh on | chkSub hidden | TxtYJKNumber off grey text | TxtHy=4 | TxtAccNo=10 | TxtBZP=8 | TxtEZP=8 | cmbOpType=:,自动验印:1,人工验印:2@-1 | cmbOpResult=:,通过:0,不通过:1@-1 | BtnOk=确定 | BtnCancel=取消"_s;
        QTest::newRow("HYRZ, profile 65") << u"HYRZ+wdh+yjk"_s << u"Vefos"_s << u"frmHYLog | 复合查询 | lblWDH on | txtWdh on | chkSub on | TxtHy=4 | TxtCha=4 | Label3=1: 自动验印  2: 人工验印   | BtnOk=确定 | BtnCancel=取消"_s;
        QTest::newRow("SJRZ, no sub-branch box") << u"SJRZ+wdh"_s << u"Vefos"_s << u"frmSJLog | 复合查询 | lblWDH on | txtWdh on | TxtHy=4 | Label5=1: 自动验印  2: 人工验印   | BtnOk=确定 | BtnCancel=取消"_s;
        QTest::newRow("ZGSQRZ") << u"ZGSQRZ+wdh+yjk"_s << QString() << u"frmZGSQLog | 复合查询 | TxtCha=4 | ComSQLX=:,自动验印:1,人工验印:2@-1 | Command1=确  定 | Command2=取  消"_s;
        QTest::newRow("ZPGLRZ: the second description shown") << u"ZPGLRZ+wdh"_s << QString() << u"frmZPGLLog | 支票管理日志查询 | TxtHy=4 | TxtAccNo=10 | TxtBZP=8 | TxtEZP=8 | ComPZ=自动验印:1,人工验印:2@0 人工验印 | CmdYes=确定 | cmdCancel=取消"_s;
        QTest::newRow("PJSBRZ, profile 65") << u"PJSBRZ+wdh"_s << u"Vefos"_s << u"frmPJSBLog | 票据识别日志查询 | lblWDH on | txtWdh on | chkSub on | maskBeginTime on | Label1 on | ComPjsbResult on | TxtHy=4 | TxtAccNo=10 | TxtBZP=8 | TxtEZP=8 | ComPZ=:,自动验印:1,人工验印:2@-1 | ComPjsbResult=:,通过:0,不通过:1@-1 | CmdYes=确定 | cmdCancel=取消"_s;
        QTest::newRow("PJSBRZ, profile 39: no times, no result") << u"PJSBRZ"_s << u"Hilur"_s << u"frmPJSBLog | 票据识别日志查询 | lblWDH hidden | txtWdh hidden | chkSub hidden | maskBeginTime hidden | Label1 hidden | ComPjsbResult hidden | TxtHy=4 | TxtAccNo=10 | TxtBZP=8 | TxtEZP=8 | ComPZ=:,自动验印:1,人工验印:2@-1 | ComPjsbResult=:,通过:0,不通过:1@-1 | CmdYes=确定 | cmdCancel=取消"_s;
        QTest::newRow("SEALRESULTSTAT") << u"SEALRESULTSTAT+wdh+yjk+op"_s << QString() << u"frmSealResultStat | 验印结果统计 | txtWdh on | TxtHy=4 | cmdOK=确定 | cmdCancel=取消"_s;
        QTest::newRow("another log type, no operator code") << u"XYZ+wdh"_s << QString() << u"frmPTFHLog | 复合查询 | lblWDH on | txtWdh on | TxtYJKNumber off | TxtHy=4 off grey | TxtAccNo=10 | BtnOk=确定 | BtnCancel=取消"_s;
        QTest::newRow("ywrz in lower case") << u"ywrz+yjk+op"_s << QString() << u"frmPTFHLog | 复合查询 | lblWDH hidden | txtWdh hidden | TxtYJKNumber on | TxtHy=4 | TxtAccNo=10 | BtnOk=确定 | BtnCancel=取消"_s;
        QTest::newRow("seal requests, in any case") << u"ex:YjReqLog"_s << QString() << u"frmYjReqLog | 复合查询 | txtWdh on | cmdOK=确  定 | cmdCancel=取  消"_s;
    }

    void hostCalls()
    {
        QFETCH(QString, call);
        QFETCH(QString, mode);
        QUARRY_SAMPLE_STATION(station, Engine::Sqlite, user(mode));
        CQuarry quarry;
        QString seen;
        operate(quarry, hostCall(call), {}, [&](QWidget *dialog) {
            seen = dialog->isModal() && !dialog->parentWidget() ? describe(dialog) : u"not modal"_s;
        });
        QTEST(seen, "expected");
    }

    void conditions_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("mode");
        QTest::addColumn<int>("hint");
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("expectedSql");

        const QString none, closed = u"closed"_s;
        const QString ask = u"未输入任何查询条件，查询可能需要很长时间，是否继续？"_s;
        const QString refuse = u"请输入查询条件!"_s;

        QTest::newRow("YYRZ: every field, from the keyboard") << u"YYRZ+wdh+yjk"_s << none << 0 << QStringList{u"TxtHy=1'2*"_s, u"Return"_s, u"TxtAccNo=62?*"_s, u"Return"_s, u"=20090101"_s, u"Return"_s, u"=20090131"_s, u"Return"_s, u"TxtBZP=A-1"_s, u"TxtEZP=B2"_s, u"txtWdh=12*"_s, u"TxtYJKNumber=00*"_s, u"cmbOpType#1"_s, u"cmbOpResult#2"_s, u"Return"_s, u"Return"_s} << none << closed << u" where Opcode Like '12*' And ACCNO  LIKE  '62_%' And Opdate Between '2009-01-01' And '2009-01-31' and chequeno between 'A1' and 'B2' and  ( wdh like '12%') and ( YJKNumber like '00%')  and ( OPTYPE = '自动验印')  and Result='不通过'"_s;
        QTest::newRow("YYRZ: the end cheque before the begin") << u"YYRZ"_s << none << 0 << QStringList{u"TxtBZP=9"_s, u"TxtEZP=12"_s, u"BtnOk!"_s} << u"截止支票号不能小于起始支票号，请重新输入！"_s << u"TxtEZP"_s << none;
        QTest::newRow("YYRZ: a wrong start date") << u"YYRZ"_s << none << 0 << QStringList{u"MaskBoxKs=20091301"_s, u"BtnOk!"_s} << u"起始日期格式错误，请重新输入！"_s << u"MaskBoxKs"_s << none;
        QTest::newRow("YYRZ: profile 54, only cheques") << u"YYRZ"_s << u"Tecis"_s << 0 << QStringList{u"TxtBZP=1"_s, u"BtnOk!"_s} << refuse << u"BtnOk"_s << none;
        QTest::newRow("YYRZ: hint 2, only cheques") << u"YYRZ"_s << none << 2 << QStringList{u"TxtEZP=1"_s, u"BtnOk!"_s} << none << closed << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and '1'"_s;
        QTest::newRow("YYRZ: hint 2, nothing, No") << u"YYRZ"_s << none << 2 << QStringList{u"BtnOk!"_s} << ask << u"BtnOk"_s << none;
        QTest::newRow("YYRZ: a chosen empty entry is input") << u"YYRZ"_s << u"Tecis"_s << 0 << QStringList{u"cmbOpType#0"_s, u"BtnOk!"_s} << none << closed << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and 'zzzzzzzz'"_s;
        QTest::newRow("YWRZ: every field") << u"YWRZ+wdh+yjk"_s << none << 0 << QStringList{u"TxtAccNo=62*"_s, u"TxtHy=12?"_s, u"comOpType#2"_s, u"MaskBoxJs=20091231"_s, u"txtWdh=1101"_s, u"TxtYJKNumber=123"_s, u"BtnOk!"_s} << none << closed << u" where  ACCNO  LIKE  '62%'  and (Opcode Like '12?')  And  OPTYPE  LIKE  '人工验印'   And Opdate Between '1980-01-01' And '2009-12-31' and  ( wdh like '1101') And YJKNUMBER like '123'"_s;
        QTest::newRow("YWRZ: a seal card that is no number") << u"YWRZ+yjk"_s << none << 0 << QStringList{u"TxtYJKNumber=12a"_s, u"Return"_s} << u"输入非法字符，请输入正确的数字！"_s << u"TxtYJKNumber"_s << none;
        QTest::newRow("YWRZ: profile 54, nothing") << u"YWRZ+wdh+yjk"_s << u"Tecis"_s << 0 << QStringList{u"BtnOk!"_s} << refuse << u"BtnOk"_s << none;
        QTest::newRow("HYRZ: profile 39, reviewer") << u"HYRZ"_s << u"Hilur"_s << 0 << QStringList{u"TxtCha=0012"_s, u"TxtOpType=3"_s, u"BtnOk!"_s} << none << closed << u" where (Opcode Like '%' or opName like '%')   And  (FhName  LIKE  '0012' or  FhCode  LIKE  '0012') And OPTYPE  LIKE  '3' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
        QTest::newRow("HYRZ: profile 54, only the operating teller") << u"HYRZ"_s << u"Tecis"_s << 0 << QStringList{u"TxtHy=0101"_s, u"BtnOk!"_s} << refuse << u"BtnOk"_s << none;
        // A quote alone is no pattern, but the branch was given.
        QTest::newRow("SJRZ: a branch of a quote") << u"SJRZ+wdh"_s << none << 0 << QStringList{u"txtWdh='"_s, u"BtnOk!"_s} << none << closed << u" where (Opcode Like '%'  ) And APPNAME  LIKE  '%'  And Opdate Between '1980-01-01' And '3000-01-01'  and  ( wdh like '' or wdh like '')"_s;
        QTest::newRow("SJRZ: hint 2, nothing, Yes") << u"SJRZ"_s << none << 2 << QStringList{u"BtnOk!"_s} << ask << closed << u" where (Opcode Like '%'  ) And APPNAME  LIKE  '%'  And Opdate Between '1980-01-01' And '3000-01-01'"_s;
        QTest::newRow("ZGSQRZ: supervisor and operation") << u"ZGSQRZ"_s << none << 0 << QStringList{u"TxtCha=90*"_s, u"ComSQLX#2"_s, u"Return"_s, u"Command1!"_s} << none << closed << u" where  ZGCODE  LIKE  '90*' And OPTYPE  LIKE  '人工验印' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
        QTest::newRow("ZGSQRZ: the end before the start") << u"ZGSQRZ"_s << none << 0 << QStringList{u"MaskBoxKs=20090302"_s, u"MaskBoxJs=20090301"_s, u"Command1!"_s} << u"截止日期不能小于起始日期，请重新输入！"_s << u"MaskBoxJs"_s << none;
        const QString needsAccount = u"不输入帐号，请不要输入支票号"_s;
        QTest::newRow("ZPGLRZ: a cheque without an account, on Enter") << u"ZPGLRZ"_s << none << 0 << QStringList{u"TxtBZP=123"_s, u"Return"_s} << needsAccount << u"TxtBZP"_s << none;
        QTest::newRow("ZPGLRZ: a cheque without an account, at OK") << u"ZPGLRZ"_s << none << 0 << QStringList{u"TxtEZP=9"_s, u"CmdYes!"_s} << needsAccount << u"CmdYes"_s << none;
        // The list starts on its first entry: one Down chooses the second.
        QTest::newRow("ZPGLRZ: from the keyboard, cheques as typed") << u"ZPGLRZ"_s << none << 0 << QStringList{u"TxtAccNo=62*"_s, u"TxtBZP= 1"_s, u"Return"_s, u"=2-3"_s, u"ComPZ#0"_s, u"Return"_s, u"Return"_s} << none << closed << u" where (accno like '62%') and (opcode like '%') and  (zpid between ' 1' and '2-3') and (opdate between '1980-01-01' and '3000-01-01') and  (pztype like'人工验印')"_s;
        const QString openBills = u" where (accno like '%') and (opcode like '%') and  (CHEQUENO between '00000000' and 'zzzzzzzz') and (concat(opdate,optime) between '0000-00-0000:00:00' and '9999-99-9923:59:59') and  (pztype like '%') and (ChequeResult like '%')"_s;
        QTest::newRow("PJSBRZ: leaving a date that is none") << u"PJSBRZ"_s << none << 0 << QStringList{u"MaskBoxKs=2009"_s, u"Return"_s} << u"日期输入错误！"_s << u"MaskBoxKs"_s << none;
        QTest::newRow("PJSBRZ: leaving a time that is none") << u"PJSBRZ"_s << none << 0 << QStringList{u"maskBeginTime=25"_s, u"Return"_s} << u"时间输入错误！"_s << u"maskBeginTime"_s << none;
        QTest::newRow("PJSBRZ: the end date before the start") << u"PJSBRZ"_s << none << 0 << QStringList{u"MaskBoxKs=20090302"_s, u"MaskBoxJs=20090301"_s, u"Return"_s} << u"截止日期大于开始日期，请重新输入"_s << u"MaskBoxJs"_s << none;
        QTest::newRow("PJSBRZ: a start stored blank by Enter, no order check") << u"PJSBRZ"_s << none << 0 << QStringList{u"MaskBoxKs"_s, u"Return"_s, u"MaskBoxKs=20090302"_s, u"MaskBoxJs=20090301"_s, u"CmdYes!"_s} << none << closed << u" where (accno like '%') and (opcode like '%') and  (CHEQUENO between '00000000' and 'zzzzzzzz') and (concat(opdate,optime) between '0000-00-0000:00:00' and '2009-03-0123:59:59') and  (pztype like '%') and (ChequeResult like '%')"_s;
        QTest::newRow("PJSBRZ: start and end the same day") << u"PJSBRZ"_s << none << 0 << QStringList{u"MaskBoxKs=20090301"_s, u"MaskBoxJs=20090301"_s, u"CmdYes!"_s} << none << closed << u" where (accno like '%') and (opcode like '%') and  (CHEQUENO between '00000000' and 'zzzzzzzz') and (concat(opdate,optime) between '2009-03-0100:00:00' and '2009-03-0123:59:59') and  (pztype like '%') and (ChequeResult like '%')"_s;
        QTest::newRow("PJSBRZ: dates, times and lists") << u"PJSBRZ"_s << none << 0 << QStringList{u"TxtAccNo=62*"_s, u"MaskBoxKs=20090101"_s, u"MaskBoxJs=20090131"_s, u"maskBeginTime=080000"_s, u"maskEndTime=170000"_s, u"ComPZ#1"_s, u"ComPjsbResult#2"_s, u"CmdYes!"_s} << none << closed << u" where (accno like '62%') and (opcode like '%') and  (CHEQUENO between '00000000' and 'zzzzzzzz') and (concat(opdate,optime) between '2009-01-0108:00:00' and '2009-01-3117:00:00') and  (pztype like '自动验印') and (ChequeResult like '不通过')"_s;
        // Dates completed blank by blank, times as the boxes hold them.
        QTest::newRow("PJSBRZ: a date left with a blank") << u"PJSBRZ"_s << none << 0 << QStringList{u"MaskBoxKs=2009111"_s, u"maskBeginTime=08005"_s, u"TxtEZP=1-2"_s, u"CmdYes!"_s} << none << closed << u" where (accno like '%') and (opcode like '%') and  (CHEQUENO between '00000000' and '1-2') and (concat(opdate,optime) between '2009-11-1008:00:5 ' and '9999-99-9923:59:59') and  (pztype like '%') and (ChequeResult like '%')"_s;
        QTest::newRow("PJSBRZ: profile 54, nothing") << u"PJSBRZ"_s << u"Tecis"_s << 0 << QStringList{u"CmdYes!"_s} << refuse << u"CmdYes"_s << none;
        QTest::newRow("PJSBRZ: profile 2, nothing, Yes") << u"PJSBRZ"_s << u"银行2"_s << 0 << QStringList{u"CmdYes!"_s} << ask << closed << openBills;
        QTest::newRow("PJSBRZ: hint 2 does not ask") << u"PJSBRZ"_s << none << 2 << QStringList{u"CmdYes!"_s} << none << closed << openBills;
        // Enter on an empty end of the range fills in the sample's business date and moves on to OK; a query without any limit is confirmed first.
        QTest::newRow("SEALRESULTSTAT: the business date, nothing, Yes") << u"SEALRESULTSTAT"_s << none << 0 << QStringList{u"maskEndDate"_s, u"Return"_s, u"Return"_s} << u"您查询时未选择任何限制条件，可能会因为数据量很大而影响查询速度，是否继续？"_s << closed << u"SELECT 1 AS id, dbo.HY.wdh, TotalPj.opcode, TotalPj.total, PassedPj.passed, TotalPj.total - PassedPj.passed AS NotPassed,  CAST(CONVERT(decimal(10, 2),PassedPj.passed * 100.0 / TotalPj.total) AS varchar) + '%' AS [percent], '1980-01-01' AS BeginDate, '2010-01-05' AS EndDate  FROM (SELECT COUNT(chequeno) AS total, opcode From pjsblog  WHERE opresult IN (0, 1, 4, 5) AND opdate BETWEEN '1980-01-01' AND '2010-01-05' GROUP BY opcode) TotalPj  INNER JOIN (SELECT COUNT(chequeno) AS passed, opcode From pjsblog  WHERE opresult IN (0, 4) AND opdate BETWEEN '1980-01-01' AND '2010-01-05' GROUP BY opcode) PassedPj ON TotalPj.opcode = PassedPj.opcode  INNER JOIN dbo.HY ON TotalPj.opcode = dbo.HY.HYDH"_s;
        const QString allRequests = u" where OPDATE >='1980-01-01' and OPDATE <='3000-01-01'"_s;
        QTest::newRow("YJREQLOG: blanks are no branch") << u"ex:YJREQLOG"_s << none << 0 << QStringList{u"txtWdh=  "_s, u"cmdOK!"_s} << none << closed << allRequests;
        QTest::newRow("YJREQLOG: a branch and dates") << u"ex:YJREQLOG"_s << none << 0 << QStringList{u"txtWdh=0101"_s, u"Return"_s, u"=20090101"_s, u"Return"_s, u"=20090131"_s, u"cmdOK!"_s} << none << closed << u" where (BranchNo='Bank0101' or MasterNo='0101' ) and (OPDATE >='2009-01-01' and OPDATE <='2009-01-31')"_s;
        QTest::newRow("YJREQLOG: Cancel after a refused OK") << u"ex:YJREQLOG"_s << none << 0 << QStringList{u"txtStDate=20091301"_s, u"cmdOK!"_s, u"cmdCancel!"_s} << u"起始日期格式错误，请重新输入！"_s << closed << QString();
        QTest::newRow("XYZ: every field") << u"XYZ+wdh+yjk+op"_s << none << 0 << QStringList{u"TxtAccNo=62*"_s, u"TxtHy=12*"_s, u"txtWdh=ab"_s, u"TxtYJKNumber=00?1"_s, u"BtnOk!"_s} << none << closed << u" where  ACCNO  LIKE  '62%'  and Opdate Between '1980-01-01' And '3000-01-01'  and (Opcode Like '12*') and ( wdh like 'AB' or wdh like 'ab') And YJKNUMBER like '00_1'  "_s;

        // Sub-branches (profile 65) from the sample station's branch table; a
        // branch it does not have is refused, and Cancel then hands back what OK
        // stored before the check.
        const QString unknown = u"输入的网点号不存在，请重新输入！"_s;
        QTest::newRow("YYRZ: a branch and its sub-branches") << u"YYRZ+wdh"_s << u"Vefos"_s << 0 << QStringList{u"txtWdh=110101"_s, u"chkSub!"_s, u"BtnOk!"_s} << none << closed << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and 'zzzzzzzz' and  ( wdh in ('110101','11010101','1101010101','1101010102','11010102','1101010201','1101010202','11010103','1101010301','1101010302'))"_s;
        QTest::newRow("YYRZ: an unknown branch") << u"YYRZ+wdh"_s << u"Vefos"_s << 0 << QStringList{u"txtWdh=999999"_s, u"chkSub!"_s, u"BtnOk!"_s, u"BtnCancel!"_s} << unknown << closed << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and 'zzzzzzzz'"_s;
        QTest::newRow("HYRZ: an unknown branch") << u"HYRZ+wdh"_s << u"Vefos"_s << 0 << QStringList{u"txtWdh=999999"_s, u"chkSub!"_s, u"BtnOk!"_s, u"BtnCancel!"_s} << unknown << closed << u" where (Opcode Like '%')    And OPTYPE  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
        QTest::newRow("YWRZ: an unknown branch") << u"YWRZ+wdh"_s << u"Vefos"_s << 0 << QStringList{u"txtWdh=999999"_s, u"chkSub!"_s, u"BtnOk!"_s, u"BtnCancel!"_s} << unknown << closed << QString();
        QTest::newRow("PJSBRZ: an unknown branch") << u"PJSBRZ+wdh"_s << u"Vefos"_s << 0 << QStringList{u"txtWdh=999999"_s, u"chkSub!"_s, u"CmdYes!"_s, u"cmdCancel!"_s} << unknown << closed << QString();

        // A list's entry chosen with the mouse counts while the focus is elsewhere; an
        // editable list's counts when chosen in it, not when its text names it.
        QTest::newRow("YYRZ: a list chosen with the mouse") << u"YYRZ"_s << none << 0 << QStringList{u"cmbOpType@2"_s, u"BtnOk!"_s} << none << closed << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and 'zzzzzzzz' and ( OPTYPE = '人工验印') "_s;
        QTest::newRow("ZPGLRZ: an editable list's choice by key") << u"ZPGLRZ"_s << none << 0 << QStringList{u"ComPZ#0"_s, u"CmdYes!"_s} << none << closed << u" where (accno like '%') and (opcode like '%') and  (zpid between '00000000' and '99999999') and (opdate between '1980-01-01' and '3000-01-01') and  (pztype like'人工验印')"_s;
        QTest::newRow("ZPGLRZ: Enter takes the list's text") << u"ZPGLRZ"_s << none << 0 << QStringList{u"ComPZ=B"_s, u"Return"_s, u"CmdYes!"_s} << none << closed << u" where (accno like '%') and (opcode like '%') and  (zpid between '00000000' and '99999999') and (opdate between '1980-01-01' and '3000-01-01') and  (pztype like'B人工验印')"_s;
        QTest::newRow("ZPGLRZ: the list's text is no choice") << u"ZPGLRZ"_s << none << 0 << QStringList{u"ComPZ"_s, u"CmdYes!"_s} << none << closed << u" where (accno like '%') and (opcode like '%') and  (zpid between '00000000' and '99999999') and (opdate between '1980-01-01' and '3000-01-01') and  (pztype like'%')"_s;
        // Keys, one row each where a dialog departs from Enter and Up; which
        // keys cancel each dialog, from any of its fields, is
        // guideListsTheControls'.
        const auto keys = [&](const char *tag, const QString &call, const QString &field, const QString &key, const QString &after) {
            QTest::newRow(tag) << call << none << 0 << QStringList{field, key} << none << after << none;
        };
        keys("YYRZ: keypad * moves on from the teller", u"YYRZ"_s, u"TxtHy"_s, u"Pad*"_s, u"TxtAccNo"_s);
        keys("YYRZ: Up does nothing in the account", u"YYRZ"_s, u"TxtAccNo"_s, u"Up"_s, u"TxtAccNo"_s);
        keys("YYRZ: Up goes back from a cheque", u"YYRZ"_s, u"TxtBZP"_s, u"Up"_s, u"MaskBoxJs"_s);
        keys("YYRZ: keypad * does not cancel", u"YYRZ"_s, u"MaskBoxKs"_s, u"Pad*"_s, u"MaskBoxKs"_s);
        keys("YYRZ: Enter moves on from a list", u"YYRZ"_s, u"cmbOpType"_s, u"Return"_s, u"cmbOpResult"_s);
        keys("YWRZ: Up keeps to the list", u"YWRZ"_s, u"comOpType"_s, u"Up"_s, u"comOpType"_s);
        keys("HYRZ: Down moves on", u"HYRZ"_s, u"TxtHy"_s, u"Down"_s, u"TxtCha"_s);
        keys("HYRZ: Up goes back", u"HYRZ"_s, u"TxtOpType"_s, u"Up"_s, u"TxtCha"_s);
        keys("HYRZ: Down does nothing in the branch", u"HYRZ+wdh"_s, u"txtWdh"_s, u"Down"_s, u"txtWdh"_s);
        keys("SJRZ: Up does nothing in the module", u"SJRZ"_s, u"TxtApp"_s, u"Up"_s, u"TxtApp"_s);
        keys("SJRZ: Up goes back between dates", u"SJRZ"_s, u"MaskBoxJs"_s, u"Up"_s, u"MaskBoxKs"_s);
        keys("SEALRESULTSTAT: Down moves on", u"SEALRESULTSTAT"_s, u"txtWdh"_s, u"Down"_s, u"TxtHy"_s);
        keys("YJREQLOG: Enter goes to the start date", u"ex:YJREQLOG"_s, u"txtWdh"_s, u"Return"_s, u"txtStDate"_s);
        // The focus walk passes over check boxes (and labels) and hidden fields, and stays in the first.
        keys("YWRZ: Up does nothing in the first", u"YWRZ"_s, u"TxtAccNo"_s, u"Up"_s, u"TxtAccNo"_s);
        QTest::newRow("YWRZ: Enter on the sub-branch box does nothing") << u"YWRZ+wdh"_s << u"Vefos"_s << 0 << QStringList{u"chkSub"_s, u"Return"_s} << none << u"chkSub"_s << none;
        QTest::newRow("YWRZ: Enter passes the sub-branch box") << u"YWRZ+wdh+yjk"_s << u"Vefos"_s << 0 << QStringList{u"txtWdh"_s, u"Return"_s} << none << u"TxtYJKNumber"_s << none;
        QTest::newRow("PJSBRZ: profile 39, Enter passes the hidden times") << u"PJSBRZ"_s << u"Hilur"_s << 0 << QStringList{u"MaskBoxJs"_s, u"Return"_s} << none << u"ComPZ"_s << none;
        // The hint for the field that has the focus; a disabled field is passed over.
        keys("XYZ: the branch's hint", u"XYZ+wdh"_s, u"TxtAccNo"_s, u"Return"_s, u"txtWdh 请输入网点号特征，？代表任意一位数字，* 代表多个数字 "_s);
        QTest::newRow("XYZ: the first field's hint") << u"XYZ"_s << none << 0 << QStringList{} << none << u"TxtAccNo 请输入帐号特征，？代表任意一位数字，* 代表多个数字 "_s << none;
        // The description of a typed code, beside it.
        keys("HYRZ: a known code", u"HYRZ"_s, u"TxtOpType=2"_s, u"Up"_s, u"TxtCha 人工验印"_s);
        keys("HYRZ: an unknown code keeps the last", u"HYRZ"_s, u"TxtOpType=19"_s, u"Down"_s, u"MaskBoxKs 自动验印"_s);
        keys("SJRZ: a known code", u"SJRZ"_s, u"TxtApp=1"_s, u"Return"_s, u"MaskBoxKs 自动验印"_s);
        keys("SJRZ: an unknown code", u"SJRZ"_s, u"TxtApp=12"_s, u"Return"_s, u"MaskBoxKs 输入错误！"_s);
    }

    void conditions()
    {
        QFETCH(QString, call);
        QFETCH(QString, mode);
        QFETCH(int, hint);
        QFETCH(QStringList, steps);
        QFETCH(QString, message);
        QFETCH(QString, after);
        QUARRY_SAMPLE_STATION(station, Engine::Sqlite, user(mode, hint));

        CQuarry quarry;
        const bool yes = QString::fromLatin1(QTest::currentDataTag()).endsWith(u"Yes"_s);
        const Asked outcome = operate(quarry, hostCall(call), steps, {}, yes ? QMessageBox::Yes : QMessageBox::No);
        QCOMPARE(outcome.box.text, message);
        QCOMPARE(outcome.after, after);
        QTEST(outcome.sql, "expectedSql");
        if (!outcome.box.shown)
            return;
        // Each kind of message has its own look.
        static const QStringList plainMessages{u"输入非法字符，请输入正确的数字！"_s, u"不输入帐号，请不要输入支票号"_s,
            u"日期输入错误！"_s, u"时间输入错误！"_s, u"截止日期大于开始日期，请重新输入"_s};
        const bool plain = plainMessages.contains(message);
        const QMessageBox::Icon icon = plain ? QMessageBox::NoIcon
            : message == u"请输入查询条件!"_s ? QMessageBox::Information
            : message.endsWith(u"是否继续？"_s) ? QMessageBox::Question : QMessageBox::Warning;
        QCOMPARE(outcome.box.caption, plain ? u"Quarry"_s : u"提示信息"_s);
        QCOMPARE(outcome.box.icon, icon);
        // The statistics confirm with a Cancel too.
        const bool confirm = message.startsWith(u"您查询时"_s);
        QCOMPARE(outcome.box.buttons, icon != QMessageBox::Question ? QMessageBox::Ok
                                      : QMessageBox::Yes | QMessageBox::No | (confirm ? QMessageBox::Cancel : QMessageBox::NoButton));
        // Chinese buttons, though this program loads no translation.
        for (const QString &text : outcome.box.buttonTexts)
            QVERIFY2(QStringList({u"确定"_s, u"是(&Y)"_s, u"否(&N)"_s, u"取消"_s}).contains(text), qPrintable(text));
    }

    // The host guide's table of each dialog's controls (for hosts that
    // test their own use of the component) is this dialog's, as it shows
    // with every field offered: the fields in focus order, and the keys
    // that cancel it from its first field.
    void guideListsTheControls()
    {
        QUARRY_SAMPLE_STATION(station, Engine::Sqlite, user(u"Vefos"_s));
        QStringList rows;
        const auto addRow = [&](const QString &call, const std::function<void(CQuarry &)> &show) {
            CQuarry quarry;
            QString name;
            QStringList controls;
            quarry::test::operate([&] { show(quarry); }, {}, QMessageBox::Ok, [&](QWidget *dialog) {
                name = dialog->objectName();
                for (QWidget *w = dialog->nextInFocusChain(); w != dialog; w = w->nextInFocusChain()) {
                    if ((w->focusPolicy() & Qt::TabFocus) && w->isVisibleTo(dialog) && w->isEnabled()
                        && !w->objectName().isEmpty() && !w->objectName().startsWith(u"qt_"_s))
                        controls.append(w->objectName());
                }
            });
            QStringList keys;
            for (const QString &key : {u"Esc"_s, u"Pad*"_s}) {
                if (quarry::test::operate([&] { show(quarry); }, {key}).after == u"closed"_s)
                    keys.append(key == u"Esc"_s ? key : u"keypad *"_s);
            }
            rows.append(u"| `%1` | `%2` | %3 | %4 |"_s.arg(call, name, u'`' + controls.join(u"`, `"_s) + u'`',
                                                         keys.isEmpty() ? u"none"_s : keys.join(u", "_s)));
        };
        for (const char *member : {"showClerk", "ShowYJK", "showAcc", "showBranch"})
            addRow(QString::fromLatin1(member), [member](CQuarry &q) { QMetaObject::invokeMethod(&q, member, Q_ARG(qint32, 0)); });
        addRow(u"showDate"_s, [](CQuarry &q) { q.showDate(); });
        addRow(u"showComplexEx(\"YJREQLOG\")"_s, [](CQuarry &q) { q.showComplexEx(u"YJREQLOG"_s); });
        for (const QString &logType : {u"YWRZ"_s, u"YYRZ"_s, u"HYRZ"_s, u"SJRZ"_s, u"ZGSQRZ"_s, u"ZPGLRZ"_s, u"PJSBRZ"_s, u"SEALRESULTSTAT"_s, u"XYZ"_s})
            addRow(u"showComplex(\"%1\")"_s.arg(logType), [&](CQuarry &q) { ask(q, {logType, true, true, true, false}); });

        const QString guide = QString::fromUtf8(quarry::test::readFile(qEnvironmentVariable("QUARRY_SOURCE_DIR") + u"/docs/host-guide.md"_s));
        const QString begin = u"<!-- controls: tst_logdialogs guideListsTheControls -->\n"_s;
        const qsizetype start = guide.indexOf(begin) + begin.size();
        const QString table = guide.mid(start, guide.indexOf(u"<!-- end of controls -->"_s) - start);
        const QString expected = u"| call | dialog | fields and buttons, in focus order | cancel keys |\n|---|---|---|---|\n"_s + rows.join(u'\n') + u'\n';
        if (table != expected)
            qInfo().noquote() << u"The guide's table should be:\n"_s + expected;
        QCOMPARE(table, expected);
    }

    // A long legend stays on one line: Chinese wraps between any two
    // characters, so a wrapped legend breaks inside a description.
    void legendOnOneLine()
    {
        QUARRY_SAMPLE_STATION(station, Engine::Sqlite, user(QString()));
        frmHYLog dialog;
        dialog.setOpId({1, 2, 3, 4, 5, 6});
        dialog.setOpType({u"增加行员"_s, u"删除行员"_s, u"变更行员权限"_s, u"增加组"_s, u"删除组"_s, u"变更组权限"_s});
        dialog.lOpCount = 6;
        dialog.showOpDes();
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const auto *legend = dialog.findChild<QLabel *>(u"Label3"_s);
        QVERIFY(legend->height() < 2 * legend->fontMetrics().lineSpacing());
    }

    // The compound dialog's hint for each field is readable whole at the
    // dialog's size.
    void compoundHintsWhole()
    {
        QUARRY_SAMPLE_STATION(station, Engine::Sqlite, user(QString()));
        frmPTFHLog dialog;
        dialog.ShowWDH = dialog.ShowYJK = true;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const auto *hint = dialog.findChild<QLabel *>(u"lblInfo"_s);
        for (const QString &field : {u"TxtAccNo"_s, u"txtWdh"_s, u"TxtYJKNumber"_s, u"MaskBoxKs"_s, u"MaskBoxJs"_s}) {
            dialog.findChild<QWidget *>(field)->setFocus();
            QTRY_VERIFY(!hint->text().isEmpty() && dialog.focusWidget()->objectName() == field);
            const QRect shown(hint->mapTo(&dialog, QPoint(0, 0)), hint->size());
            QVERIFY2(dialog.rect().contains(shown), qPrintable(field));
            QVERIFY2(hint->width() >= hint->fontMetrics().horizontalAdvance(hint->text()), qPrintable(field));
            QVERIFY(hint->height() >= hint->fontMetrics().height());
        }
    }

    // A station whose database is not there. An error closes the dialog and
    // reaches the host, which keeps the condition it had; the operator's own
    // mistakes are told first. A branch that cannot be looked up is refused
    // as one that does not exist.
    void componentErrors_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("message"); // "error": the call fails
        QTest::addColumn<QString>("sql"); // "previous": what the host had before
        QTest::newRow("statistics: the business date") << u"SEALRESULTSTAT"_s << QStringList{u"maskEndDate"_s, u"Return"_s} << u"error"_s << u"previous"_s;
        QTest::newRow("statistics: a wrong start date first") << u"SEALRESULTSTAT"_s << QStringList{u"maskBeginDate=20091301"_s, u"cmdOK!"_s} << u"起始日期格式错误，请重新输入！"_s << QString();
        QTest::newRow("YYRZ: a sub-branch look-up that fails") << u"YYRZ+wdh"_s << QStringList{u"txtWdh=110101"_s, u"chkSub!"_s, u"BtnOk!"_s, u"BtnCancel!"_s} << u"输入的网点号不存在，请重新输入！"_s << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and 'zzzzzzzz'"_s;
    }
    void componentErrors()
    {
        QFETCH(QString, call);
        QFETCH(QStringList, steps);
        QFETCH(QString, message);
        QFETCH(QString, sql);
        QTemporaryDir elsewhere;
        quarry::test::writeSealIni(elsewhere.path(), u"Vefos"_s, 0);
        CQuarry quarry;
        operate(quarry, hostCall(u"ACC"_s), {u"TxtAccNo=1*"_s, u"BtnOk!"_s});
        const QString previous = quarry.SQLStr();
        QVERIFY(!previous.isEmpty());
        if (message == u"error"_s) {
            QVERIFY_THROWS_EXCEPTION(QuarryError, operate(quarry, hostCall(call), steps));
        } else {
            const Asked asked = operate(quarry, hostCall(call), steps);
            QCOMPARE(asked.box.text, message);
        }
        QCOMPARE(quarry.SQLStr(), sql == u"previous"_s ? previous : sql);
    }
};

} // namespace quarry

QTEST_MAIN(quarry::TestLogDialogs)
#include "tst_logdialogs.moc"
