#include "platform/Paths.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
namespace paths = quarry::paths;

class TestPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resolveIniFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected"); // below the test folder

        QTest::newRow("bare name, other case") << u"CONVERT.INI"_s << u"/system/Convert.ini"_s;
        QTest::newRow("missing file") << u"OTHER.INI"_s << u"/system/OTHER.INI"_s;
        QTest::newRow("relative path") << u"SUB\\A.INI"_s << u"/system/sub/a.ini"_s;
        QTest::newRow("drive path") << u"C:\\SEAL\\SEAL.INI"_s << u"/drives/c/seal/seal.ini"_s;
        QTest::newRow("missing folder") << u"C:\\NONE\\SEAL.INI"_s << u"/drives/c/NONE/SEAL.INI"_s;
        QTest::newRow("bare drive") << u"c:seal.ini"_s << u"/drives/c/seal.ini"_s;
        QTest::newRow("dots, doubled and trailing backslashes") << u"c:\\..\\x\\.\\\\..\\SEAL\\\\"_s << u"/drives/c/seal"_s;
        QTest::newRow("local path upper-cased") << u"@/LIB/A.INI"_s << u"/lib/a.ini"_s;
    }

    void resolveIniFile()
    {
        QFETCH(QString, name);
        QFETCH(QString, expected);

        QTemporaryDir dir;
        for (const auto *entry : {u"system/seal.ini", u"system/Convert.ini", u"system/sub/a.ini",
                                  u"drives/c/seal/seal.ini", u"lib/a.ini"}) {
            QDir().mkpath(QFileInfo(dir.filePath(QString::fromUtf16(entry))).path());
            QFile(dir.filePath(QString::fromUtf16(entry))).open(QIODevice::WriteOnly);
        }
        qputenv("QUARRY_SYSTEM_DIR", dir.filePath(u"system"_s).toLocal8Bit());
        qputenv("QUARRY_DRIVES", dir.filePath(u"drives"_s).toLocal8Bit());
        name.replace(u"@"_s, dir.path());
        QCOMPARE(paths::resolveIniFile(name), dir.path() + expected);
    }
};

QTEST_GUILESS_MAIN(TestPaths)
#include "tst_paths.moc"
