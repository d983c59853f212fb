#include "support/ErrorLog.h"

#include <quarry/QuarryError.h>

#include <QDir>
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

    QTemporaryDir m_root; // seal.ini, and drive c: as the folder "c"

    void writeSealIni(const QByteArray &text)
    {
        QFile file(m_root.filePath(u"seal.ini"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    }
    QString logIn(const QString &folder) const
    {
        QFile file(m_root.filePath(u"c/"_s + folder + u"/error.txt"_s));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

private slots:
    void initTestCase()
    {
        qputenv("QUARRY_SYSTEM_DIR", QFile::encodeName(m_root.path()));
        qputenv("QUARRY_DRIVES", QFile::encodeName(m_root.path()));
        QVERIFY(QDir(m_root.path()).mkdir(u"c"_s));
        writeSealIni("[SBMK]\nDoubleSealQuota=0\n");
    }

    // Without ERRORFILE the log is c:\errorpath\error.txt, whose folder the first line makes;
    // only that one level is made.
    void logFolder()
    {
        quarry::writeErrorLog(u"CHy::GetBranchWdh()"_s, 2000, u"连接数据库 srv  失败！"_s);
        quarry::writeErrorLog(u"s %1"_s, -1, u"100% %1\n%2"_s);
        const QRegularExpression expected(u"^CHy::GetBranchWdh\\(\\) 2000 连接数据库 srv  失败！ "_s
                                          + DateTime + u"\ns %1 -1 100% %1\n%2 "_s + DateTime + u"\n$"_s);
        QVERIFY2(expected.match(logIn(u"errorpath"_s)).hasMatch(), qPrintable(logIn(u"errorpath"_s)));

        writeSealIni("[ERROR]\nERRORFILE=c:\\nowhere\\errorpath\n");
        QVERIFY_THROWS_EXCEPTION(quarry::QuarryError, quarry::writeErrorLog(u"s"_s, 1, u"d"_s));
        QVERIFY(!QFileInfo::exists(m_root.filePath(u"c/nowhere"_s)));
    }

    void concurrentWritersKeepLinesWhole()
    {
        constexpr int Writers = 3, Lines = 2000;
        writeSealIni("[ERROR]\nERRORFILE=c:\\many\n");
        QProcess writers[Writers];
        for (int id = 0; id < Writers; ++id)
            writers[id].start(QCoreApplication::applicationFilePath(),
                              {u"--log-writer"_s, QString::number(id), QString::number(Lines)});
        for (QProcess &writer : writers)
            QVERIFY(writer.waitForFinished(120000) && writer.exitCode() == 0);

        const QStringList lines = logIn(u"many"_s).split(u'\n', Qt::SkipEmptyParts);
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
