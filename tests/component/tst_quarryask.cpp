// quarry-ask's command line: what each argument list asks CQuarry for.

#include "AskCommand.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quarry {

class TestQuarryAsk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void accepted_data();
    void accepted();
    void refused_data();
    void refused();
    void complexOptions();
    void help();
    void exitStatus_data();
    void exitStatus();
};

using Operation = AskCommand::Operation;

void TestQuarryAsk::accepted_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("logType");

    QTest::newRow("clerk") << QStringList{u"clerk"_s, u"6"_s} << Operation::Clerk << 6 << QString();
    QTest::newRow("yjk no limit") << QStringList{u"yjk"_s, u"0"_s} << Operation::Yjk << 0 << QString();
    QTest::newRow("acc") << QStringList{u"acc"_s, u"32"_s} << Operation::Acc << 32 << QString();
    QTest::newRow("branch") << QStringList{u"branch"_s, u"9"_s} << Operation::Branch << 9 << QString();
    QTest::newRow("date") << QStringList{u"date"_s} << Operation::Date << 0 << QString();
    QTest::newRow("complex, log type as given")
        << QStringList{u"complex"_s, u"ywrz"_s} << Operation::Complex << 0 << u"ywrz"_s;
    QTest::newRow("complex, empty log type")
        << QStringList{u"complex"_s, QString()} << Operation::Complex << 0 << QString();
    QTest::newRow("complex-ex")
        << QStringList{u"complex-ex"_s, u"YJREQLOG"_s} << Operation::ComplexEx << 0 << u"YJREQLOG"_s;
}

void TestQuarryAsk::accepted()
{
    QFETCH(QStringList, arguments);
    QFETCH(Operation, operation);
    QFETCH(int, length);
    QFETCH(QString, logType);

    const AskRequest request = parseAskArguments(arguments);
    QVERIFY2(request.command, qPrintable(request.error));
    QCOMPARE(request.command->operation, operation);
    QCOMPARE(request.command->length, length);
    QCOMPARE(request.command->logType, logType);
}

void TestQuarryAsk::refused_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("nothing") << QStringList{};
    QTest::newRow("unknown operation") << QStringList{u"teller"_s, u"6"_s};
    QTest::newRow("length missing") << QStringList{u"clerk"_s};
    QTest::newRow("length not a number") << QStringList{u"acc"_s, u"six"_s};
    QTest::newRow("negative length") << QStringList{u"acc"_s, u"-1"_s};
    QTest::newRow("date takes nothing") << QStringList{u"date"_s, u"1"_s};
    QTest::newRow("log type missing") << QStringList{u"complex"_s};
    QTest::newRow("two log types") << QStringList{u"complex"_s, u"YWRZ"_s, u"YYRZ"_s};
    QTest::newRow("unknown option") << QStringList{u"complex"_s, u"YWRZ"_s, u"--show-all"_s};
    QTest::newRow("complex option elsewhere") << QStringList{u"acc"_s, u"6"_s, u"--show-wdh"_s};
    QTest::newRow("bad option length") << QStringList{u"complex"_s, u"YWRZ"_s, u"--acc-len"_s, u"x"_s};
    QTest::newRow("list without =") << QStringList{u"complex"_s, u"YWRZ"_s, u"--list-a"_s, u"1,2"_s};
    QTest::newRow("list code not a number") << QStringList{u"complex"_s, u"YWRZ"_s, u"--list-b"_s, u"a=b"_s};
    QTest::newRow("list code too big") << QStringList{u"complex"_s, u"YWRZ"_s, u"--list-a"_s, u"40000=x"_s};
}

void TestQuarryAsk::refused()
{
    QFETCH(QStringList, arguments);
    const AskRequest request = parseAskArguments(arguments);
    QVERIFY(!request.command);
    QVERIFY(!request.help);
    QVERIFY(!request.error.isEmpty());
}

void TestQuarryAsk::complexOptions()
{
    const AskRequest request = parseAskArguments(
        {u"complex"_s, u"YYRZ"_s, u"--list-a"_s, u"1=自动验印,2=人工验印"_s, u"--list-b"_s, u" 0=通过"_s,
         u"--clerk-len"_s, u"6"_s, u"--acc-len"_s, u"20"_s, u"--cheque-len"_s, u"8"_s,
         u"--show-wdh"_s, u"--show-opcode"_s});
    QVERIFY2(request.command, qPrintable(request.error));
    const AskCommand &command = *request.command;
    QCOMPARE(command.idsA, (QList<qint16>{1, 2}));
    QCOMPARE(command.namesA, (QStringList{u"自动验印"_s, u"人工验印"_s}));
    QCOMPARE(command.idsB, QList<qint16>{0});
    QCOMPARE(command.namesB, QStringList{u"通过"_s});
    QCOMPARE(command.clerkLength, 6);
    QCOMPARE(command.accLength, 20);
    QCOMPARE(command.chequeLength, 8);
    QVERIFY(command.showWdh);
    QVERIFY(!command.showYjk);
    QVERIFY(command.showOpCode);
}

void TestQuarryAsk::help()
{
    QVERIFY(parseAskArguments({u"--help"_s}).help);
    QVERIFY(parseAskArguments({u"acc"_s, u"-h"_s}).help);
}

// The program itself, for the calls that show no dialog.
void TestQuarryAsk::exitStatus_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("error"); // a part of standard error

    QTest::newRow("help") << QStringList{u"--help"_s} << 0 << u"Usage:"_s << QString();
    QTest::newRow("bad arguments") << QStringList{u"acc"_s, u"x"_s} << 2 << QString() << u"not a length: x"_s;
    QTest::newRow("nothing to ask") << QStringList{u"complex"_s, u"YZXCLRZ"_s} << 1 << QString() << QString();
    QTest::newRow("other extended log") << QStringList{u"complex-ex"_s, u"YWRZ"_s} << 1 << QString() << QString();
    QTest::newRow("component error") << QStringList{u"complex"_s, u"YWRZ"_s} << 3 << QString()
                                     << u"CQuarry.showComplex(): 日志类型“YWRZ”"_s;
}

void TestQuarryAsk::exitStatus()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, output);
    QFETCH(QString, error);

    QTemporaryDir systemDir;
    QFile ini(systemDir.filePath(u"SEAL.INI"_s));
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[SBMK]\r\nDoubleSealQuota=0\r\n");
    ini.close();

    QProcess ask;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QUARRY_SYSTEM_DIR"_s, systemDir.path());
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    ask.setProcessEnvironment(environment);
    ask.start(QStringLiteral(QUARRY_ASK_PROGRAM), arguments);
    QVERIFY(ask.waitForFinished());
    QCOMPARE(ask.exitStatus(), QProcess::NormalExit);
    QCOMPARE(ask.exitCode(), status);
    const QString out = QString::fromUtf8(ask.readAllStandardOutput());
    QVERIFY2(output.isEmpty() ? out.isEmpty() : out.startsWith(output), qPrintable(out));
    const QString err = QString::fromUtf8(ask.readAllStandardError());
    QVERIFY2(err.contains(error), qPrintable(err));
}

} // namespace quarry

QTEST_APPLESS_MAIN(quarry::TestQuarryAsk)
#include "tst_quarryask.moc"
