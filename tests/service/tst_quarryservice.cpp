// quarry-service on a private session bus (the test runs under
// dbus-run-session): the service is served from this process and called by
// a second connection through the bus daemon, and by the host guide's
// Python example. Its dialog program is this program too (see main), whose
// dialogs are driven by steps that the test hands down in the environment.

#include "ComponentCall.h"
#include "DialogDriver.h"
#include "OwnerlessDialogs.h"
#include "QuarryService.h"
#include "RequestDialog.h"
#include "TestFiles.h"

#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDialog>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <QScopeGuard>

#include <csignal>
#include <cstdlib>
#include <tuple>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quarry {

namespace {

constexpr auto Idle = 400ms;
constexpr qsizetype MaxDialogs = 2;

const QString Service = u"org.quarry.Quarry1"_s;

QDBusMessage call(const QDBusConnection &connection, const QString &member,
                  const QVariantList &arguments, const QString &path = u"/org/quarry/Quarry1"_s,
                  const QString &interface = Service)
{
    QDBusMessage message = QDBusMessage::createMethodCall(Service, path, interface, member);
    message.setArguments(arguments);
    // Never a blocking call: the service answers from this thread.
    QDBusPendingCall pending = connection.asyncCall(message);
    if (!QTest::qWaitFor([&] { return pending.isFinished(); }, test::WaitLimit))
        qFatal("No answer to %s", qPrintable(member));
    return pending.reply();
}

// A CQuarry member's arguments with the bus's parent_window before and the
// options after them.
QVariantList busArguments(const QVariantList &component, const QString &parent = {})
{
    return QVariantList{parent} + component + QVariantList{QVariantMap()};
}

QString outcomeText(const QDBusMessage &response)
{
    QStringList results;
    const QVariantMap map = qdbus_cast<QVariantMap>(response.arguments().at(1));
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        results.append(it.key() + u'=' + it.value().toString());
    return QString::number(response.arguments().at(0).toUInt()) + u' ' + results.join(u"; "_s);
}

QVariant codes(QList<qint16> list)
{
    return QVariant::fromValue(list);
}

// The steps of the dialogs started next; see drivenDialog().
void drive(const QStringList &steps)
{
    qputenv("QUARRY_TEST_STEPS", steps.join(u'\n').toUtf8());
}

// The dialogs shown since it was last removed, one a line: name, the window
// it is transient for, its centre.
QString seenFile()
{
    return qEnvironmentVariable("QUARRY_TEST_SEEN");
}

QStringList seen()
{
    return QString::fromUtf8(test::readFile(seenFile())).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace

class TestQuarryService : public QObject
{
    Q_OBJECT

    QTemporaryDir m_station;
    std::unique_ptr<service::QuarryService> m_service;
    QDBusConnection m_client = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"client"_s);
    QList<QDBusMessage> m_responses;

    // The dialog shown ("" for none), driven by steps, and the Response the
    // client got.
    QString ask(const QString &member, const QVariantList &arguments, const QStringList &steps,
                const QString &parent = {})
    {
        QFile::remove(seenFile());
        drive(steps);
        const QString path = call(m_client, member, busArguments(arguments, parent)).arguments().value(0).value<QDBusObjectPath>().path();
        std::ignore = QTest::qWaitFor([&] { return responseTo(path).has_value(); }, test::WaitLimit);
        const std::optional<QDBusMessage> response = responseTo(path);
        return seen().value(0).section(u' ', 0, 0) + u" | "_s + (response ? outcomeText(*response) : u"no response within the wait limit"_s);
    }

    // This program, through a link that a test can take away.
    QString dialogProgram() const { return m_station.filePath(u"dialog"_s); }

    std::optional<QDBusMessage> responseTo(const QString &path) const
    {
        for (const QDBusMessage &response : m_responses)
            if (response.path() == path)
                return response;
        return std::nullopt;
    }

public Q_SLOTS:
    void takeResponse(const QDBusMessage &response) { m_responses.append(response); }

private Q_SLOTS:
    void initTestCase()
    {
        test::writeSealIni(m_station.path(), QString(), 0);
        qputenv("QUARRY_DRIVES", QFile::encodeName(m_station.filePath(u"drives"_s)));
        qputenv("QUARRY_TEST_SEEN", QFile::encodeName(m_station.filePath(u"seen"_s)));
        QVERIFY(QFile::link(QCoreApplication::applicationFilePath(), dialogProgram()));
        m_service = std::make_unique<service::QuarryService>(QDBusConnection::sessionBus(), Idle, dialogProgram(), MaxDialogs);
        QVERIFY(m_service->start());
        // QtDBus delivers signals by the slot's name only.
        QVERIFY(m_client.connect(QString(), QString(), u"org.quarry.Quarry1.Request"_s,
                                 u"Response"_s, this, SLOT(takeResponse(QDBusMessage))));
    }

    // In order: one caller, so one CQuarry, whose SQLStr the rows share;
    // refused() reads it, the condition that the failure and the call that
    // asks nothing after it left alone.
    void qtClient_data()
    {
        QTest::addColumn<QString>("member");
        QTest::addColumn<QVariantList>("arguments");
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("outcome");

        const QVariantList zpgl{u"ZPGLRZ"_s, codes({1}), QStringList{u"转账支票"_s}, codes({}), QStringList(), 1, 0, 0, 0, 0, false, false, false};
        QVariantList nothing = zpgl;
        nothing[0] = u"YZXCLRZ"_s;

        QTest::newRow("unused variants") << u"showComplexEx"_s << QVariantList{u"yjreqlog"_s, QVariant::fromValue(QDBusVariant(1)), QVariant::fromValue(QDBusVariant(u"x"_s)), QVariant::fromValue(QDBusVariant(true))} << QStringList{u"cmdCancel!"_s} << u"frmYjReqLog | 1 "_s;
        QTest::newRow("condition") << u"ShowYJK"_s << QVariantList{0} << QStringList{u"txtYJK=12*"_s, u"Return"_s} << u"FrmYJK | 0 condition= Where YJKNUMBER like '12%'"_s;
        // The cheque management log shows the second description in its list.
        QTest::newRow("error") << u"showComplex"_s << zpgl << QStringList() << u" | 2 error_description=下标越界：代码表有 1 个说明，没有第 2 个; error_number=9; error_source=Quarry"_s;
        QTest::newRow("nothing to ask: SQLStr unchanged, no condition") << u"showComplex"_s << nothing << QStringList() << u" | 1 "_s;
    }

    void qtClient()
    {
        QFETCH(QString, member);
        QFETCH(QVariantList, arguments);
        QFETCH(QStringList, steps);

        QTEST(ask(member, arguments, steps), "outcome");
    }

    void pythonClient_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("output"); // a part of what it writes

        QTest::newRow("condition") << QStringList{u"YYRZ"_s} << QStringList{u"TxtAccNo=62*"_s, u"BtnOk!"_s} << 0 << u"And ACCNO  LIKE  '62%' And"_s;
        QTest::newRow("cancel") << QStringList{u"YYRZ"_s} << QStringList{u"BtnCancel!"_s} << 1 << QString();
        QTest::newRow("error") << QStringList{u"ZPGLRZ"_s, u"1=转账支票"_s} << QStringList() << 3 << u"Quarry: 下标越界"_s;
    }

    void pythonClient()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, steps);
        QFETCH(int, status);
        QFETCH(QString, output);

        QProcess python;
        drive(steps);
        python.start(QStringLiteral(QUARRY_PYTHON_EXAMPLE), arguments);
        // The service answers from this thread: wait with the event loop running.
        const bool ended = QTest::qWaitFor([&] { return python.state() == QProcess::NotRunning; }, test::WaitLimit);
        const QString written = ended ? QString::fromUtf8(python.readAllStandardOutput() + python.readAllStandardError())
                                      : u"the example still waits for its Response"_s;
        QVERIFY2(python.exitCode() == status && written.contains(output), qPrintable(u"%1: %2"_s.arg(python.exitCode()).arg(written)));
    }

    void refused_data()
    {
        QTest::addColumn<QString>("member");
        QTest::addColumn<QVariantList>("arguments");
        QTest::addColumn<QString>("error");

        const QString invalid = u"org.freedesktop.DBus.Error.InvalidArgs: "_s;
        QTest::newRow("wrong type") << u"showClerk"_s << busArguments({u"6"_s}) << invalid + u"showClerk takes (s parent_window, i lClerkLen, a{sv} options), not (ssa{sv})"_s;
        QTest::newRow("arrays of different lengths") << u"showComplex"_s << busArguments({u"YYRZ"_s, codes({1, 2}), QStringList{u"自动验印"_s, u"人工验印"_s}, codes({0}), QStringList{u"通过"_s, u"不通过"_s}, 2, 2, 0, 0, 0, true, true, false}) << invalid + u"showComplex: arrTmpIdB has 1 codes but arrTmpDesB has 2 descriptions"_s;
        const auto parent = [&](const char *tag, const QString &window, const QString &named) {
            QTest::newRow(tag) << u"showDate"_s << busArguments({}, window) << invalid + u"showDate: parent_window %1 is neither \"\" nor x11: and a window id in hex"_s.arg(named);
        };
        parent("parent window: upper case", u"X11:400006"_s, u"\"X11:400006\""_s);
        parent("parent window: a blank first", u" x11:1"_s, u"\" x11:1\""_s);
        parent("parent window: past 32 bits", u"x11:100000000"_s, u"\"x11:100000000\""_s);
        parent("parent window: 40 characters, shown whole", u"x11:"_s + QString(36, u'f'), u"\"x11:%1\""_s.arg(QString(36, u'f')));
        parent("parent window: 41 characters, cut short", u"x11:"_s + QString(37, u'f'), u"\"x11:%1…\" (41 characters)"_s.arg(QString(36, u'f')));
        const auto token = [&](const char *tag, const QVariant &value, const QString &said) {
            QTest::newRow(tag) << u"showDate"_s << QVariantList{QString(), QVariantMap{{u"handle_token"_s, value}}} << invalid + u"showDate: handle_token "_s + said;
        };
        token("handle token: a slash", u"a/b"_s, u"\"a/b\" is not [A-Za-z0-9_]+"_s);
        token("handle token: a number", 7, u"is a string (s), not int"_s);
        QTest::newRow("unknown method") << u"showLog"_s << busArguments({}) << u"org.freedesktop.DBus.Error.UnknownMethod: org.quarry.Quarry1 has no method showLog"_s;
    }

    void refused()
    {
        QFETCH(QString, member);
        QFETCH(QVariantList, arguments);

        const QDBusMessage reply = call(m_client, member, arguments);
        QTEST(reply.errorName() + u": "_s + reply.errorMessage(), "error");
        // And the service goes on, with the caller's last condition.
        QCOMPARE(call(m_client, u"SQLStr"_s, {}).arguments().value(0).toString(), u" Where YJKNUMBER like '12%'"_s);
    }

    // A Cancel after an OK that stored its clause (the branch check then
    // refused it): the Response hands the clause back apart, and SQLStr
    // keeps it, as CQuarry's does.
    void cancelAfterAStoredClause()
    {
        QTemporaryDir station;
        test::writeFile(station.filePath(u"SEAL.INI"_s), "[SBMK]\nDoubleSealQuota=0\n[USER]\nMODE=Vefos\n"_ba);
        qputenv("QUARRY_SYSTEM_DIR", QFile::encodeName(station.path()));
        const QString said = ask(u"showComplex"_s, {u"YYRZ"_s, codes({}), QStringList(), codes({}), QStringList(), 0, 0, 0, 0, 8, true, false, false},
                                 {u"txtWdh=999999"_s, u"chkSub!"_s, u"BtnOk!"_s, u"BtnCancel!"_s});
        qputenv("QUARRY_SYSTEM_DIR", QFile::encodeName(m_station.path()));
        const QString stored = u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and 'zzzzzzzz'"_s;
        QCOMPARE(said, u"frmYYLog | 1 stored_condition="_s + stored);
        QCOMPARE(call(m_client, u"SQLStr"_s, {}).arguments().value(0).toString(), stored);
    }

    // What the service says it offers is the interface file, word for word.
    void introspection()
    {
        const QString served = call(m_client, u"Introspect"_s, {}, u"/org/quarry/Quarry1"_s, u"org.freedesktop.DBus.Introspectable"_s).arguments().value(0).toString();
        const qsizetype start = served.indexOf(u"<interface name=\"org.quarry.Quarry1\">"_s);
        const QString interface = served.mid(start, served.indexOf(u"</interface>"_s, start) - start);
        QFile contract(QStringLiteral(QUARRY_SERVICE_CONTRACT));
        QVERIFY(start >= 0 && contract.open(QIODevice::ReadOnly));
        QVERIFY(QString::fromUtf8(contract.readAll()).contains(interface));
    }

    // Two callers' dialogs are open at once. A caller's second call while
    // its dialog is open is refused; Close ends the dialog's process without
    // a Response, and the service idles only when no dialog process runs.
    void requestsOfTwoCallers()
    {
        QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"other"_s);
        QVERIFY(other.connect(QString(), QString(), u"org.quarry.Quarry1.Request"_s, u"Response"_s, this, SLOT(takeResponse(QDBusMessage))));
        QSignalSpy idle(m_service.get(), &service::QuarryService::idle);
        QFile::remove(seenFile());
        // The path is known before the call, from the handle token.
        const QString firstPath = u"/org/quarry/Quarry1/request/"_s + m_client.baseService().mid(1).replace(u'.', u'_') + u"/first"_s;
        drive({u"wait "_s + m_station.filePath(u"never"_s)});
        call(m_client, u"showDate"_s, {QString(), QVariantMap{{u"handle_token"_s, u"first"_s}}});
        // Refused at once: an accepted second call would show a dialog of its own.
        QCOMPARE(call(m_client, u"showAcc"_s, busArguments({0})).errorName(), u"org.quarry.Quarry1.Error.Busy"_s);
        const QString go = m_station.filePath(u"go"_s);
        drive({u"wait "_s + go, u"Esc"_s});
        const QString otherPath = call(other, u"showClerk"_s, busArguments({0})).arguments().value(0).value<QDBusObjectPath>().path();

        QVERIFY2(QTest::qWaitFor([&] { return seen().size() == 2; }, test::WaitLimit), "two dialogs shown");
        // A third dialog is more than this service shows at once.
        QDBusConnection third = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"third"_s);
        const QDBusMessage refused = call(third, u"showDate"_s, busArguments({}));
        QCOMPARE(refused.errorName() + u": "_s + refused.errorMessage(), u"org.quarry.Quarry1.Error.TooManyDialogs: showDate: 2 dialogs are open, the most this service shows at once; call again when one has closed"_s);
        QTest::qWait(int(2 * Idle.count()));
        QVERIFY(!responseTo(firstPath) && !responseTo(otherPath));
        QCOMPARE(call(m_client, u"Close"_s, {}, firstPath + u'x', u"org.quarry.Quarry1.Request"_s).errorName(), u"org.freedesktop.DBus.Error.UnknownObject"_s);
        QCOMPARE(call(m_client, u"Close"_s, {}, firstPath, u"org.quarry.Quarry1.Request"_s).type(), QDBusMessage::ReplyMessage);
        QFile(go).open(QIODevice::WriteOnly);
        QVERIFY2(QTest::qWaitFor([&] { return responseTo(otherPath).has_value(); }, test::WaitLimit), "the other caller's Response");
        QStringList dialogs;
        for (const QString &line : seen())
            dialogs.append(line.section(u' ', 0, 0));
        dialogs.sort();
        QCOMPARE(dialogs, (QStringList{u"FrmDate"_s, u"frmClerk"_s}));
        QCOMPARE(outcomeText(responseTo(otherPath).value()), u"1 "_s);
        QVERIFY(!responseTo(firstPath));
        QCOMPARE(idle.count(), 0);
        QVERIFY2(idle.wait(test::WaitLimit), "the service idle");
    }

    // A dialog process that ends without an answer, or does not start, fails
    // its request; the fault is logged, and the service and the caller go on.
    void deadDialog_data()
    {
        QTest::addColumn<QString>("step"); // "": the dialog program is not there
        QTest::addColumn<QString>("description");

        QTest::newRow("killed") << u"kill"_s << u"对话框程序 %1 意外终止，没有给出结果"_s;
        QTest::newRow("nonsense") << u"say {\"outcome\":\"condition\"}"_s << u"对话框程序 %1 的结果无法识别：“{\"outcome\":\"condition\"}”"_s;
        QTest::newRow("not started") << QString() << u"无法启动对话框程序 %1"_s;
    }

    void deadDialog()
    {
        QFETCH(QString, step);
        QFETCH(QString, description);

        const QString said = description.arg(dialogProgram());
        {
            const QString away = dialogProgram() + u".away"_s;
            if (step.isEmpty())
                QVERIFY(QFile::rename(dialogProgram(), away));
            const auto back = qScopeGuard([&] { QFile::rename(away, dialogProgram()); });
            QCOMPARE(ask(u"showDate"_s, {}, {step}), u"%1 | 2 error_description=%2; error_number=2000; error_source=quarry-service"_s.arg(step.isEmpty() ? QString() : u"FrmDate"_s, said));
        }
        QVERIFY(QString::fromUtf8(test::readFile(m_station.filePath(u"drives/c/errorpath/error.txt"_s))).contains(said));
        QCOMPARE(ask(u"showDate"_s, {}, {u"Esc"_s}), u"FrmDate | 1 "_s);
    }

    // The service program killed while a dialog is open: the dialog process
    // ends with it, and the guide's Python host learns that no Response
    // will come. This test's own service steps aside meanwhile.
    void serviceKilled()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        QVERIFY(bus.unregisterService(Service));
        const auto backAgain = qScopeGuard([&] { bus.registerService(Service); });
        QProcess service;
        service.start(QStringLiteral(QUARRY_SERVICE_PROGRAM));
        QVERIFY(QTest::qWaitFor([&] { return bus.interface()->isServiceRegistered(Service).value(); }, test::WaitLimit));
        QProcess python;
        python.start(QStringLiteral(QUARRY_PYTHON_EXAMPLE));
        const QString children = u"/proc/%1/task/%1/children"_s.arg(service.processId());
        QString dialog;
        QVERIFY(QTest::qWaitFor([&] {
            dialog = QString::fromLatin1(test::readFile(children)).trimmed();
            return !dialog.isEmpty();
        }, test::WaitLimit));
        // Once it has shown its dialog, which takes its time.
        QTest::qWait(500);

        ::kill(pid_t(service.processId()), SIGKILL);
        QVERIFY(service.waitForFinished(test::WaitLimit));
        QVERIFY2(python.waitForFinished(test::WaitLimit), "the example told that the service is gone");
        QCOMPARE(python.exitCode(), 3);
        QVERIFY(QString::fromUtf8(python.readAllStandardError()).contains(u"查询条件服务已退出"_s));
        // Gone, or a zombie that nobody reaps in a container without init.
        QVERIFY(QTest::qWaitFor([&] {
            const QByteArray stat = test::readFile(u"/proc/%1/stat"_s.arg(dialog));
            return stat.isEmpty() || stat.contains(") Z "); }, test::WaitLimit));
    }

    // A dialog process takes only values of each parameter's type: the
    // unused variants of showComplexEx come as null, a flag as true or false,
    // a number in its type's range.
    void callReadByTheDialog_data()
    {
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<QString>("error");

        QTest::newRow("a number for a variant") << QByteArray(R"({"member": "showComplexEx", "arguments": ["YJREQLOG", 1, null, null]})") << u"showComplexEx: argument 2 is not a QVariant"_s;
        QTest::newRow("a number for a flag") << QByteArray(R"({"member": "showComplex", "arguments": ["YYRZ", [], [], [], [], 0, 0, 0, 0, 0, true, 1, false]})") << u"showComplex: argument 12 is not a bool"_s;
        QTest::newRow("the least int") << QByteArray(R"({"member": "showClerk", "arguments": [-2147483648]})") << QString();
        QTest::newRow("below the least int") << QByteArray(R"({"member": "showClerk", "arguments": [-2147483649]})") << u"showClerk: argument 1 is not a int"_s;
        QTest::newRow("the greatest short, in a code list") << QByteArray(R"({"member": "showComplex", "arguments": ["YYRZ", [32767], [], [], [], 0, 0, 0, 0, 0, true, true, false]})") << QString();
        QTest::newRow("above the greatest short") << QByteArray(R"({"member": "showComplex", "arguments": ["YYRZ", [32768], [], [], [], 0, 0, 0, 0, 0, true, true, false]})") << u"showComplex: argument 2 is not a QList<short>"_s;
    }

    void callReadByTheDialog()
    {
        QFETCH(QByteArray, call);
        QString error;
        const bool read = service::ComponentCall::fromJson(QJsonDocument::fromJson(call).object(), &error).has_value();
        QTEST(error, "error");
        QCOMPARE(read, error.isEmpty());
    }

    // Dialogs with an owner, and all while there is no host window, get their
    // show events as if nothing watched them.
    void showEventsOfOtherDialogs()
    {
        struct Dialog : QDialog
        {
            using QDialog::QDialog;
            int shows = 0;
            void showEvent(QShowEvent *event) override { ++shows; QDialog::showEvent(event); }
        };
        const apps::OwnerlessDialogs dialogs;
        Dialog ownerless;
        Dialog owned(&ownerless);
        ownerless.show();
        owned.show();
        QCOMPARE(ownerless.shows + owned.shows, 2);
    }

    void transientForTheHostWindow()
    {
        if (QGuiApplication::platformName() != u"xcb"_s)
            QSKIP("X11 only: tst_quarryservice_x11 runs this on Xvfb");
        QWidget host;
        host.setGeometry(20, 20, 400, 300);
        host.show();
        QVERIFY(QTest::qWaitForWindowExposed(&host));
        ask(u"showDate"_s, {}, {u"Esc"_s}, u"x11:%1"_s.arg(host.winId(), 0, 16));
        const QStringList dialog = seen().value(0).split(u' '); // name, transient for, centre, moved by
        QCOMPARE(dialog.value(1).toULongLong(), host.winId());
        QCOMPARE(dialog.value(4), u"37"_s);
        const QPoint centre(dialog.value(2).toInt(), dialog.value(3).toInt());
        // Placed over the host's window, not in the middle of the screen.
        QVERIFY2((centre - host.geometry().center()).manhattanLength() < 10, qPrintable(u"%1,%2"_s.arg(centre.x()).arg(centre.y())));
    }
};

// The dialog program as the service starts it, its dialog driven by the
// steps of drive() and written down in the seen file. Steps beside
// DialogDriver's: "wait FILE" until FILE exists (the wait limit at most),
// "kill" its own process, "say TEXT" as its answer and end.
int drivenDialog()
{
    const QStringList steps = qEnvironmentVariable("QUARRY_TEST_STEPS").split(u'\n', Qt::SkipEmptyParts);
    // Boxes over the dialog are answered OK.
    test::BoxSeen box;
    test::ModalWatch watch(nullptr, [&](QWidget *dialog) {
        if (!QTest::qWaitForWindowActive(dialog))
            return;
        test::ModalWatch boxWatch(dialog, test::answerBox(QMessageBox::Ok, &box));
        const QWindow *parent = dialog->windowHandle()->transientParent();
        const QPoint centre = dialog->geometry().center();
        // Moved by the operator, it stays where it went.
        dialog->move(dialog->pos() + QPoint(37, 0));
        QTest::qWait(50);
        QFile seen(seenFile());
        if (!seen.open(QIODevice::Append))
            qFatal("Cannot write %s", qPrintable(seen.fileName()));
        seen.write(u"%1 %2 %3 %4 %5\n"_s.arg(dialog->objectName()).arg(parent ? parent->winId() : 0).arg(centre.x()).arg(centre.y()).arg(dialog->geometry().center().x() - centre.x()).toUtf8());
        seen.close();
        for (const QString &action : steps) {
            if (action == u"kill"_s) {
                std::raise(SIGKILL);
            } else if (action.startsWith(u"say "_s)) {
                QFile out;
                if (out.open(stdout, QIODevice::WriteOnly))
                    out.write(action.mid(4).toUtf8());
                out.close();
                std::_Exit(0);
            } else if (action.startsWith(u"wait "_s)) {
                std::ignore = QTest::qWaitFor([&] { return QFile::exists(action.mid(5)); }, test::WaitLimit);
            } else {
                test::step(dialog, action);
            }
        }
    }, true);
    return service::runRequestDialog();
}

} // namespace quarry

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (app.arguments().value(1) == QLatin1StringView(quarry::service::QuarryService::DialogOption))
        return quarry::drivenDialog();
    quarry::TestQuarryService test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_quarryservice.moc"
