// The log query dialogs as hosts and operators meet them: shown by
// CQuarry::showComplex on the offscreen platform, driven with keys and
// clicks, the condition read back from SQLStr.

#include "ModalWatch.h"
#include "SampleStation.h"

#include "teller/CHy.h"

#include <quarry/CQuarry.h>

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using quarry::test::answerBox;
using quarry::test::BoxSeen;
using quarry::test::Engine;
using quarry::test::ModalWatch;
using quarry::test::SampleStation;

namespace quarry {

namespace {

// How the host calls showComplex in these tests: two code lists, teller
// length 4, account length 10, cheque length 8, and the flags.
struct HostCall
{
    QString logType;
    bool showWdh = false;
    bool showYjk = false;
};

void showComplex(CQuarry &quarry, const HostCall &call)
{
    quarry.showComplex(call.logType, {1, 2}, {u"自动验印"_s, u"人工验印"_s}, {0, 1},
                       {u"通过"_s, u"不通过"_s}, 2, 2, 4, 10, 8, call.showWdh, call.showYjk, false);
}

// "YYRZ", "YYRZ+wdh", "YWRZ+wdh+yjk".
HostCall hostCall(const QString &text)
{
    const QStringList parts = text.split(u'+');
    return {parts[0], parts.contains(u"wdh"_s), parts.contains(u"yjk"_s)};
}

QWidget *control(QWidget *dialog, const QString &name)
{
    QWidget *found = dialog->findChild<QWidget *>(name);
    if (!found)
        qFatal("%s has no control %s", qPrintable(dialog->objectName()), qPrintable(name));
    return found;
}

// One operator step: "Name=text" types into a box from its start, "=text"
// into the box that has the focus, "Name" puts the focus there, "Name!" clicks it, "Name#n" picks entry n of a list
// with the arrow keys, and Return, Up, Down, Esc or Pad* press that key.
void step(QWidget *dialog, const QString &action)
{
    static const QHash<QString, QKeyCombination> keys{{u"Return"_s, Qt::Key_Return},
        {u"Up"_s, Qt::Key_Up}, {u"Down"_s, Qt::Key_Down}, {u"Esc"_s, Qt::Key_Escape},
        {u"Pad*"_s, Qt::KeypadModifier | Qt::Key_Asterisk}};
    if (keys.contains(action)) {
        QTest::keyClick(dialog->focusWidget(), keys[action].key(), keys[action].keyboardModifiers());
    } else if (action.endsWith(u'!')) {
        QTest::mouseClick(control(dialog, action.chopped(1)), Qt::LeftButton);
    } else if (const qsizetype hash = action.indexOf(u'#'); hash > 0) {
        QWidget *list = control(dialog, action.left(hash));
        list->setFocus();
        for (int i = 0; i <= action.mid(hash + 1).toInt(); ++i)
            QTest::keyClick(list, Qt::Key_Down);
    } else {
        const qsizetype equals = action.indexOf(u'=');
        QWidget *target = equals == 0 ? dialog->focusWidget() : control(dialog, action.left(equals));
        target->setFocus();
        if (equals >= 0) {
            qobject_cast<QLineEdit *>(target)->setCursorPosition(0);
            QTest::keyClicks(target, action.mid(equals + 1));
        }
    }
}

// What the operator saw: the message box, if any, and after the last step
// where the focus was ("closed" when the dialog had closed) with the
// description shown beside a typed code.
struct Outcome
{
    BoxSeen box;
    QString after;
    QString sql;
};

QString after(QWidget *dialog)
{
    if (!dialog->isVisible())
        return u"closed"_s;
    QString where = dialog->focusWidget()->objectName();
    for (const QString &name : {u"OpShow"_s, u"AppShow"_s}) {
        const auto *shown = dialog->findChild<QLabel *>(name);
        if (shown && !shown->text().isEmpty())
            where += u' ' + shown->text();
    }
    return where;
}

Outcome operate(CQuarry &quarry, const HostCall &call, const QStringList &steps,
                const std::function<void(QWidget *)> &inspect = {},
                QMessageBox::StandardButton answer = QMessageBox::Ok)
{
    Outcome outcome;
    ModalWatch watch(nullptr, [&](QWidget *dialog) {
        if (!QTest::qWaitForWindowActive(dialog))
            return;
        ModalWatch boxWatch(dialog, answerBox(answer, &outcome.box));
        for (const QString &action : steps)
            step(dialog, action);
        outcome.after = after(dialog);
        if (inspect)
            inspect(dialog);
    });
    showComplex(quarry, call);
    outcome.sql = watch.fired() ? quarry.SQLStr() : u"(no dialog)"_s;
    return outcome;
}

// The state of a shown dialog that the host's call decides, as text.
QString describe(QWidget *dialog)
{
    QStringList parts{dialog->objectName(), dialog->windowTitle()};
    for (const QString &name : {u"lblWDH"_s, u"txtWdh"_s, u"chkSub"_s, u"TxtYJKNumber"_s}) {
        if (QWidget *w = dialog->findChild<QWidget *>(name))
            parts.append(name + (!w->isVisible() ? u" hidden"_s : w->isEnabled() ? u" on"_s : u" off"_s));
    }
    for (const QString &name : {u"TxtHy"_s, u"TxtAccNo"_s, u"TxtCha"_s, u"TxtBZP"_s, u"TxtEZP"_s}) {
        if (auto *box = dialog->findChild<QLineEdit *>(name))
            parts.append(name + u'=' + QString::number(box->maxLength()));
    }
    const QList<QComboBox *> lists = dialog->findChildren<QComboBox *>();
    for (QComboBox *list : lists) {
        QStringList items;
        for (int i = 0; i < list->count(); ++i)
            items.append(list->itemText(i) + u':' + list->itemData(i).toString());
        parts.append(list->objectName() + u'=' + items.join(u',') + u'@' + QString::number(list->currentIndex()));
    }
    for (const QString &name : {u"Label3"_s, u"Label5"_s})
        if (auto *label = dialog->findChild<QLabel *>(name))
            parts.append(name + u'=' + label->text());
    const QList<QPushButton *> buttons = dialog->findChildren<QPushButton *>();
    for (QPushButton *button : buttons)
        parts.append(button->objectName() + u'=' + button->text());
    return parts.join(u" | "_s);
}

} // namespace

class TestLogDialogs : public QObject
{
    Q_OBJECT

private:
    // seal.ini with bank profile `mode` ("" for the default) and QueryHintMode.
    void useConfig(const QString &mode, int queryHintMode = 0);

    QTemporaryDir m_systemDir;

private Q_SLOTS:
    void initTestCase();
    void hostCalls_data();
    void hostCalls();
    void conditions_data();
    void conditions();
    void subBranches_data();
    void subBranches();
};

void TestLogDialogs::useConfig(const QString &mode, int queryHintMode)
{
    QFile ini(m_systemDir.filePath(u"SEAL.INI"_s));
    QVERIFY(ini.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ini.write(u"[SBMK]\r\nDoubleSealQuota=0\r\n[USER]\r\nQueryHintMode=%1\r\nMODE=%2\r\n"_s
                  .arg(queryHintMode)
                  .arg(mode)
                  .toUtf8());
}

void TestLogDialogs::initTestCase()
{
    QVERIFY(m_systemDir.isValid());
    qputenv("QUARRY_SYSTEM_DIR", m_systemDir.path().toLocal8Bit());
}

void TestLogDialogs::hostCalls_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("expected");

    QTest::newRow("YWRZ, everything offered, profile 65") << u"YWRZ+wdh+yjk"_s << u"Vefos"_s
        << u"frmYWLog | 业务日志查询 | lblWDH on | txtWdh on | chkSub on | TxtYJKNumber on | TxtHy=4 | TxtAccNo=10 | comOpType=:,自动验印:1,人工验印:2@-1 | BtnOk=确定 | BtnCancel=取消"_s;
    QTest::newRow("YWRZ, nothing offered") << u"YWRZ"_s << u"Vefos"_s
        << u"frmYWLog | 业务日志查询 | lblWDH hidden | txtWdh hidden | chkSub hidden | TxtYJKNumber off | TxtHy=4 | TxtAccNo=10 | comOpType=:,自动验印:1,人工验印:2@-1 | BtnOk=确定 | BtnCancel=取消"_s;
    QTest::newRow("YYRZ, branch without sub-branches") << u"YYRZ+wdh"_s << QString()
        << u"frmYYLog | 复合查询 | lblWDH on | txtWdh on | chkSub hidden | TxtYJKNumber off | TxtHy=4 | TxtAccNo=10 | TxtBZP=8 | TxtEZP=8 | cmbOpType=:,自动验印:1,人工验印:2@-1 | cmbOpResult=:,通过:0,不通过:1@-1 | BtnOk=确定 | BtnCancel=取消"_s;
    QTest::newRow("HYRZ, profile 65") << u"HYRZ+wdh+yjk"_s << u"Vefos"_s
        << u"frmHYLog | 复合查询 | lblWDH on | txtWdh on | chkSub on | TxtHy=4 | TxtCha=4 | Label3=1: 自动验印  2: 人工验印   | BtnOk=确定 | BtnCancel=取消"_s;
    QTest::newRow("SJRZ, no sub-branch box") << u"SJRZ+wdh"_s << u"Vefos"_s
        << u"frmSJLog | 复合查询 | lblWDH on | txtWdh on | TxtHy=4 | Label5=1: 自动验印  2: 人工验印   | BtnOk=确定 | BtnCancel=取消"_s;
    QTest::newRow("ZGSQRZ") << u"ZGSQRZ+wdh+yjk"_s << QString()
        << u"frmZGSQLog | 复合查询 | TxtCha=4 | ComSQLX=:,自动验印:1,人工验印:2@-1 | Command1=确  定 | Command2=取  消"_s;
}

void TestLogDialogs::hostCalls()
{
    QFETCH(QString, call);
    QFETCH(QString, mode);
    QFETCH(QString, expected);
    useConfig(mode);
    CQuarry quarry;
    QString seen;
    operate(quarry, hostCall(call), {}, [&](QWidget *dialog) {
        seen = dialog->isModal() && !dialog->parentWidget() ? describe(dialog) : u"not modal"_s;
    });
    QCOMPARE(seen, expected);
}

void TestLogDialogs::conditions_data()
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

    QTest::newRow("YYRZ: nothing typed") << u"YYRZ"_s << none << 0 << QStringList{u"BtnOk!"_s} << none << closed
        << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and 'zzzzzzzz'"_s;
    QTest::newRow("YYRZ: every field, from the keyboard") << u"YYRZ+wdh+yjk"_s << none << 0
        << QStringList{u"TxtHy=1'2*"_s, u"Return"_s, u"TxtAccNo=62?*"_s, u"Return"_s, u"=20090101"_s, u"Return"_s, u"=20090131"_s, u"Return"_s,
                       u"TxtBZP=A-1"_s, u"TxtEZP=B2"_s, u"txtWdh=12*"_s, u"TxtYJKNumber=00*"_s, u"cmbOpType#1"_s, u"cmbOpResult#2"_s, u"Return"_s, u"Return"_s}
        << none << closed
        << u" where Opcode Like '12*' And ACCNO  LIKE  '62_%' And Opdate Between '2009-01-01' And '2009-01-31' and chequeno between 'A1' and 'B2' and  ( wdh like '12%') and ( YJKNumber like '00%')  and ( OPTYPE = '自动验印')  and Result='不通过'"_s;
    QTest::newRow("YYRZ: the end cheque before the begin") << u"YYRZ"_s << none << 0 << QStringList{u"TxtBZP=9"_s, u"TxtEZP=12"_s, u"BtnOk!"_s}
        << u"截止支票号不能小于起始支票号，请重新输入！"_s << u"TxtEZP"_s << none;
    QTest::newRow("YYRZ: a wrong start date") << u"YYRZ"_s << none << 0 << QStringList{u"MaskBoxKs=20091301"_s, u"BtnOk!"_s}
        << u"起始日期格式错误，请重新输入！"_s << u"MaskBoxKs"_s << none;
    QTest::newRow("YYRZ: profile 54, only cheques") << u"YYRZ"_s << u"Tecis"_s << 0 << QStringList{u"TxtBZP=1"_s, u"BtnOk!"_s}
        << refuse << u"BtnOk"_s << none;
    QTest::newRow("YYRZ: hint 2, only cheques") << u"YYRZ"_s << none << 2 << QStringList{u"TxtEZP=1"_s, u"BtnOk!"_s} << none << closed
        << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and '1'"_s;
    QTest::newRow("YYRZ: hint 2, nothing, No") << u"YYRZ"_s << none << 2 << QStringList{u"BtnOk!"_s} << ask << u"BtnOk"_s << none;
    QTest::newRow("YYRZ: a chosen empty entry is input") << u"YYRZ"_s << u"Tecis"_s << 0 << QStringList{u"cmbOpType#0"_s, u"BtnOk!"_s} << none << closed
        << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and 'zzzzzzzz'"_s;
    QTest::newRow("YWRZ: nothing typed") << u"YWRZ+wdh+yjk"_s << none << 0 << QStringList{u"BtnOk!"_s} << none << closed
        << u" where  ACCNO  LIKE  '%'  and (Opcode Like '%')  And  OPTYPE  LIKE  '%'   And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("YWRZ: every field") << u"YWRZ+wdh+yjk"_s << none << 0
        << QStringList{u"TxtAccNo=62*"_s, u"TxtHy=12?"_s, u"comOpType#2"_s, u"MaskBoxJs=20091231"_s, u"txtWdh=1101"_s, u"TxtYJKNumber=123"_s, u"BtnOk!"_s}
        << none << closed
        << u" where  ACCNO  LIKE  '62%'  and (Opcode Like '12?')  And  OPTYPE  LIKE  '人工验印'   And Opdate Between '1980-01-01' And '2009-12-31' and  ( wdh like '1101') And YJKNUMBER like '123'"_s;
    QTest::newRow("YWRZ: a seal card that is no number") << u"YWRZ+yjk"_s << none << 0 << QStringList{u"TxtYJKNumber=12a"_s, u"Return"_s}
        << u"输入非法字符，请输入正确的数字！"_s << u"TxtYJKNumber"_s << none;
    QTest::newRow("YWRZ: profile 54, nothing") << u"YWRZ+wdh+yjk"_s << u"Tecis"_s << 0 << QStringList{u"BtnOk!"_s} << refuse << u"BtnOk"_s << none;
    QTest::newRow("HYRZ: nothing typed") << u"HYRZ+wdh"_s << none << 0 << QStringList{u"BtnOk!"_s} << none << closed
        << u" where (Opcode Like '%')    And OPTYPE  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("HYRZ: profile 39, reviewer") << u"HYRZ"_s << u"Hilur"_s << 0 << QStringList{u"TxtCha=0012"_s, u"TxtOpType=3"_s, u"BtnOk!"_s} << none << closed
        << u" where (Opcode Like '%' or opName like '%')   And  (FhName  LIKE  '0012' or  FhCode  LIKE  '0012') And OPTYPE  LIKE  '3' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("HYRZ: profile 54, only the operating teller") << u"HYRZ"_s << u"Tecis"_s << 0 << QStringList{u"TxtHy=0101"_s, u"BtnOk!"_s}
        << refuse << u"BtnOk"_s << none;
    QTest::newRow("SJRZ: branch in both cases") << u"SJRZ+wdh"_s << none << 0 << QStringList{u"txtWdh=ab*"_s, u"BtnOk!"_s} << none << closed
        << u" where (Opcode Like '%'  ) And APPNAME  LIKE  '%'  And Opdate Between '1980-01-01' And '3000-01-01'  and  ( wdh like 'AB%' or wdh like 'ab%')"_s;
    QTest::newRow("SJRZ: hint 2, nothing, Yes") << u"SJRZ"_s << none << 2 << QStringList{u"BtnOk!"_s} << ask << closed
        << u" where (Opcode Like '%'  ) And APPNAME  LIKE  '%'  And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("ZGSQRZ: supervisor and operation") << u"ZGSQRZ"_s << none << 0 << QStringList{u"TxtCha=90*"_s, u"ComSQLX#2"_s, u"Return"_s, u"Command1!"_s}
        << none << closed << u" where  ZGCODE  LIKE  '90*' And OPTYPE  LIKE  '人工验印' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("ZGSQRZ: the end before the start") << u"ZGSQRZ"_s << none << 0 << QStringList{u"MaskBoxKs=20090302"_s, u"MaskBoxJs=20090301"_s, u"Command1!"_s}
        << u"截止日期不能小于起始日期，请重新输入！"_s << u"MaskBoxJs"_s << none;
    // Keys, one row each where a dialog departs from Enter and Up.
    const auto keys = [&](const char *tag, const QString &call, const QString &field, const QString &key, const QString &after) {
        QTest::newRow(tag) << call << none << 0 << QStringList{field, key} << none << after << none;
    };
    keys("YYRZ: keypad * moves on from the teller", u"YYRZ"_s, u"TxtHy"_s, u"Pad*"_s, u"TxtAccNo"_s);
    keys("YYRZ: Up does nothing in the account", u"YYRZ"_s, u"TxtAccNo"_s, u"Up"_s, u"TxtAccNo"_s);
    keys("YYRZ: Up goes back from a cheque", u"YYRZ"_s, u"TxtBZP"_s, u"Up"_s, u"MaskBoxJs"_s);
    keys("YYRZ: keypad * does not cancel", u"YYRZ"_s, u"MaskBoxKs"_s, u"Pad*"_s, u"MaskBoxKs"_s);
    keys("YYRZ: Esc cancels", u"YYRZ"_s, u"cmbOpResult"_s, u"Esc"_s, closed);
    keys("YYRZ: Enter moves on from a list", u"YYRZ"_s, u"cmbOpType"_s, u"Return"_s, u"cmbOpResult"_s);
    keys("YWRZ: Up keeps to the list", u"YWRZ"_s, u"comOpType"_s, u"Up"_s, u"comOpType"_s);
    keys("YWRZ: Esc on a button cancels", u"YWRZ"_s, u"BtnOk"_s, u"Esc"_s, closed);
    keys("HYRZ: Down moves on", u"HYRZ"_s, u"TxtHy"_s, u"Down"_s, u"TxtCha"_s);
    keys("HYRZ: Up does nothing in the first", u"HYRZ"_s, u"TxtHy"_s, u"Up"_s, u"TxtHy"_s);
    keys("HYRZ: Up goes back", u"HYRZ"_s, u"TxtOpType"_s, u"Up"_s, u"TxtCha"_s);
    keys("HYRZ: Down does nothing in the branch", u"HYRZ+wdh"_s, u"txtWdh"_s, u"Down"_s, u"txtWdh"_s);
    keys("SJRZ: Up does nothing in the module", u"SJRZ"_s, u"TxtApp"_s, u"Up"_s, u"TxtApp"_s);
    keys("SJRZ: Up goes back between dates", u"SJRZ"_s, u"MaskBoxJs"_s, u"Up"_s, u"MaskBoxKs"_s);
    keys("ZGSQRZ: Esc does nothing", u"ZGSQRZ"_s, u"TxtCha"_s, u"Esc"_s, u"TxtCha"_s);
    keys("ZGSQRZ: keypad * cancels", u"ZGSQRZ"_s, u"ComSQLX"_s, u"Pad*"_s, closed);
    // The description of a typed code, beside it.
    keys("HYRZ: a known code", u"HYRZ"_s, u"TxtOpType=2"_s, u"Up"_s, u"TxtCha 人工验印"_s);
    keys("HYRZ: an unknown code keeps the last", u"HYRZ"_s, u"TxtOpType=19"_s, u"Down"_s, u"MaskBoxKs 自动验印"_s);
    keys("SJRZ: a known code", u"SJRZ"_s, u"TxtApp=1"_s, u"Return"_s, u"MaskBoxKs 自动验印"_s);
    keys("SJRZ: an unknown code", u"SJRZ"_s, u"TxtApp=12"_s, u"Return"_s, u"MaskBoxKs 输入错误！"_s);
}

void TestLogDialogs::conditions()
{
    QFETCH(QString, call);
    QFETCH(QString, mode);
    QFETCH(int, hint);
    QFETCH(QStringList, steps);
    QFETCH(QString, message);
    QFETCH(QString, after);
    QFETCH(QString, expectedSql);
    useConfig(mode, hint);

    CQuarry quarry;
    const bool yes = QString::fromLatin1(QTest::currentDataTag()).endsWith(u"Yes"_s);
    const Outcome outcome = operate(quarry, hostCall(call), steps, {}, yes ? QMessageBox::Yes : QMessageBox::No);
    QCOMPARE(outcome.box.text, message);
    QCOMPARE(outcome.after, after);
    QCOMPARE(outcome.sql, expectedSql);
    if (!outcome.box.shown)
        return;
    // Each kind of message has its own look.
    const bool plain = message == u"输入非法字符，请输入正确的数字！"_s;
    const QMessageBox::Icon icon = plain ? QMessageBox::NoIcon
        : message == u"请输入查询条件!"_s ? QMessageBox::Information
        : message.endsWith(u"是否继续？"_s) ? QMessageBox::Question : QMessageBox::Warning;
    QCOMPARE(outcome.box.caption, plain ? u"Quarry"_s : u"提示信息"_s);
    QCOMPARE(outcome.box.icon, icon);
}

void TestLogDialogs::subBranches_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QString>("logType");
    QTest::addColumn<QString>("branch");
    QTest::addColumn<QString>("expectedHead"); // "" for the whole sub-branch clause

    for (Engine engine : {Engine::Sqlite, Engine::MariaDb}) {
        const QByteArray name = quarry::test::engineName(engine).toLatin1();
        QTest::addRow("%s: YYRZ", name.data()) << engine << u"YYRZ"_s << u"110101"_s << QString();
        QTest::addRow("%s: HYRZ", name.data()) << engine << u"HYRZ"_s << u"110101"_s << QString();
        QTest::addRow("%s: YWRZ", name.data()) << engine << u"YWRZ"_s << u"110101"_s << QString();
        // Refused, then cancelled: what OK stored before the check stays.
        QTest::addRow("%s: YYRZ unknown branch", name.data()) << engine << u"YYRZ"_s << u"999999"_s
            << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and 'zzzzzzzz'"_s;
        QTest::addRow("%s: HYRZ unknown branch", name.data()) << engine << u"HYRZ"_s << u"999999"_s
            << u" where (Opcode Like '%')    And OPTYPE  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
        QTest::addRow("%s: YWRZ unknown branch", name.data()) << engine << u"YWRZ"_s << u"999999"_s << u""_s;
    }
}

void TestLogDialogs::subBranches()
{
    QFETCH(Engine, engine);
    QFETCH(QString, logType);
    QFETCH(QString, branch);
    QFETCH(QString, expectedHead);
    QUARRY_REQUIRE_ENGINE(engine);
    SampleStation station(engine);
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    station.writeIni("[USER]\nMODE=Vefos\nQueryHintMode=0\n");

    CQuarry quarry;
    const Outcome outcome = operate(quarry, {logType, true, false},
                                    {u"txtWdh="_s + branch, u"chkSub!"_s, u"BtnOk!"_s, u"BtnCancel!"_s});
    const bool known = QString::fromLatin1(QTest::currentDataTag()).endsWith(logType);
    if (!known) {
        QCOMPARE(outcome.box.text, u"输入的网点号不存在，请重新输入！"_s);
        QCOMPARE(outcome.sql, expectedHead);
        return;
    }
    // The branch and all below it, as the teller data lists them.
    CHy hy;
    hy.GetBelongedWDHS(branch);
    QCOMPARE(hy.belongedWdhs().count(u','), 10);
    QVERIFY2(outcome.sql.endsWith(u"( wdh in ("_s + hy.belongedWdhs().chopped(1) + u"))"_s), qPrintable(outcome.sql));
    QVERIFY(outcome.sql.contains(u"'1980-01-01' And '3000-01-01'"_s));
}

} // namespace quarry

QTEST_MAIN(quarry::TestLogDialogs)
#include "tst_logdialogs.moc"
