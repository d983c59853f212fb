#include "platform/FileNumbers.h"
#include "support/CFileMan.h"

#include <quarry/QuarryError.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;
using quarry::CFileMan;
using Mode = quarry::filenumbers::Mode;
using TextKind = CFileMan::TextKind;
// An operation on a path; true when it gave a result other than its neutral one.
using Operation = std::function<bool(CFileMan &, const QString &)>;

Q_DECLARE_METATYPE(Mode)
Q_DECLARE_METATYPE(Operation)

namespace {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Bytes that differ from block to block, so a shifted copy shows.
QByteArray pattern(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        bytes[i] = char(i % 251);
    return bytes;
}

} // namespace

class TestCFileMan : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void copyFileBlock_data();
    void copyFileBlock();
    void integerRecords_data();
    void integerRecords();
    void textAndEndOfFile();
    void openModes_data();
    void openModes();
    void missingPaths_data();
    void missingPaths();
    void folderQueries();
    void makePath_data();
    void makePath();
    void copyFileToReplacesDestination();

private:
    QString work(const QString &name) const { return m_work->filePath(name); }

    QTemporaryDir m_root;
    std::optional<QTemporaryDir> m_work;
};

void TestCFileMan::initTestCase()
{
    QVERIFY(m_root.isValid());
    QVERIFY(QDir(m_root.path()).mkdir(u"system"_s));
    qputenv("QUARRY_SYSTEM_DIR", QFile::encodeName(m_root.filePath(u"system"_s)));
    qputenv("QUARRY_DRIVES", QFile::encodeName(m_root.filePath(u"drives"_s)));
}

void TestCFileMan::init()
{
    m_work.emplace(m_root.filePath(u"work-XXXXXX"_s));
    QVERIFY(m_work->isValid());
}

void TestCFileMan::copyFileBlock_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("nothing") << 0;
    QTest::newRow("one byte") << 1;
    QTest::newRow("one block") << 4096;
    QTest::newRow("block and a byte") << 4097;
    QTest::newRow("blocks and a rest") << 10000;
}

void TestCFileMan::copyFileBlock()
{
    QFETCH(int, count);
    const QByteArray source = pattern(12000);
    writeFile(work(u"source.bin"_s), source);
    CFileMan files;
    const qint16 destination = files.OpenFile(work(u"dest.bin"_s), Mode::Output);
    QVERIFY(files.WriteText(destination, u"head"_s, 0, TextKind::Raw));
    const qint16 nextFree = quarry::filenumbers::freeFile();

    QVERIFY(files.CopyFileBlock(work(u"source.bin"_s), count, destination));

    QCOMPARE(quarry::filenumbers::freeFile(), nextFree); // the source is closed again
    QCOMPARE(files.FilePosition(destination), 4 + count + 1);
    files.CloseFile(destination);
    QCOMPARE(readFile(work(u"dest.bin"_s)), "head" + source.left(count));
}

void TestCFileMan::integerRecords_data()
{
    QTest::addColumn<int>("width"); // 2: PutInteger/GetInteger, 4: PutLong/GetLong
    QTest::addColumn<qint32>("value");
    QTest::addColumn<qint64>("record");
    QTest::addColumn<QByteArray>("onDisk");
    QTest::newRow("integer at 5") << 2 << 0x1234 << qint64(5) << QByteArray("\0\0\0\0\x34\x12", 6);
    QTest::newRow("negative integer at 1") << 2 << -2 << qint64(1) << QByteArray("\xfe\xff");
    QTest::newRow("lowest long at 2") << 4 << std::numeric_limits<qint32>::min() << qint64(2)
                                      << QByteArray("\0\0\0\0\x80", 5);
}

void TestCFileMan::integerRecords()
{
    QFETCH(int, width);
    QFETCH(qint32, value);
    QFETCH(qint64, record);
    QFETCH(QByteArray, onDisk);
    CFileMan files;
    qint16 file = files.OpenFile(work(u"records.bin"_s), Mode::Binary);
    QVERIFY(width == 2 ? files.PutInteger(file, qint16(value), record) : files.PutLong(file, value, record));
    QCOMPARE(files.FilePosition(file), record + width);
    files.CloseFile(file);
    QCOMPARE(readFile(work(u"records.bin"_s)), onDisk);

    file = files.OpenFile(work(u"records.bin"_s), Mode::Input);
    qint16 integer = 0;
    qint32 longValue = 0;
    QVERIFY(width == 2 ? files.GetInteger(file, integer, record) : files.GetLong(file, longValue, record));
    QCOMPARE(width == 2 ? integer : longValue, value);
    QVERIFY(files.AtEndOfFile(file));
    files.CloseFile(file);
}

void TestCFileMan::textAndEndOfFile()
{
    CFileMan files;
    const qint16 file = files.OpenFile(work(u"text.bin"_s), Mode::Binary);
    QVERIFY(files.WriteText(file, u"中文abc"_s, 3, TextKind::Raw));
    QVERIFY(files.WriteText(file, u"x"_s, 0, TextKind::Line));
    QCOMPARE(files.OpenLength(file), 2 + 9 + 2);
    QString text = u"中文abc"_s;
    QVERIFY(files.GetText(file, text, 3));
    QCOMPARE(text, u"中文abc"_s);
    QVERIFY(!files.AtEndOfFile(file));

    qint32 value = 7;
    QVERIFY(!files.GetLong(file, value, 0)); // two bytes left
    QCOMPARE(value, 7);
    QVERIFY(files.LastError().startsWith(u"Input past end of file"_s));
    QVERIFY(files.AtEndOfFile(file));
    files.CloseFile(file);
}

void TestCFileMan::openModes_data()
{
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<QByteArray>("before"); // null: no file
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("output truncates") << Mode::Output << QByteArray("old line\n") << QByteArray("x\n");
    QTest::newRow("append keeps") << Mode::Append << QByteArray("a\n") << QByteArray("a\nx\n");
    QTest::newRow("append creates") << Mode::Append << QByteArray() << QByteArray("x\n");
    QTest::newRow("binary writes from the start") << Mode::Binary << QByteArray("abcdef")
                                                  << QByteArray("x\ncdef");
    QTest::newRow("binary creates") << Mode::Binary << QByteArray() << QByteArray("x\n");
}

void TestCFileMan::openModes()
{
    QFETCH(Mode, mode);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QString path = work(u"file.txt"_s);
    if (!before.isNull())
        writeFile(path, before);
    CFileMan files;
    const qint16 file = files.OpenFile(path, mode);
    QVERIFY2(file != 0, qPrintable(files.LastError()));
    QVERIFY(files.WriteText(file, u"x"_s, 0, TextKind::Line));
    files.CloseFile(file);
    QCOMPARE(readFile(path), after);
}

void TestCFileMan::missingPaths_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("error");
    const QString fileNotFound = u"File not found"_s;
    QTest::newRow("OpenFile for input")
        << Operation([](CFileMan &f, const QString &p) { return f.OpenFile(p, Mode::Input) != 0; })
        << fileNotFound;
    QTest::newRow("FileLength")
        << Operation([](CFileMan &f, const QString &p) { return f.FileLength(p) != 0; }) << fileNotFound;
    QTest::newRow("CopyFileTo")
        << Operation([](CFileMan &f, const QString &p) { return f.CopyFileTo(p, p + u".copy"_s); })
        << fileNotFound;
    QTest::newRow("DeleteFile")
        << Operation([](CFileMan &f, const QString &p) { return f.DeleteFile(p); }) << fileNotFound;
    QTest::newRow("DeleteFolder")
        << Operation([](CFileMan &f, const QString &p) { return f.DeleteFolder(p); })
        << u"Path not found"_s;
}

void TestCFileMan::missingPaths()
{
    QFETCH(Operation, operation);
    QFETCH(QString, error);
    const QString path = work(u"missing"_s);
    CFileMan files;
    QVERIFY(!operation(files, path));
    QCOMPARE(files.LastError(), error + u": "_s + path);
    QCOMPARE(QDir(m_work->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());

    QVERIFY(files.EnsureFolder(path));
    QCOMPARE(files.LastError(), QString());
    QCOMPARE(files.LastErrorNumber(), 0);
}

void TestCFileMan::folderQueries()
{
    for (const QString &name : {u"b.txt"_s, u"A.dat"_s})
        writeFile(work(name), "x");
    QVERIFY(QDir(m_work->path()).mkdir(u"y"_s));
    CFileMan files;
    files.SetFolder(m_work->path());
    writeFile(work(u"c.txt"_s), "x");
    QVERIFY(QDir(m_work->path()).mkdir(u"x"_s));

    QCOMPARE(files.FileCount(), 2); // as read by SetFolder
    QCOMPARE(files.FileNameAt(0), u"A.dat"_s);
    QCOMPARE(files.FileNameAt(1), u"b.txt"_s);
    QCOMPARE(files.FileNameAt(files.FileCount()), QString());
    QCOMPARE(files.FolderCount(), 2);
    QCOMPARE(files.FolderNameAt(0), u"x"_s);
    QCOMPARE(files.FolderNameAt(2), QString());

    QVERIFY_THROWS_EXCEPTION(quarry::QuarryError, files.SetFolder(work(u"missing"_s)));
    QCOMPARE(files.FileCount(), 2);
}

void TestCFileMan::makePath_data()
{
    QTest::addColumn<QString>("path");  // {work}: the test's folder
    QTest::addColumn<QString>("local"); // {drives}: $QUARRY_DRIVES
    QTest::newRow("slashes") << u"{work}/a/b/c"_s << u"{work}/a/b/c"_s;
    QTest::newRow("backslashes") << u"{work}\\a\\b\\c"_s << u"{work}/a/b/c"_s;
    QTest::newRow("mixed, trailing") << u"{work}/a\\b/c\\"_s << u"{work}/a/b/c"_s;
    QTest::newRow("drive") << u"c:\\made\\deep"_s << u"{drives}/c/made/deep"_s;
}

void TestCFileMan::makePath()
{
    QFETCH(QString, path);
    QFETCH(QString, local);
    const QString drives = m_root.filePath(u"drives"_s);
    const auto expand = [&](QString text) {
        return text.replace(u"{work}"_s, m_work->path()).replace(u"{drives}"_s, drives);
    };
    CFileMan files;
    QVERIFY2(files.MakePath(expand(path)), qPrintable(files.LastError()));
    QVERIFY(QFileInfo(expand(local)).isDir());
    QVERIFY(CFileMan::FolderExists(expand(path)));
    QVERIFY(files.MakePath(expand(path))); // already there
    QDir(drives).removeRecursively();
}

void TestCFileMan::copyFileToReplacesDestination()
{
    writeFile(work(u"source"_s), pattern(70000));
    writeFile(work(u"destination"_s), "old");
    CFileMan files;
    QVERIFY(files.CopyFileTo(work(u"source"_s), work(u"destination"_s)));
    QCOMPARE(readFile(work(u"destination"_s)), pattern(70000));
    QCOMPARE(files.FileLength(work(u"destination"_s)), 70000);
}

QTEST_GUILESS_MAIN(TestCFileMan)
#include "tst_cfileman.moc"
