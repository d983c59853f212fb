// CQuarry and its single-condition dialogs, driven like an operator would:
// real dialogs on the offscreen platform, keys and clicks, the condition
// read back from SQLStr.

#include "ModalWatch.h"

#include "component/LogRouting.h"

#include <quarry/CQuarry.h>
#include <quarry/QuarryError.h>

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using quarry::test::answerBox;
using quarry::test::BoxSeen;
using quarry::test::ModalWatch;

namespace quarry {

namespace {

// The operations that show one pattern dialog, by a short name. "cheque" is
// showComplex("PJSBRZ") under profile 38; its limit is the account length.
void callPattern(CQuarry &quarry, const QString &operation, qint32 length)
{
    if (operation == u"clerk"_s)
        quarry.showClerk(length);
    else if (operation == u"yjk"_s)
        quarry.ShowYJK(length);
    else if (operation == u"acc"_s)
        quarry.showAcc(length);
    else if (operation == u"branch"_s)
        quarry.showBranch(length);
    else if (operation == u"cheque"_s)
        quarry.showComplex(u"PJSBRZ"_s, {}, {}, {}, {}, 0, 0, 3, length, 3, true, true, true);
    else
        QFAIL("unknown operation");
}

// The text box each pattern operation's dialog has.
QString patternBox(const QString &operation)
{
    static const QHash<QString, QString> boxes{
        {u"clerk"_s, u"txtClerk"_s},   {u"yjk"_s, u"txtYJK"_s},
        {u"acc"_s, u"txtAcc"_s},       {u"branch"_s, u"txtWdh"_s},
        {u"cheque"_s, u"txtChequeSeriesNo"_s},
    };
    return boxes.value(operation);
}

QLineEdit *lineEdit(QWidget *dialog, const QString &name)
{
    return dialog->findChild<QLineEdit *>(name);
}

// Types into a box from its first position, as an operator who clicked into it.
void typeInto(QLineEdit *box, const QString &keys)
{
    box->setFocus();
    box->setCursorPosition(0);
    QTest::keyClicks(box, keys);
}

} // namespace

class TestCQuarry : public QObject
{
    Q_OBJECT

private:
    // seal.ini with bank profile `mode` ("" for the default) and QueryHintMode.
    void useConfig(const QString &mode, int queryHintMode = 0);
    // Runs `call` with `interact` acting on the dialog it shows.
    bool runDialog(const std::function<void()> &call, const std::function<void(QWidget *)> &interact);

    QTemporaryDir m_systemDir;

private Q_SLOTS:
    void initTestCase();

    void routing_data();
    void routing();

    void dialogIdentity_data();
    void dialogIdentity();
    void patternConditions_data();
    void patternConditions();
    void cancelKeys_data();
    void cancelKeys();
    void maxLength_data();
    void maxLength();
    void negativeLengthRaises();
    void freshDialogEachCall();
    void emptyQueryRule_data();
    void emptyQueryRule();
    void dateConditions_data();
    void dateConditions();
    void dateFocusKeys_data();
    void dateFocusKeys();
    void logDialogsNotAvailable_data();
    void logDialogsNotAvailable();
    void callsThatShowNothingKeepSqlStr();
};

void TestCQuarry::useConfig(const QString &mode, int queryHintMode)
{
    QFile ini(m_systemDir.filePath(u"SEAL.INI"_s));
    QVERIFY(ini.open(QIODevice::WriteOnly | QIODevice::Truncate));
    // Without DoubleSealQuota the configuration would go to the local
    // database for it.
    QString text = u"[SBMK]\r\nDoubleSealQuota=0\r\n[USER]\r\nQueryHintMode=%1\r\n"_s.arg(queryHintMode);
    if (!mode.isEmpty())
        text += u"MODE="_s + mode + u"\r\n"_s;
    ini.write(text.toLocal8Bit());
}

bool TestCQuarry::runDialog(const std::function<void()> &call,
                            const std::function<void(QWidget *)> &interact)
{
    ModalWatch watch(nullptr, interact);
    call();
    return watch.fired();
}

void TestCQuarry::initTestCase()
{
    QVERIFY(m_systemDir.isValid());
    qputenv("QUARRY_SYSTEM_DIR", m_systemDir.path().toLocal8Bit());
}

void TestCQuarry::routing_data()
{
    QTest::addColumn<QString>("logType");
    QTest::addColumn<int>("profile");
    QTest::addColumn<LogDialog>("expected");

    QTest::newRow("YWRZ") << u"YWRZ"_s << 0 << LogDialog::YWLog;
    QTest::newRow("YYRZ") << u"YYRZ"_s << 0 << LogDialog::YYLog;
    QTest::newRow("HYRZ") << u"HYRZ"_s << 0 << LogDialog::HYLog;
    QTest::newRow("SJRZ") << u"SJRZ"_s << 0 << LogDialog::SJLog;
    QTest::newRow("YZXCLRZ") << u"YZXCLRZ"_s << 0 << LogDialog::None;
    QTest::newRow("ZGSQRZ") << u"ZGSQRZ"_s << 0 << LogDialog::ZGSQLog;
    QTest::newRow("ZPGLRZ") << u"ZPGLRZ"_s << 0 << LogDialog::ZPGLLog;
    QTest::newRow("PJSBRZ") << u"PJSBRZ"_s << 0 << LogDialog::PJSBLog;
    QTest::newRow("PJSBRZ profile 37") << u"PJSBRZ"_s << 37 << LogDialog::PJSBLog;
    QTest::newRow("PJSBRZ profile 38") << u"PJSBRZ"_s << 38 << LogDialog::ChequeSeriesNo;
    QTest::newRow("YWRZ profile 38") << u"YWRZ"_s << 38 << LogDialog::YWLog;
    QTest::newRow("SEALRESULTSTAT") << u"SEALRESULTSTAT"_s << 0 << LogDialog::SealResultStat;
    QTest::newRow("lower case is another type") << u"ywrz"_s << 0 << LogDialog::PTFHLog;
    QTest::newRow("lower case pjsbrz, profile 38") << u"pjsbrz"_s << 38 << LogDialog::PTFHLog;
    QTest::newRow("trailing blank") << u"YWRZ "_s << 0 << LogDialog::PTFHLog;
    QTest::newRow("empty") << QString() << 0 << LogDialog::PTFHLog;
    QTest::newRow("unknown") << u"PTFHRZ"_s << 0 << LogDialog::PTFHLog;
}

void TestCQuarry::routing()
{
    QFETCH(QString, logType);
    QFETCH(int, profile);
    QFETCH(LogDialog, expected);
    QCOMPARE(complexLogDialog(logType, qint16(profile)), expected);
}

void TestCQuarry::dialogIdentity_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("dialogName");
    QTest::addColumn<QString>("prompt");

    const QString wildcards = u"特征:\"*\" 代表多个任意数字,\"?\"代表一个任意数字,空着显示所有."_s;
    QTest::newRow("clerk") << u"clerk"_s << u"frmClerk"_s << u"请输入行员"_s + wildcards;
    QTest::newRow("yjk") << u"yjk"_s << u"FrmYJK"_s << u"请输入印鉴卡号"_s + wildcards;
    QTest::newRow("acc") << u"acc"_s << u"frmAcc"_s << u"请输入账号"_s + wildcards;
    QTest::newRow("branch") << u"branch"_s << u"frmWdh"_s << u"请输入网点号"_s + wildcards;
    QTest::newRow("cheque") << u"cheque"_s << u"frmChequeSeriesNo"_s << QString();
}

void TestCQuarry::dialogIdentity()
{
    QFETCH(QString, operation);
    QFETCH(QString, dialogName);
    QFETCH(QString, prompt);
    useConfig(operation == u"cheque"_s ? u"Bunar"_s : QString());

    CQuarry quarry;
    QString seenName, seenPrompt;
    bool modal = false, owned = true, hasBox = false;
    QVERIFY(runDialog([&] { callPattern(quarry, operation, 0); }, [&](QWidget *dialog) {
        seenName = dialog->objectName();
        modal = dialog->isModal();
        owned = dialog->parentWidget() != nullptr;
        hasBox = lineEdit(dialog, patternBox(operation)) != nullptr;
        seenPrompt = dialog->findChild<QLabel *>()->text();
    }));
    QCOMPARE(seenName, dialogName);
    QVERIFY(modal);
    QVERIFY(!owned);
    QVERIFY(hasBox);
    if (!prompt.isEmpty())
        QCOMPARE(seenPrompt, prompt);
}

void TestCQuarry::patternConditions_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<bool>("keypadEnter");
    QTest::addColumn<QString>("expected");

    QTest::newRow("yjk: first * only")
        << u"yjk"_s << QString() << u"12*34*"_s << false << u" Where YJKNUMBER like '12%34*'"_s;
    QTest::newRow("yjk: quote dropped")
        << u"yjk"_s << QString() << u"12'3"_s << false << u" Where YJKNUMBER like '123'"_s;
    QTest::newRow("yjk: keypad Enter")
        << u"yjk"_s << QString() << u"9"_s << true << u" Where YJKNUMBER like '9'"_s;
    QTest::newRow("branch: empty")
        << u"branch"_s << QString() << QString() << false
        << u" where  ( WDH LIKE '%' or  WDH LIKE '%')"_s;
    QTest::newRow("branch: both cases")
        << u"branch"_s << QString() << u"Ab*"_s << false
        << u" where  ( WDH LIKE 'AB%' or  WDH LIKE 'ab%')"_s;
    QTest::newRow("acc: wildcard")
        << u"acc"_s << QString() << u"6222*"_s << true << u" Where AccNo like '6222%'"_s;
    QTest::newRow("acc: backslash and brackets refused")
        << u"acc"_s << QString() << u"1\\2[3]4"_s << false << u" Where AccNo like '1234'"_s;
    QTest::newRow("clerk")
        << u"clerk"_s << QString() << u"00?"_s << false << u" Where OpCode like  '00_'"_s;
    QTest::newRow("clerk: profile 39 adds the name")
        << u"clerk"_s << u"Hilur"_s << u"00?"_s << false
        << u" Where OpCode like  '00_' or  OpName like '00_'"_s;
    QTest::newRow("clerk: profile 54 is not 39")
        << u"clerk"_s << u"Tecis"_s << u"5"_s << false << u" Where OpCode like  '5'"_s;
    QTest::newRow("cheque: a prefix")
        << u"cheque"_s << u"Bunar"_s << u"12"_s << false
        << u" Where ChequeSeriesNo like  '12%'"_s;
}

void TestCQuarry::patternConditions()
{
    QFETCH(QString, operation);
    QFETCH(QString, mode);
    QFETCH(QString, keys);
    QFETCH(bool, keypadEnter);
    QFETCH(QString, expected);
    useConfig(mode);

    CQuarry quarry;
    QVERIFY(runDialog([&] { callPattern(quarry, operation, 0); }, [&](QWidget *dialog) {
        QLineEdit *box = lineEdit(dialog, patternBox(operation));
        typeInto(box, keys);
        if (keypadEnter)
            QTest::keyClick(box, Qt::Key_Enter, Qt::KeypadModifier);
        else
            QTest::keyClick(box, Qt::Key_Return);
    }));
    QCOMPARE(quarry.SQLStr(), expected);
}

void TestCQuarry::cancelKeys_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");

    const QStringList operations{u"clerk"_s, u"yjk"_s, u"acc"_s, u"branch"_s, u"cheque"_s, u"date"_s};
    for (const QString &operation : operations) {
        QTest::addRow("%s: Esc", qPrintable(operation)) << operation << int(Qt::Key_Escape) << 0;
        QTest::addRow("%s: keypad multiply", qPrintable(operation))
            << operation << int(Qt::Key_Asterisk) << int(Qt::KeypadModifier);
    }
}

void TestCQuarry::cancelKeys()
{
    QFETCH(QString, operation);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    useConfig(u"Bunar"_s);

    CQuarry quarry;
    // A condition from an earlier call, which a cancel must not leave behind.
    QVERIFY(runDialog([&] { quarry.ShowYJK(0); },
                      [](QWidget *d) { QTest::keyClick(lineEdit(d, u"txtYJK"_s), Qt::Key_Return); }));
    QVERIFY(!quarry.SQLStr().isEmpty());

    const bool date = operation == u"date"_s;
    bool closedByKey = false;
    QVERIFY(runDialog([&] { date ? quarry.showDate() : callPattern(quarry, operation, 0); },
                      [&](QWidget *dialog) {
        QLineEdit *box = lineEdit(dialog, date ? u"MaskBoxKs"_s : patternBox(operation));
        typeInto(box, u"20"_s);
        QTest::keyClick(box, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        closedByKey = !dialog->isVisible();
    }));
    QVERIFY(closedByKey);
    QCOMPARE(quarry.SQLStr(), QString());
}

void TestCQuarry::maxLength_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("expectedPattern");

    QTest::newRow("clerk 4") << u"clerk"_s << 4 << u"1234"_s;
    QTest::newRow("yjk 6") << u"yjk"_s << 6 << u"123456"_s;
    QTest::newRow("acc 1") << u"acc"_s << 1 << u"1"_s;
    QTest::newRow("branch 3") << u"branch"_s << 3 << u"123"_s;
    QTest::newRow("cheque: the account length") << u"cheque"_s << 5 << u"12345"_s;
    QTest::newRow("0 is no limit") << u"yjk"_s << 0 << u"123456789012"_s;
}

void TestCQuarry::maxLength()
{
    QFETCH(QString, operation);
    QFETCH(int, length);
    QFETCH(QString, expectedPattern);
    useConfig(u"Bunar"_s);

    CQuarry quarry;
    QVERIFY(runDialog([&] { callPattern(quarry, operation, length); }, [&](QWidget *dialog) {
        QLineEdit *box = lineEdit(dialog, patternBox(operation));
        typeInto(box, u"123456789012"_s);
        QTest::keyClick(box, Qt::Key_Return);
    }));
    QVERIFY2(quarry.SQLStr().contains(u"'"_s + expectedPattern), qPrintable(quarry.SQLStr()));
    QVERIFY2(!quarry.SQLStr().contains(expectedPattern + u"9"_s), qPrintable(quarry.SQLStr()));
}

void TestCQuarry::negativeLengthRaises()
{
    useConfig(QString());
    CQuarry quarry;
    ModalWatch watch(nullptr, [](QWidget *) {});
    QVERIFY_THROWS_EXCEPTION(QuarryError, quarry.showAcc(-1));
    QVERIFY(!watch.fired());
}

void TestCQuarry::freshDialogEachCall()
{
    useConfig(QString());
    CQuarry quarry;
    QVERIFY(runDialog([&] { quarry.showAcc(0); }, [](QWidget *dialog) {
        QLineEdit *box = lineEdit(dialog, u"txtAcc"_s);
        typeInto(box, u"123"_s);
        QTest::keyClick(box, Qt::Key_Return);
    }));
    QCOMPARE(quarry.SQLStr(), u" Where AccNo like '123'"_s);
    QString secondText = u"unread"_s;
    QVERIFY(runDialog([&] { quarry.showAcc(0); }, [&](QWidget *dialog) {
        QLineEdit *box = lineEdit(dialog, u"txtAcc"_s);
        secondText = box->text();
        QTest::keyClick(box, Qt::Key_Return);
    }));
    QCOMPARE(secondText, QString());
    QCOMPARE(quarry.SQLStr(), u" Where AccNo like '%'"_s);
}

void TestCQuarry::emptyQueryRule_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("hint");
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::addColumn<QString>("expectedText");
    QTest::addColumn<QMessageBox::Icon>("expectedIcon");
    QTest::addColumn<QString>("expectedSql"); // empty: the dialog stayed open

    const QString ask = u"未输入任何查询条件，查询可能需要很长时间，是否继续？"_s;
    const QString refuse = u"请输入查询条件!"_s;
    const QString allDates = u" Where OpDate Between '1980-01-01' And '3000-01-01'"_s;
    const auto Yes = QMessageBox::Yes, No = QMessageBox::No, Ok = QMessageBox::Ok;
    const auto Question = QMessageBox::Question, Information = QMessageBox::Information,
               NoIcon = QMessageBox::NoIcon;

    QTest::newRow("acc, profile 54") << u"acc"_s << u"Tecis"_s << 0 << Ok << refuse << Information << QString();
    QTest::newRow("acc, profile 54, hint 2") << u"acc"_s << u"Tecis"_s << 2 << Ok << refuse << Information << QString();
    QTest::newRow("acc, hint 2, No") << u"acc"_s << QString() << 2 << No << ask << Question << QString();
    QTest::newRow("acc, hint 2, Yes") << u"acc"_s << QString() << 2 << Yes << ask << Question << u" Where AccNo like '%'"_s;
    QTest::newRow("acc, hint 1") << u"acc"_s << QString() << 1 << Ok << QString() << NoIcon << u" Where AccNo like '%'"_s;
    QTest::newRow("clerk, profile 54") << u"clerk"_s << u"Tecis"_s << 0 << Ok << refuse << Information << QString();
    QTest::newRow("clerk, hint 2, No") << u"clerk"_s << u"Hilur"_s << 2 << No << ask << Question << QString();
    QTest::newRow("clerk, hint 2, Yes") << u"clerk"_s << QString() << 2 << Yes << ask << Question << u" Where OpCode like  '%'"_s;
    QTest::newRow("date, profile 54") << u"date"_s << u"Tecis"_s << 0 << Ok << refuse << Information << QString();
    QTest::newRow("date, hint 2, No") << u"date"_s << QString() << 2 << No << ask << Question << QString();
    QTest::newRow("date, hint 2, Yes") << u"date"_s << QString() << 2 << Yes << ask << Question << allDates;
    QTest::newRow("date, no hint") << u"date"_s << QString() << 0 << Ok << QString() << NoIcon << allDates;
    QTest::newRow("yjk asks nothing") << u"yjk"_s << u"Tecis"_s << 2 << Ok << QString() << NoIcon << u" Where YJKNUMBER like '%'"_s;
    QTest::newRow("branch asks nothing") << u"branch"_s << u"Tecis"_s << 2 << Ok << QString() << NoIcon << u" where  ( WDH LIKE '%' or  WDH LIKE '%')"_s;
}

void TestCQuarry::emptyQueryRule()
{
    QFETCH(QString, operation);
    QFETCH(QString, mode);
    QFETCH(int, hint);
    QFETCH(QMessageBox::StandardButton, answer);
    QFETCH(QString, expectedText);
    QFETCH(QMessageBox::Icon, expectedIcon);
    QFETCH(QString, expectedSql);
    useConfig(mode, hint);

    CQuarry quarry;
    const bool date = operation == u"date"_s;
    BoxSeen seen;
    bool stayedOpen = false;
    QVERIFY(runDialog([&] { date ? quarry.showDate() : callPattern(quarry, operation, 0); },
                      [&](QWidget *dialog) {
        ModalWatch box(dialog, answerBox(answer, &seen));
        if (date)
            QTest::mouseClick(dialog->findChild<QPushButton *>(u"cmdOK"_s), Qt::LeftButton);
        else
            QTest::keyClick(lineEdit(dialog, patternBox(operation)), Qt::Key_Return);
        stayedOpen = dialog->isVisible();
    }));
    QCOMPARE(seen.text, expectedText);
    QCOMPARE(seen.icon, expectedIcon);
    if (seen.shown)
        QCOMPARE(seen.caption, u"提示信息"_s);
    if (expectedIcon == QMessageBox::Question) {
        QCOMPARE(seen.buttons, QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(seen.defaultButton, QMessageBox::No);
    } else if (seen.shown) {
        QCOMPARE(seen.buttons, QMessageBox::Ok);
    }
    QCOMPARE(stayedOpen, expectedSql.isEmpty());
    QCOMPARE(quarry.SQLStr(), expectedSql);
}

void TestCQuarry::dateConditions_data()
{
    QTest::addColumn<QString>("start"); // digits typed into the start box
    QTest::addColumn<QString>("end");
    QTest::addColumn<QString>("expectedSql");
    QTest::addColumn<QString>("expectedMessage");
    QTest::addColumn<QString>("expectedFocus");

    const QString noMessage;
    const QString startWrong = u"起始日期格式错误，请重新输入！"_s;
    const QString endWrong = u"截止日期格式错误，请重新输入！"_s;
    const QString endBefore = u"截止日期不能小于起始日期，请重新输入！"_s;
    const auto between = [](const char *from, const char *to) {
        return u" Where OpDate Between '%1' And '%2'"_s.arg(QLatin1StringView(from), QLatin1StringView(to));
    };

    QTest::newRow("both blank") << QString() << QString() << between("1980-01-01", "3000-01-01") << noMessage << QString();
    QTest::newRow("end only") << QString() << u"20091231"_s << between("1980-01-01", "2009-12-31") << noMessage << QString();
    QTest::newRow("start only") << u"20090105"_s << QString() << between("2009-01-05", "3000-01-01") << noMessage << QString();
    QTest::newRow("equal dates") << u"20090228"_s << u"20090228"_s << between("2009-02-28", "2009-02-28") << noMessage << QString();
    QTest::newRow("start 30 February") << u"20090230"_s << QString() << QString() << startWrong << u"MaskBoxKs"_s;
    QTest::newRow("start partly typed") << u"2009023"_s << u"20091231"_s << QString() << startWrong << u"MaskBoxKs"_s;
    QTest::newRow("end 29 February 2009") << QString() << u"20090229"_s << QString() << endWrong << u"MaskBoxJs"_s;
    QTest::newRow("end before start") << u"20090301"_s << u"20090228"_s << QString() << endBefore << u"MaskBoxJs"_s;
    QTest::newRow("end before default start") << QString() << u"19791231"_s << QString() << endBefore << u"MaskBoxJs"_s;
}

void TestCQuarry::dateConditions()
{
    QFETCH(QString, start);
    QFETCH(QString, end);
    QFETCH(QString, expectedSql);
    QFETCH(QString, expectedMessage);
    QFETCH(QString, expectedFocus);
    useConfig(QString());

    CQuarry quarry;
    BoxSeen seen;
    QString focus;
    QVERIFY(runDialog([&] { quarry.showDate(); }, [&](QWidget *dialog) {
        typeInto(lineEdit(dialog, u"MaskBoxKs"_s), start);
        typeInto(lineEdit(dialog, u"MaskBoxJs"_s), end);
        auto *ok = dialog->findChild<QPushButton *>(u"cmdOK"_s);
        ok->setFocus();
        ModalWatch box(dialog, answerBox(QMessageBox::Ok, &seen));
        QTest::mouseClick(ok, Qt::LeftButton);
        if (dialog->isVisible())
            focus = dialog->focusWidget()->objectName();
    }));
    QCOMPARE(seen.text, expectedMessage);
    if (seen.shown) {
        QCOMPARE(seen.icon, QMessageBox::Warning);
        QCOMPARE(seen.caption, u"提示信息"_s);
        QCOMPARE(seen.buttons, QMessageBox::Ok);
    }
    QCOMPARE(focus, expectedFocus);
    QCOMPARE(quarry.SQLStr(), expectedSql);
}

void TestCQuarry::dateFocusKeys_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("expectedFocus");

    QTest::newRow("Enter from start") << u"MaskBoxKs"_s << int(Qt::Key_Return) << u"MaskBoxJs"_s;
    QTest::newRow("keypad Enter from start") << u"MaskBoxKs"_s << int(Qt::Key_Enter) << u"MaskBoxJs"_s;
    QTest::newRow("Enter from end") << u"MaskBoxJs"_s << int(Qt::Key_Return) << u"cmdOK"_s;
    QTest::newRow("Up from end") << u"MaskBoxJs"_s << int(Qt::Key_Up) << u"MaskBoxKs"_s;
    QTest::newRow("Up from start stays") << u"MaskBoxKs"_s << int(Qt::Key_Up) << u"MaskBoxKs"_s;
}

void TestCQuarry::dateFocusKeys()
{
    QFETCH(QString, from);
    QFETCH(int, key);
    QFETCH(QString, expectedFocus);
    useConfig(QString());

    CQuarry quarry;
    QString focus;
    QVERIFY(runDialog([&] { quarry.showDate(); }, [&](QWidget *dialog) {
        QLineEdit *box = lineEdit(dialog, from);
        box->setFocus();
        QTest::keyClick(box, Qt::Key(key));
        focus = dialog->focusWidget()->objectName();
    }));
    QCOMPARE(focus, expectedFocus);
    QCOMPARE(quarry.SQLStr(), QString()); // Enter in a box never confirms
}

void TestCQuarry::logDialogsNotAvailable_data()
{
    QTest::addColumn<QString>("logType");
    QTest::addColumn<bool>("extended");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("dialogName");

    const QString complex = u"CQuarry.showComplex()"_s;
    QTest::newRow("YWRZ") << u"YWRZ"_s << false << complex << u"frmYWLog"_s;
    QTest::newRow("PJSBRZ, profile 0") << u"PJSBRZ"_s << false << complex << u"frmPJSBLog"_s;
    QTest::newRow("ywrz") << u"ywrz"_s << false << complex << u"frmPTFHLog"_s;
    QTest::newRow("empty") << QString() << false << complex << u"frmPTFHLog"_s;
    QTest::newRow("yjreqlog") << u"yjreqlog"_s << true << u"CQuarry.showComplexEx()"_s << u"frmYjReqLog"_s;
}

void TestCQuarry::logDialogsNotAvailable()
{
    QFETCH(QString, logType);
    QFETCH(bool, extended);
    QFETCH(QString, source);
    QFETCH(QString, dialogName);
    useConfig(QString());

    CQuarry quarry;
    try {
        if (extended)
            quarry.showComplexEx(logType, 1, u"x"_s);
        else
            quarry.showComplex(logType, {1}, {u"a"_s}, {}, {}, 1, 0, 6, 20, 8, true, true, true);
        QFAIL("no error raised");
    } catch (const QuarryError &error) {
        QCOMPARE(error.source(), source);
        QVERIFY2(error.description().contains(dialogName), qPrintable(error.description()));
    }
}

void TestCQuarry::callsThatShowNothingKeepSqlStr()
{
    useConfig(QString());
    CQuarry quarry;
    QCOMPARE(quarry.SQLStr(), QString());
    QVERIFY(runDialog([&] { quarry.ShowYJK(0); }, [](QWidget *dialog) {
        QLineEdit *box = lineEdit(dialog, u"txtYJK"_s);
        typeInto(box, u"77"_s);
        QTest::keyClick(box, Qt::Key_Return);
    }));
    const QString before = u" Where YJKNUMBER like '77'"_s;
    QCOMPARE(quarry.SQLStr(), before);

    QVERIFY(!runDialog([&] {
        quarry.showComplex(u"YZXCLRZ"_s, {}, {}, {}, {}, 0, 0, 0, 0, 0, false, false, false);
    }, [](QWidget *) {}));
    QCOMPARE(quarry.SQLStr(), before);
    QVERIFY(!runDialog([&] { quarry.showComplexEx(u"YWRZ"_s); }, [](QWidget *) {}));
    QCOMPARE(quarry.SQLStr(), before);
}

} // namespace quarry

QTEST_MAIN(quarry::TestCQuarry)
#include "tst_cquarry.moc"
