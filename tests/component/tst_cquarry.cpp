// CQuarry and its single-condition dialogs, driven like an operator would:
// real dialogs on the offscreen platform, keys and clicks, the condition
// read back from SQLStr.

#include "DialogDriver.h"
#include "TestFiles.h"

#include <quarry/CQuarry.h>
#include <quarry/QuarryError.h>

#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;
using quarry::test::operate;
using quarry::test::Outcome;

namespace quarry {

namespace {

// The dialogs by a short name: the dialog's name and the call that shows it
// with a length limit. "cheque" is showComplex("PJSBRZ") under profile 38,
// whose limit is the account length (the teller and cheque lengths differ
// from it, so that a limit taken from either shows).
struct Operation
{
    QString dialog;
    std::function<void(CQuarry &, qint32)> show;
};
const QHash<QString, Operation> operations{
    {u"clerk"_s, {u"frmClerk"_s, &CQuarry::showClerk}},
    {u"yjk"_s, {u"FrmYJK"_s, &CQuarry::ShowYJK}},
    {u"acc"_s, {u"frmAcc"_s, &CQuarry::showAcc}},
    {u"branch"_s, {u"frmWdh"_s, &CQuarry::showBranch}},
    {u"cheque"_s, {u"frmChequeSeriesNo"_s, [](CQuarry &q, qint32 length) {
        q.showComplex(u"PJSBRZ"_s, {}, {}, {}, {}, 0, 0, 5, length, 7, true, true, true); }}},
    {u"date"_s, {u"FrmDate"_s, [](CQuarry &q, qint32) { q.showDate(); }}},
};

// Types into the seal card dialog and confirms with Return; whether it showed.
bool queryYjk(CQuarry &quarry, const QString &keys)
{
    return operate([&] { quarry.ShowYJK(0); }, {u"txtYJK="_s + keys, u"Return"_s}).shown;
}

} // namespace

class TestCQuarry : public QObject
{
    Q_OBJECT

    QTemporaryDir m_systemDir;

private Q_SLOTS:
    // Each dialog behind its call, the empty-query rule, and FrmDate's date
    // boxes (Enter moves on from each box and never confirms).
    void singleConditionDialogs_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QString>("mode");
        QTest::addColumn<int>("hint");
        QTest::addColumn<int>("length");
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QMessageBox::StandardButton>("answer"); // to the message box
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("after"); // the focus after the steps, or "closed"
        QTest::addColumn<QString>("expectedSql");
        QTest::addColumn<QString>("startShown"); // FrmDate's start box once the focus has left it; null: not looked at

        const QString ask = u"未输入任何查询条件，查询可能需要很长时间，是否继续？"_s;
        const QString refuse = u"请输入查询条件!"_s;
        const auto Yes = QMessageBox::Yes, Ok = QMessageBox::Ok;
        const QString Enter = u"Return"_s, Pad = u"PadEnter"_s, Times = u"Pad*"_s;
        const QString none, plain, closed = u"closed"_s; // no message; the default profile

        QTest::newRow("yjk: length") << u"yjk"_s << plain << 0 << 6 << QStringList{u"txtYJK=12345678"_s, Pad} << Ok << none << closed << u" Where YJKNUMBER like '123456'"_s << QString();
        QTest::newRow("clerk: profile 39 adds the name") << u"clerk"_s << u"Hilur"_s << 0 << 4 << QStringList{u"txtClerk=00?12"_s, Pad} << Ok << none << closed << u" Where OpCode like  '00_1' or  OpName like '00_1'"_s << QString();
        QTest::newRow("cheque: the account length") << u"cheque"_s << u"Bunar"_s << 0 << 3 << QStringList{u"txtChequeSeriesNo=1234"_s, Enter} << Ok << none << closed << u" Where ChequeSeriesNo like  '123%'"_s << QString();
        QTest::newRow("cheque: keypad multiply") << u"cheque"_s << u"Bunar"_s << 0 << 0 << QStringList{u"txtChequeSeriesNo=1"_s, Times} << Ok << none << closed << QString() << QString();
        QTest::newRow("date: Cancel") << u"date"_s << plain << 0 << 0 << QStringList{u"MaskBoxKs=2009"_s, u"cmdCancel!"_s} << Ok << none << closed << QString() << QString();
        QTest::newRow("branch: empty, never asks") << u"branch"_s << u"Tecis"_s << 2 << 0 << QStringList{u"txtWdh="_s, Enter} << Ok << none << closed << u" where  ( WDH LIKE '%' or  WDH LIKE '%')"_s << QString();
        QTest::newRow("acc: empty, profile 54") << u"acc"_s << u"Tecis"_s << 2 << 0 << QStringList{u"txtAcc= "_s, Enter} << Ok << refuse << u"txtAcc"_s << QString() << QString();
        QTest::newRow("acc: empty, hint 1") << u"acc"_s << plain << 1 << 0 << QStringList{u"txtAcc="_s, Enter} << Ok << none << closed << u" Where AccNo like '%'"_s << QString();
        QTest::newRow("clerk: empty, hint 2, Yes") << u"clerk"_s << plain << 2 << 0 << QStringList{u"txtClerk="_s, Enter} << Yes << ask << closed << u" Where OpCode like  '%'"_s << QString();
        QTest::newRow("date: empty, profile 54") << u"date"_s << u"Tecis"_s << 0 << 0 << QStringList{u"MaskBoxKs="_s, u"cmdOK!"_s} << Ok << refuse << u"cmdOK"_s << QString() << QString();

        const QString blank = u"    -  -  "_s;
        const auto dates = [&](const char *tag, const QString &start, const QString &end, const QString &startShown, const QString &sql,
                               const QString &message, const QString &after) {
            QTest::newRow(tag) << u"date"_s << plain << 0 << 0 << QStringList{u"MaskBoxKs="_s + start, Enter, u"="_s + end, Enter, u"cmdOK!"_s}
                               << Ok << message << after << sql << startShown;
        };
        dates("date: end only", none, u"20091231"_s, blank, u" Where OpDate Between '1980-01-01' And '2009-12-31'"_s, none, closed);
        dates("date: start partly typed is a date", u"2009-1-5"_s, none, u"2009-01-05"_s, u" Where OpDate Between '2009-01-05' And '3000-01-01'"_s, none, closed);
        dates("date: start month only", u"2009-1"_s, none, u"2009-1 -  "_s, none, u"起始日期格式错误，请重新输入！"_s, u"MaskBoxKs"_s);
        dates("date: end 29 February 2009", none, u"20090229"_s, blank, none, u"截止日期格式错误，请重新输入！"_s, u"MaskBoxJs"_s);
        dates("date: start and end the same day", u"20090301"_s, u"20090301"_s, u"2009-03-01"_s, u" Where OpDate Between '2009-03-01' And '2009-03-01'"_s, none, closed);
        dates("date: end before default start", none, u"19791231"_s, blank, none, u"截止日期不能小于起始日期，请重新输入！"_s, u"MaskBoxJs"_s);
    }

    void singleConditionDialogs()
    {
        QFETCH(QString, operation);
        QFETCH(QString, mode);
        QFETCH(int, hint);
        QFETCH(int, length);
        QFETCH(QStringList, steps);
        QFETCH(QMessageBox::StandardButton, answer);
        QFETCH(QString, message);
        QFETCH(QString, startShown);
        quarry::test::writeSealIni(m_systemDir.path(), mode, hint);

        CQuarry quarry;
        QVERIFY(queryYjk(quarry, u"9"_s)); // which no outcome may leave behind
        const Operation &op = operations[operation];
        QString shown;
        const Outcome seen = operate([&] { op.show(quarry, length); }, steps, answer, [&](QWidget *dialog) {
            if (const auto *start = dialog->findChild<QLineEdit *>(u"MaskBoxKs"_s))
                shown = start->displayText();
        });
        QCOMPARE(seen.dialog, op.dialog);
        QCOMPARE(seen.box.text, message);
        // Which kind of box each message has; the look of each kind is
        // tst_logdialogs'.
        if (seen.box.shown) {
            const bool asked = message == u"未输入任何查询条件，查询可能需要很长时间，是否继续？"_s;
            QCOMPARE(seen.box.icon, asked ? QMessageBox::Question : message == u"请输入查询条件!"_s ? QMessageBox::Information : QMessageBox::Warning);
            QCOMPARE(seen.box.defaultButton, asked ? QMessageBox::No : QMessageBox::Ok);
        }
        QTEST(seen.after, "after");
        QTEST(quarry.SQLStr(), "expectedSql");
        if (!startShown.isNull())
            QCOMPARE(shown, startShown);
    }

    void sqlStrAcrossCalls()
    {
        quarry::test::writeSealIni(m_systemDir.path(), QString(), 0);
        CQuarry quarry;
        QVERIFY(queryYjk(quarry, u"77"_s));
        // Calls that show nothing or fail leave it as it was.
        QVERIFY(!operate([&] { quarry.showComplex(u"YZXCLRZ"_s, {}, {}, {}, {}, 0, 0, 0, 0, 0, false, false, false); }, {}).shown);
        QVERIFY(!operate([&] { quarry.showComplexEx(u"YWRZ"_s); }, {}).shown);
        QVERIFY_THROWS_EXCEPTION(QuarryError, quarry.showAcc(-1));
        QCOMPARE(quarry.SQLStr(), u" Where YJKNUMBER like '77'"_s);
    }

    // How a call ended, apart from its condition. A configuration that
    // cannot be read is told in "系统提示" boxes, which the operator
    // acknowledges before the dialog shows: the call has failed, whatever
    // the operator does next.
    void outcomes_data()
    {
        QTest::addColumn<QByteArray>("sealIni"); // null: no station
        QTest::addColumn<QStringList>("steps"); // none: a log type that asks nothing
        QTest::addColumn<CQuarry::Outcome>("outcome");
        QTest::addColumn<QString>("error"); // number, source: the start of the description

        const QByteArray station = "[SBMK]\r\nDoubleSealQuota=0\r\n";
        const QString noLocalDb = u"2000 CSysCfg.ConnectDb(): 初始化系统参数错误！连接数据库SealServer 失败！"_s;
        using O = CQuarry::Outcome;
        QTest::newRow("nothing asked") << station << QStringList() << O::NothingAsked << QString();
        QTest::newRow("no station, then OK") << QByteArray() << QStringList{u"txtAcc=1"_s, u"Return"_s} << O::Failed << noLocalDb;
        QTest::newRow("unreachable server") << QByteArray("[DATABASESET]\r\nBASEMODE=MYSQL\r\n[SQLSERVER]\r\nSERVER=127.0.0.1:1\r\n") << QStringList{u"Esc"_s} << O::Failed
                                            << u"2000 CSysCfg.ConnectDb(): 初始化系统参数错误！连接数据库127.0.0.1:1 失败！"_s;
    }

    void outcomes()
    {
        QFETCH(QByteArray, sealIni);
        QFETCH(QStringList, steps);
        QTemporaryDir systemDir;
        if (!sealIni.isNull())
            quarry::test::writeFile(systemDir.filePath(u"SEAL.INI"_s), sealIni);
        qputenv("QUARRY_SYSTEM_DIR", QFile::encodeName(systemDir.path()));

        // The boxes are acknowledged, the dialog is driven.
        quarry::test::ModalWatch watch(nullptr, [&](QWidget *modal) {
            if (auto *box = qobject_cast<QMessageBox *>(modal))
                return box->accept();
            QVERIFY(QTest::qWaitForWindowActive(modal));
            for (const QString &action : steps)
                quarry::test::step(modal, action);
        }, true);
        CQuarry quarry;
        QCOMPARE(quarry.lastOutcome(), CQuarry::Outcome::NotCalled);
        if (steps.isEmpty())
            quarry.showComplex(u"YZXCLRZ"_s, {}, {}, {}, {}, 0, 0, 0, 0, 0, false, false, false);
        else
            quarry.showAcc(0);
        QTEST(quarry.lastOutcome(), "outcome");
        const std::optional<QuarryError> fault = quarry.lastError();
        const QString said = fault ? u"%1 %2: %3"_s.arg(fault->number()).arg(fault->source(), fault->description()) : QString();
        QFETCH(QString, error);
        QCOMPARE(said.left(error.size()), error);
    }

    // Without a QApplication (tst_quarryask has none) or off its thread, a
    // call raises its error at once and shows nothing.
    void offTheGuiThread()
    {
        quarry::test::writeSealIni(m_systemDir.path(), QString(), 0);
        CQuarry quarry;
        qint32 raised = 0;
        const std::unique_ptr<QThread> worker(QThread::create([&] {
            try {
                quarry.showDate();
            } catch (const QuarryError &error) {
                raised = error.number();
            }
        }));
        worker->start();
        QVERIFY2(worker->wait(test::WaitLimit), "the worker thread ended");
        QCOMPARE(raised, QuarryError::NotGuiThread);
    }
};

} // namespace quarry

QTEST_MAIN(quarry::TestCQuarry)
#include "tst_cquarry.moc"
