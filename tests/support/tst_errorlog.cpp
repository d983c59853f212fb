#include "support/CFileMan.h"
#include "support/ErrorLog.h"

#include <quarry/QuarryError.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using quarry::writeErrorLog;

namespace {

// Run as "tst_errorlog --log-writer <id> <lines>", the program logs lines instead of testing.
constexpr char WriterSwitch[] = "--log-writer";
constexpr int DescriptionLength = 300;

QString writerDescription()
{
    return QString(DescriptionLength, u'x');
}

int runWriter(const QString &id, int lines)
{
    for (int i = 0; i < lines; ++i)
        writeErrorLog(u"writer"_s + id, i, writerDescription());
    return 0;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QString readText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

constexpr QLatin1StringView DateTimePattern(R"((\d{4}-\d\d-\d\d \d\d:\d\d:\d\d))");

} // namespace

class TestErrorLog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void lineFormat_data();
    void lineFormat();
    void appendsInCallOrder_data();
    void appendsInCallOrder();
    void missingParentFolderFails();
    void copyFileBlockFailureIsLogged();
    void concurrentWritersKeepLinesWhole();

private:
    void writeSealIni(const QByteArray &extra);
    QString drive(const QString &path) const { return m_root.filePath(u"drives/"_s + path); }
    QString defaultLog() const { return drive(u"c/errorpath/error.txt"_s); }

    QTemporaryDir m_root;
};

void TestErrorLog::initTestCase()
{
    QVERIFY(m_root.isValid());
    QVERIFY(QDir(m_root.path()).mkdir(u"system"_s));
    qputenv("QUARRY_SYSTEM_DIR", QFile::encodeName(m_root.filePath(u"system"_s)));
    qputenv("QUARRY_DRIVES", QFile::encodeName(m_root.filePath(u"drives"_s)));
}

void TestErrorLog::init()
{
    QVERIFY(QDir(m_root.filePath(u"drives"_s)).removeRecursively());
    QVERIFY(QDir(m_root.path()).mkpath(u"drives/c"_s));
    writeSealIni({});
}

void TestErrorLog::writeSealIni(const QByteArray &extra)
{
    writeFile(m_root.filePath(u"system/seal.ini"_s), "[SBMK]\nDoubleSealQuota=0\n" + extra);
}

void TestErrorLog::lineFormat_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<qint32>("number");
    QTest::addColumn<QString>("description");
    QTest::newRow("Chinese with blanks") << u"CHy::GetBranchWdh()"_s << 2000 << u"连接数据库 srv  失败！"_s;
    QTest::newRow("lowest number") << u"s"_s << std::numeric_limits<qint32>::min() << u"d"_s;
    QTest::newRow("line break kept") << u"s"_s << 1 << u"first\nsecond"_s;
    QTest::newRow("placeholders kept") << u"s %1"_s << 1 << u"100% %1 %2"_s;
}

void TestErrorLog::lineFormat()
{
    QFETCH(QString, source);
    QFETCH(qint32, number);
    QFETCH(QString, description);
    QVERIFY(!QFileInfo::exists(drive(u"c/errorpath"_s))); // made by the first line
    const QDateTime before = QDateTime::currentDateTime().addMSecs(-1000);
    writeErrorLog(source, number, description);
    const QDateTime after = QDateTime::currentDateTime();

    const QString expected = QStringList{source, QString::number(number), description}.join(u' ');
    const QRegularExpression line(u"^"_s + QRegularExpression::escape(expected) + u" "_s + DateTimePattern
                                  + u"\n$"_s);
    const QRegularExpressionMatch match = line.match(readText(defaultLog()));
    QVERIFY2(match.hasMatch(), qPrintable(readText(defaultLog())));
    const QDateTime stamp = QDateTime::fromString(match.captured(1), u"yyyy-MM-dd hh:mm:ss"_s);
    QVERIFY(stamp >= before && stamp <= after);
}

void TestErrorLog::appendsInCallOrder_data()
{
    QTest::addColumn<QByteArray>("errorFile"); // seal.ini value; {root}: the test's folder
    QTest::addColumn<QString>("folder");       // relative to the test's folder
    QTest::newRow("drive path") << QByteArray("c:\\logs") << u"drives/c/logs"_s;
    QTest::newRow("local path") << QByteArray("{root}/local") << u"local"_s;
}

void TestErrorLog::appendsInCallOrder()
{
    QFETCH(QByteArray, errorFile);
    QFETCH(QString, folder);
    writeSealIni("[ERROR]\nERRORFILE=" + errorFile.replace("{root}", QFile::encodeName(m_root.path()))
                 + '\n');
    QVERIFY(QDir(m_root.path()).mkpath(folder));
    const QString log = m_root.filePath(folder + u"/error.txt"_s);
    writeFile(log, "earlier line\n");

    writeErrorLog(u"first"_s, 1, u"one"_s);
    writeErrorLog(u"second"_s, 2, u"two"_s);

    const QStringList lines = readText(log).split(u'\n');
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines[0], u"earlier line"_s);
    QVERIFY(lines[1].startsWith(u"first 1 one "_s));
    QVERIFY(lines[2].startsWith(u"second 2 two "_s));
    QCOMPARE(lines[3], QString());
    QVERIFY(!QFileInfo::exists(defaultLog()));
    QDir(m_root.filePath(u"local"_s)).removeRecursively();
}

void TestErrorLog::missingParentFolderFails()
{
    writeSealIni("[ERROR]\nERRORFILE=c:\\nowhere\\errorpath\n");
    try {
        writeErrorLog(u"s"_s, 1, u"d"_s);
        QFAIL("no error raised");
    } catch (const quarry::QuarryError &error) {
        QVERIFY2(error.description().contains(drive(u"c/nowhere"_s)), error.what());
    }
    QVERIFY(!QFileInfo::exists(drive(u"c/nowhere"_s)));
}

void TestErrorLog::copyFileBlockFailureIsLogged()
{
    const QString source = m_root.filePath(u"short.bin"_s);
    writeFile(source, "12345");
    quarry::CFileMan files;
    const qint16 destination =
        files.OpenFile(m_root.filePath(u"copy.bin"_s), quarry::filenumbers::Mode::Output);

    QVERIFY(!files.CopyFileBlock(source, 6, destination));
    QCOMPARE(files.LastErrorNumber(), quarry::filenumbers::InputPastEnd);
    files.CloseFile(destination);

    QVERIFY(readText(defaultLog())
                .startsWith(u"CFileMan.CopyFileBlock 62 Input past end of file: "_s + source + u' '));
}

void TestErrorLog::concurrentWritersKeepLinesWhole()
{
    constexpr int Writers = 3;
    constexpr int Lines = 200;
    std::vector<std::unique_ptr<QProcess>> writers;
    for (int id = 0; id < Writers; ++id) {
        auto &writer = writers.emplace_back(std::make_unique<QProcess>());
        writer->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        writer->start(QCoreApplication::applicationFilePath(),
                      {QString::fromLatin1(WriterSwitch), QString::number(id), QString::number(Lines)});
    }
    for (const auto &writer : writers) {
        QVERIFY(writer->waitForFinished(120000));
        QCOMPARE(writer->exitStatus(), QProcess::NormalExit);
        QCOMPARE(writer->exitCode(), 0);
    }

    QStringList lines = readText(defaultLog()).split(u'\n');
    QCOMPARE(lines.takeLast(), QString());
    QCOMPARE(lines.size(), Writers * Lines);
    const QRegularExpression whole(u"^writer(\\d) (\\d+) "_s + writerDescription() + u" "_s
                                   + DateTimePattern + u"$"_s);
    QList<int> nextLine(Writers, 0);
    for (const QString &line : std::as_const(lines)) {
        const QRegularExpressionMatch match = whole.match(line);
        QVERIFY2(match.hasMatch(), qPrintable(line));
        QCOMPARE(match.captured(2).toInt(), nextLine[match.captured(1).toInt()]++);
    }
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc == 4 && qstrcmp(argv[1], WriterSwitch) == 0)
        return runWriter(QString::fromLocal8Bit(argv[2]), QByteArray(argv[3]).toInt());
    TestErrorLog test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_errorlog.moc"
