// quarry-ask's command line: what each argument list asks CQuarry for, and
// the program's exit statuses for the calls that show no dialog.

#include "AskCommand.h"
#include "TestFiles.h"

#include <quarry/CQuarry.h>
#include <quarry/QuarryError.h>

#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quarry {

class TestQuarryAsk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void arguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("expected"); // operation, length and log type asked for

        QTest::newRow("clerk") << QStringList{u"clerk"_s, u"6"_s} << u"clerk 6"_s;
        QTest::newRow("complex, log type as given") << QStringList{u"complex"_s, u"ywrz"_s, u"--list-a"_s, u"1=自动验印"_s, u"--show-wdh"_s} << u"complex 0 ywrz"_s;
        QTest::newRow("complex, the three lengths, 0 the least") << QStringList{u"complex"_s, u"YYRZ"_s, u"--clerk-len"_s, u"4"_s, u"--acc-len"_s, u"17"_s, u"--cheque-len"_s, u"0"_s} << u"complex 0 YYRZ lengths 4/17/0"_s;
        QTest::newRow("complex-ex") << QStringList{u"complex-ex"_s, u"YJREQLOG"_s} << u"complex-ex 0 YJREQLOG"_s;
        QTest::newRow("over the host's window") << QStringList{u"date"_s, u"--parent"_s, u"0x2a"_s} << u"date 0 parent 42"_s;
        QTest::newRow("window id in decimal, a leading 0") << QStringList{u"date"_s, u"--parent"_s, u"010"_s} << u"date 0 parent 10"_s;
        QTest::newRow("window id in hex, upper case, the largest") << QStringList{u"date"_s, u"--parent"_s, u"0XFFFFFFFF"_s} << u"date 0 parent 4294967295"_s;
    }

    void arguments()
    {
        QFETCH(QStringList, arguments);
        static const QStringList names{u"clerk"_s, u"yjk"_s, u"acc"_s, u"branch"_s, u"date"_s, u"complex"_s, u"complex-ex"_s};

        const AskRequest request = parseAskArguments(arguments);
        const AskCommand &c = request.command.value(); // throws, failing the row, when refused
        const QString parent = c.parentWindow ? u" parent %1"_s.arg(c.parentWindow) : QString();
        const QString lengths = c.clerkLength || c.accLength || c.chequeLength
            ? u" lengths %1/%2/%3"_s.arg(c.clerkLength).arg(c.accLength).arg(c.chequeLength) : QString();
        QTEST(u"%1 %2 %3"_s.arg(names[int(c.operation)]).arg(c.length).arg(c.logType).trimmed() + lengths + parent, "expected");
    }

    void program_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("output"); // a part of what it writes

        QTest::newRow("help after an operation") << QStringList{u"acc"_s, u"-h"_s} << 0 << u"用法："_s;
        QTest::newRow("nothing to ask") << QStringList{u"complex"_s, u"YZXCLRZ"_s} << 1 << QString();
        QTest::newRow("length not a number") << QStringList{u"acc"_s, u"x"_s} << 2 << u"长度应是 0 或正整数，不是 x"_s;
        QTest::newRow("negative length") << QStringList{u"clerk"_s, u"-1"_s} << 2 << u"长度应是 0 或正整数，不是 -1"_s;
        QTest::newRow("unknown option") << QStringList{u"clerk"_s, u"4"_s, u"--Parent"_s, u"1"_s} << 2 << u"未知的选项：Parent"_s;
        QTest::newRow("option without its value") << QStringList{u"date"_s, u"--parent"_s} << 2 << u"选项 --parent 后面缺少它的值"_s;
        QTest::newRow("window id not a number") << QStringList{u"date"_s, u"--parent"_s, u"x"_s} << 2 << u"--parent 不是窗口号：x"_s;
        QTest::newRow("window id past 32 bits") << QStringList{u"date"_s, u"--parent"_s, u"0x100000000"_s} << 2 << u"--parent 不是窗口号：0x100000000"_s;
        // The cheque management log shows the second description in its list.
        QTest::newRow("component error") << QStringList{u"complex"_s, u"ZPGLRZ"_s, u"--list-a"_s, u"1=转账支票"_s} << 3 << u"Quarry: 下标越界"_s;
    }

    void program()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QString, output);

        QTemporaryDir systemDir;
        quarry::test::writeFile(systemDir.filePath(u"SEAL.INI"_s), "[SBMK]\r\nDoubleSealQuota=0\r\n");
        QProcess ask;
        ask.setEnvironment(QProcess::systemEnvironment() << u"QUARRY_SYSTEM_DIR="_s + systemDir.path());
        ask.start(QStringLiteral(QUARRY_ASK_PROGRAM), arguments);
        const QString written = ask.waitForFinished(test::WaitLimit) ? QString::fromUtf8(ask.readAllStandardOutput() + ask.readAllStandardError()) : u"still running"_s;
        QVERIFY2(ask.exitCode() == status && written.contains(output), qPrintable(u"%1: %2"_s.arg(ask.exitCode()).arg(written)));
    }

    // Every program answers --help and --version alike, before it starts
    // anything: here without a display or a session bus, which would fail
    // a program that started.
    void helpAndVersion_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("option");
        for (const char *program : {QUARRY_ASK_PROGRAM, QUARRY_SERVICE_PROGRAM, QUARRY_CONFIG_PROGRAM, QUARRY_VIEWER_PROGRAM}) {
            for (const QString &option : {u"--help"_s, u"-h"_s, u"--version"_s, u"-v"_s})
                QTest::addRow("%s %s", qPrintable(QFileInfo(QString::fromUtf8(program)).fileName()), qPrintable(option)) << QString::fromUtf8(program) << option;
        }
    }

    void helpAndVersion()
    {
        QFETCH(QString, program);
        QFETCH(QString, option);
        QProcess process;
        process.setEnvironment({u"QT_QPA_PLATFORM=xcb"_s});
        process.start(program, {option});
        QVERIFY2(process.waitForFinished(test::WaitLimit), "the program ended");
        const QString name = QFileInfo(program).fileName();
        const QString output = QString::fromUtf8(process.readAllStandardOutput());
        QCOMPARE(process.exitCode(), 0);
        if (option.contains(u'v'))
            QCOMPARE(output, u"%1 %2\n"_s.arg(name, QStringLiteral(QUARRY_VERSION)));
        else
            QVERIFY2(output.startsWith(u"用法："_s) && output.contains(name)
                         && output.contains(u"  -h, --help         显示本说明\n  -v, --version      显示版本\n"_s), qPrintable(output));
    }

    // This test has no QApplication: CQuarry raises its error instead of
    // aborting the program.
    void withoutApplication()
    {
        CQuarry quarry;
        QVERIFY_THROWS_EXCEPTION(QuarryError, quarry.showClerk(4));
        QCOMPARE(quarry.lastError()->number(), QuarryError::NoApplication);
        QCOMPARE(quarry.lastError()->source(), u"CQuarry.showClerk()"_s);
        QCOMPARE(quarry.lastOutcome(), CQuarry::Outcome::Failed);
    }
};

} // namespace quarry

QTEST_APPLESS_MAIN(quarry::TestQuarryAsk)
#include "tst_quarryask.moc"
