#include "TestFiles.h"

#include "support/CFileMan.h"
#include "support/ErrorLog.h"

#include <quarry/QuarryError.h>

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

const QString WriterDescription(300, u'x');
const QString DateTime = uR"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)"_s;

class TestErrorLog : public QObject
{
    Q_OBJECT

    QTemporaryDir m_root; // seal.ini, and one folder of drives for each test
    int m_drives = 0;

    void writeSealIni(const QByteArray &text) { quarry::test::writeFile(m_root.filePath(u"seal.ini"_s), text); }
    // A drives folder that does not exist yet, as on a fresh machine.
    QString freshDrives()
    {
        const QString drives = m_root.filePath(u"drives%1/mapped"_s.arg(++m_drives));
        qputenv("QUARRY_DRIVES", QFile::encodeName(drives));
        return drives;
    }
    static QString contents(const QString &path) { return QString::fromUtf8(quarry::test::readFile(path)); }

private slots:
    void initTestCase() { qputenv("QUARRY_SYSTEM_DIR", QFile::encodeName(m_root.path())); }

    void logFolder_data()
    {
        QTest::addColumn<QByteArray>("sealIni");
        QTest::addColumn<bool>("blockCopy"); // the errors are failed block copies of a missing file
        QTest::addColumn<QString>("logFile"); // below the drives folder; empty: it cannot be written

        QTest::newRow("no ERRORFILE, on a fresh machine") << QByteArray() << false << u"c/errorpath/error.txt"_s;
        QTest::newRow("failed block copies, on a fresh machine") << QByteArray() << true << u"c/errorpath/error.txt"_s;
        QTest::newRow("ERRORFILE with blanks inside quotes, drive in upper case") << QByteArray("[ERROR]\nERRORFILE=\" D:\\Logs \"\n") << false << u"d/Logs/error.txt"_s;
        // Only the folder itself is made, besides the drive.
        QTest::newRow("two levels missing") << QByteArray("[ERROR]\nERRORFILE=c:\\nowhere\\errorpath\n") << false << QString();
        QTest::newRow("two levels missing, block copies") << QByteArray("[ERROR]\nERRORFILE=c:\\nowhere\\errorpath\n") << true << QString();
    }

    // Two errors give two lines in call order.
    void logFolder()
    {
        QFETCH(QByteArray, sealIni);
        QFETCH(bool, blockCopy);
        QFETCH(QString, logFile);
        writeSealIni(sealIni);
        const QString drives = freshDrives();
        const QString missing = m_root.filePath(u"missing.bin"_s);
        quarry::CFileMan files;
        const qint16 destination = files.OpenFile(m_root.filePath(u"copy.bin"_s), quarry::filenumbers::Mode::Output);
        const auto logTwice = [&] {
            if (blockCopy) {
                QVERIFY(!files.CopyFileBlock(missing, 10, destination));
                QVERIFY(!files.CopyFileBlock(missing, 10, destination));
            } else {
                quarry::writeErrorLog(u"CHy::GetBranchWdh()"_s, 2000, u"连接数据库 srv  失败！"_s);
                quarry::writeErrorLog(u"s %1"_s, -1, u"100% %1\n%2"_s);
            }
        };
        if (logFile.isEmpty()) {
            try {
                logTwice();
                QFAIL("The log was written");
            } catch (const quarry::QuarryError &error) { // said to operators: in Chinese, naming the folder
                QVERIFY2(error.description().startsWith(u"无法写入错误日志 "_s) && error.description().contains(u"/c/nowhere/errorpath 不存在"_s),
                         qPrintable(error.description()));
            }
            QVERIFY(!QFileInfo::exists(drives + u"/c/nowhere"_s));
            files.CloseFile(destination);
            return;
        }
        logTwice();
        files.CloseFile(destination);
        const QString expected = blockCopy
            ? u"(CFileMan.CopyFileBlock 53 File not found: \\S+ "_s + DateTime + u"\n){2}"_s
            : u"CHy::GetBranchWdh\\(\\) 2000 连接数据库 srv  失败！ "_s + DateTime
                + u"\ns %1 -1 100% %1\n%2 "_s + DateTime + u"\n"_s;
        const QString log = contents(drives + u'/' + logFile);
        QVERIFY2(QRegularExpression(QRegularExpression::anchoredPattern(expected)).match(log).hasMatch(),
                 qPrintable(log));
    }

    void concurrentWritersKeepLinesWhole()
    {
        constexpr int Writers = 3, Lines = 2000;
        writeSealIni("[ERROR]\nERRORFILE=c:\\many\n");
        const QString drives = freshDrives();
        QProcess writers[Writers];
        for (int id = 0; id < Writers; ++id)
            writers[id].start(QCoreApplication::applicationFilePath(),
                              {u"--log-writer"_s, QString::number(id), QString::number(Lines)});
        for (QProcess &writer : writers)
            QVERIFY(writer.waitForFinished(quarry::test::WaitLimit) && writer.exitCode() == 0);

        const QStringList lines = contents(drives + u"/c/many/error.txt"_s).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), Writers * Lines);
        const QRegularExpression whole(u"^writer\\d \\d+ "_s + WriterDescription + u" "_s + DateTime + u"$"_s);
        for (const QString &line : lines)
            QVERIFY2(whole.match(line).hasMatch(), qPrintable(line));
    }
};

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    // Run as "tst_errorlog --log-writer <id> <lines>", the program logs lines instead of testing.
    const bool writer = argc == 4 && qstrcmp(argv[1], "--log-writer") == 0;
    for (int i = 0; writer && i < QByteArray(argv[3]).toInt(); ++i)
        quarry::writeErrorLog(u"writer"_s + QString::fromLocal8Bit(argv[2]), i, WriterDescription);
    TestErrorLog test;
    return writer ? 0 : QTest::qExec(&test, argc, argv);
}

#include "tst_errorlog.moc"
