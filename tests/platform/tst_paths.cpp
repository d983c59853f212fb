#include "platform/Paths.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
namespace paths = quarry::paths;

namespace {

// Sets an environment variable, or removes it for no value.
void setEnvironment(const char *name, const std::optional<QString> &value)
{
    if (value)
        qputenv(name, value->toLocal8Bit());
    else
        qunsetenv(name);
}

void touch(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot create the test file");
}

} // namespace

class TestPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fromWindowsPath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected");

        QTest::newRow("drive folder") << u"c:\\errorpath"_s << u"/drives/c/errorpath"_s;
        QTest::newRow("upper-case drive, case of folders kept")
            << u"C:\\ErrorPath\\error.txt"_s << u"/drives/c/ErrorPath/error.txt"_s;
        QTest::newRow("drive root") << u"D:\\"_s << u"/drives/d"_s;
        QTest::newRow("bare drive") << u"d:"_s << u"/drives/d"_s;
        QTest::newRow("drive without backslash") << u"c:seal.ini"_s << u"/drives/c/seal.ini"_s;
        QTest::newRow("trailing and doubled backslashes") << u"c:\\a\\\\b\\"_s << u"/drives/c/a/b"_s;
        QTest::newRow("dot folders") << u"c:\\a\\.\\b\\..\\c"_s << u"/drives/c/a/c"_s;
        QTest::newRow("no climbing above the drive") << u"c:\\..\\..\\etc\\passwd"_s << u"/drives/c/etc/passwd"_s;
        QTest::newRow("local absolute path as it is") << u"/var/lib/../x"_s << u"/var/lib/../x"_s;
        QTest::newRow("relative path") << u"sub\\seal.ini"_s << u"sub/seal.ini"_s;
        QTest::newRow("digit is no drive") << u"1:\\x"_s << u"1:/x"_s;
        QTest::newRow("empty") << QString() << QString();
    }

    void fromWindowsPath()
    {
        QFETCH(QString, path);
        QFETCH(QString, expected);

        setEnvironment("QUARRY_DRIVES", u"/drives"_s);
        QCOMPARE(paths::fromWindowsPath(path), expected);
    }

    void drivesFolder_data()
    {
        QTest::addColumn<std::optional<QString>>("drives");
        QTest::addColumn<QString>("expected");

        QTest::newRow("from the environment") << std::optional(u"/mnt/win"_s) << u"/mnt/win/c/x"_s;
        QTest::newRow("default") << std::optional<QString>() << u"/home/op/.local/share/quarry/drives/c/x"_s;
        QTest::newRow("empty means default") << std::optional(QString()) << u"/home/op/.local/share/quarry/drives/c/x"_s;
    }

    void drivesFolder()
    {
        QFETCH(std::optional<QString>, drives);
        QFETCH(QString, expected);

        setEnvironment("HOME", u"/home/op"_s);
        setEnvironment("QUARRY_DRIVES", drives);
        QCOMPARE(paths::fromWindowsPath(u"C:\\x"_s), expected);
    }

    void findInDir_data()
    {
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");

        QTest::newRow("exact") << QStringList{u"seal.ini"_s} << u"seal.ini"_s << u"seal.ini"_s;
        QTest::newRow("other case") << QStringList{u"seal.ini"_s} << u"SEAL.INI"_s << u"seal.ini"_s;
        QTest::newRow("exact match first")
            << QStringList{u"Seal.ini"_s, u"SEAL.INI"_s, u"seal.ini"_s} << u"SEAL.INI"_s << u"SEAL.INI"_s;
        QTest::newRow("folder") << QStringList{u"ErrorPath/x"_s} << u"errorpath"_s << u"ErrorPath"_s;
        QTest::newRow("missing") << QStringList{u"seal.ini"_s} << u"CONVERT.INI"_s << u"CONVERT.INI"_s;
    }

    void findInDir()
    {
        QFETCH(QStringList, entries);
        QFETCH(QString, name);
        QFETCH(QString, expected);

        QTemporaryDir dir;
        for (const QString &entry : entries)
            touch(dir.filePath(entry));
        QCOMPARE(paths::findInDir(dir.path(), name), dir.path() + u'/' + expected);
        QCOMPARE(paths::findInDir(dir.path() + u'/', name), dir.path() + u'/' + expected);
    }

    void resolveIniFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected"); // below the test folder

        QTest::newRow("bare name in the system folder") << u"SEAL.INI"_s << u"/system/seal.ini"_s;
        QTest::newRow("other bare name") << u"CONVERT.INI"_s << u"/system/Convert.ini"_s;
        QTest::newRow("missing file") << u"OTHER.INI"_s << u"/system/OTHER.INI"_s;
        QTest::newRow("relative path in the system folder") << u"SUB\\A.INI"_s << u"/system/sub/a.ini"_s;
        QTest::newRow("drive path") << u"C:\\SEAL\\SEAL.INI"_s << u"/drives/c/seal/seal.ini"_s;
        QTest::newRow("missing folder on a drive") << u"C:\\NONE\\SEAL.INI"_s << u"/drives/c/NONE/SEAL.INI"_s;
    }

    void resolveIniFile()
    {
        QFETCH(QString, name);
        QFETCH(QString, expected);

        QTemporaryDir dir;
        for (const auto *entry : {u"system/seal.ini", u"system/Convert.ini", u"system/sub/a.ini",
                                  u"drives/c/seal/seal.ini"})
            touch(dir.filePath(QString::fromUtf16(entry)));
        setEnvironment("QUARRY_SYSTEM_DIR", dir.filePath(u"system"_s));
        setEnvironment("QUARRY_DRIVES", dir.filePath(u"drives"_s));
        QCOMPARE(paths::resolveIniFile(name), dir.path() + expected);
    }

    void resolveUpperCasedLocalPath()
    {
        // The configuration upper-cases the whole path of seal.ini before reading it.
        QTemporaryDir dir;
        touch(dir.filePath(u"Lib/Quarry/seal.ini"_s));
        QCOMPARE(paths::resolveIniFile(dir.path() + u"/LIB/QUARRY/SEAL.INI"_s),
                 dir.filePath(u"Lib/Quarry/seal.ini"_s));
    }

    void systemIniDir_data()
    {
        QTest::addColumn<std::optional<QString>>("variable");
        QTest::addColumn<QString>("expected");

        QTest::newRow("from the environment") << std::optional(u"/opt/seal"_s) << u"/opt/seal"_s;
        QTest::newRow("default") << std::optional<QString>() << u"/etc/quarry"_s;
        QTest::newRow("empty means default") << std::optional(QString()) << u"/etc/quarry"_s;
    }

    void systemIniDir()
    {
        QFETCH(std::optional<QString>, variable);
        QFETCH(QString, expected);

        setEnvironment("QUARRY_SYSTEM_DIR", variable);
        QCOMPARE(paths::systemIniDir(), expected);
    }

    void userProfile_data()
    {
        QTest::addColumn<std::optional<QString>>("profile");
        QTest::addColumn<QString>("expected");

        QTest::newRow("USERPROFILE") << std::optional(u"/profiles/op"_s) << u"/profiles/op"_s;
        QTest::newRow("HOME without USERPROFILE") << std::optional<QString>() << u"/home/op"_s;
        QTest::newRow("HOME for an empty USERPROFILE") << std::optional(QString()) << u"/home/op"_s;
    }

    void userProfile()
    {
        QFETCH(std::optional<QString>, profile);
        QFETCH(QString, expected);

        setEnvironment("HOME", u"/home/op"_s);
        setEnvironment("USERPROFILE", profile);
        QCOMPARE(paths::userProfile(), expected);
    }

    void componentDirHoldsTheLibrary()
    {
        const QDir dir(paths::componentDir());
        QVERIFY(dir.isAbsolute());
        QVERIFY(!dir.entryList({u"libquarry.so*"_s}, QDir::Files).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestPaths)
#include "tst_paths.moc"
