#include "TestFiles.h"

#include "support/CFileMan.h"

#include <quarry/QuarryError.h>

#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using quarry::CFileMan;
using Mode = quarry::filenumbers::Mode;

using quarry::test::readFile;
using quarry::test::writeFile;

class TestCFileMan : public QObject
{
    Q_OBJECT

    std::optional<QTemporaryDir> m_work; // a new one for every test
    QString work(const QString &name) const { return m_work->filePath(name); }

private slots:
    void init() { QVERIFY(m_work.emplace().isValid()); }

    void copyFileBlock_data()
    {
        QTest::addColumn<int>("count");
        for (int count : {0, 4096, 4097})
            QTest::addRow("%d", count) << count;
    }
    void copyFileBlock()
    {
        QFETCH(int, count);
        const QByteArray source = QByteArray("abcdefg").repeated(1000); // a shifted block shows
        writeFile(work(u"source.bin"_s), source);
        CFileMan files;
        const qint16 destination = files.OpenFile(work(u"dest.bin"_s), Mode::Output);
        QVERIFY(files.WriteText(destination, u"head"_s, 0, CFileMan::TextKind::Raw));
        QVERIFY(files.CopyFileBlock(work(u"source.bin"_s), count, destination));
        files.CloseFile(destination);
        QCOMPARE(readFile(work(u"dest.bin"_s)), "head" + source.left(count));
    }

    // Over the old file, in chunks; a fault leaves the destination as it was.
    void copyFileTo()
    {
        const QByteArray source = QByteArray("0123456789").repeated(7000); // more than a chunk
        writeFile(work(u"source.bin"_s), source);
        writeFile(work(u"dest.bin"_s), "old");
        CFileMan files;
        QVERIFY(files.CopyFileTo(work(u"source.bin"_s), work(u"dest.bin"_s)));
        QCOMPARE(readFile(work(u"dest.bin"_s)), source);
        QVERIFY(!files.CopyFileTo(work(u"none.bin"_s), work(u"dest.bin"_s)));
        QCOMPARE(files.LastError(), u"File not found: "_s + work(u"none.bin"_s));
        QVERIFY(!files.CopyFileTo(work(u"source.bin"_s), work(u"nowhere/dest.bin"_s)));
        QVERIFY2(files.LastError().contains(work(u"nowhere/dest.bin"_s)), qPrintable(files.LastError()));
        QCOMPARE(readFile(work(u"dest.bin"_s)), source);
    }

    void integerRecords_data()
    {
        QTest::addColumn<int>("width"); // 2: PutInteger/GetInteger, 4: PutLong/GetLong
        QTest::addColumn<qint32>("value");
        QTest::addColumn<qint64>("record");
        QTest::addColumn<QByteArray>("onDisk");
        QTest::newRow("integer at 5") << 2 << 0x1234 << qint64(5) << QByteArray("\0\0\0\0\x34\x12", 6);
        QTest::newRow("lowest long at 2") << 4 << qint32(0x80000000) << qint64(2) << QByteArray("\0\0\0\0\x80", 5);
    }
    void integerRecords()
    {
        QFETCH(int, width);
        QFETCH(qint32, value);
        QFETCH(qint64, record);
        CFileMan files;
        const qint16 file = files.OpenFile(work(u"records.bin"_s), Mode::Binary);
        QVERIFY(width == 2 ? files.PutInteger(file, qint16(value), record) : files.PutLong(file, value, record));
        qint16 integer = 0;
        qint32 longValue = 0;
        QVERIFY(width == 2 ? files.GetInteger(file, integer, record) : files.GetLong(file, longValue, record));
        QCOMPARE(width == 2 ? integer : longValue, value);
        files.CloseFile(file);
        QTEST(readFile(work(u"records.bin"_s)), "onDisk");
    }

    // A text record is as long as the text it is read into; record 0 is
    // where the last read ended.
    void textRecord()
    {
        writeFile(work(u"text.bin"_s), "abcdef");
        CFileMan files;
        QCOMPARE(files.FileLength(work(u"text.bin"_s)), 6);
        const qint16 file = files.OpenFile(work(u"text.bin"_s), Mode::Binary);
        const auto close = qScopeGuard([&] { files.CloseFile(file); }); // also when a check fails
        QString text(3, u' ');
        QVERIFY(files.GetText(file, text, 2));
        QCOMPARE(text, u"bcd"_s);
        QCOMPARE(files.FilePosition(file), 5);
        text.resize(2);
        QVERIFY(!files.AtEndOfFile(file) && files.GetText(file, text, 0) && files.AtEndOfFile(file));
        QCOMPARE(text, u"ef"_s);
    }

    void openModes_data()
    {
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<QByteArray>("before"); // null: no file
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("error"); // of the write, before the file's path
        QTest::newRow("append keeps") << Mode::Append << QByteArray("a\n") << QByteArray("a\nx\n") << QString();
        QTest::newRow("append creates") << Mode::Append << QByteArray() << QByteArray("x\n") << QString();
        QTest::newRow("binary writes from the start") << Mode::Binary << QByteArray("abcdef") << QByteArray("x\ncdef") << QString();
        QTest::newRow("input is not written") << Mode::Input << QByteArray("a\n") << QByteArray("a\n") << u"Bad file mode: "_s;
    }
    void openModes()
    {
        QFETCH(Mode, mode);
        QFETCH(QByteArray, before);
        QFETCH(QString, error);
        if (!before.isNull())
            writeFile(work(u"file.txt"_s), before);
        CFileMan files;
        const qint16 file = files.OpenFile(work(u"file.txt"_s), mode);
        QCOMPARE(files.WriteText(file, u"x"_s, 0, CFileMan::TextKind::Line), error.isEmpty());
        QCOMPARE(files.LastError(), error.isEmpty() ? error : error + work(u"file.txt"_s));
        files.CloseFile(file);
        QTEST(readFile(work(u"file.txt"_s)), "after");
    }

    // Numbers run from 1 to 511; a closed one is the next handed out.
    void fileNumbers()
    {
        const QString path = work(u"f.bin"_s);
        writeFile(path, "ab");
        CFileMan files;
        for (int number = 1; number <= 512; ++number)
            QCOMPARE(files.OpenFile(path, Mode::Binary), number == 512 ? 0 : number);
        QCOMPARE(files.LastError(), u"Too many files: 511"_s);
        qint16 value = 0;
        for (qint16 number : {0, 511, 512}) {
            QCOMPARE(files.GetInteger(number, value, 1), number == 511);
            QCOMPARE(files.LastError(), number == 511 ? QString() : u"Bad file name or number: #%1"_s.arg(number));
        }
        QCOMPARE(value, 0x6261);
        for (qint16 number : {1, 511}) {
            files.CloseFile(number);
            QCOMPARE(files.OpenFile(path, Mode::Binary), number);
        }
        for (qint16 number = 1; number <= 511; ++number)
            files.CloseFile(number);
    }

    void foldersAndLastError()
    {
        const QString missing = work(u"missing"_s);
        CFileMan files;
        QCOMPARE(files.OpenFile(missing, Mode::Input), 0);
        QCOMPARE(files.LastError(), u"File not found: "_s + missing);
        QVERIFY(files.MakePath(missing + u"\\a/b\\"_s)); // both separators, a trailing one
        QCOMPARE(files.LastError(), QString());
        QVERIFY(QFileInfo(work(u"missing/a/b"_s)).isDir());
        QVERIFY(files.MakePath(missing + u"\\a/b\\"_s)); // already there
        // A folder opens in no mode, binary (read and write, else read) included.
        QVERIFY2(files.OpenFile(missing, Mode::Binary) == 0 && files.LastError().startsWith(u"Path/File access error: "_s + missing), qPrintable(files.LastError()));
        // A folder the system makes for nobody, root included.
        QVERIFY(!files.EnsureFolder(u"/proc/quarry"_s));
        QVERIFY2(files.LastError().endsWith(u": /proc/quarry"_s), qPrintable(files.LastError()));

        writeFile(work(u"b.txt"_s), "x");
        writeFile(work(u"A.dat"_s), "x");
        files.SetFolder(m_work->path());
        QCOMPARE(files.FileCount(), 2);
        QCOMPARE(files.FileNameAt(0), u"A.dat"_s);
        QCOMPARE(files.FileNameAt(files.FileCount()), QString());
        QVERIFY_THROWS_EXCEPTION(quarry::QuarryError, files.SetFolder(work(u"nowhere"_s)));

        QVERIFY(files.DeleteFile(work(u"b.txt"_s)) && files.DeleteFolder(missing));
        QVERIFY(!QFileInfo::exists(work(u"b.txt"_s)) && !QFileInfo::exists(missing));
        QVERIFY(!files.DeleteFile(work(u"b.txt"_s)));
        QCOMPARE(files.LastError(), u"File not found: "_s + work(u"b.txt"_s));
        QVERIFY(!files.DeleteFolder(missing));
        QCOMPARE(files.LastError(), u"Path not found: "_s + missing);

        // A drive's root, a: to z:, is made when first needed.
        qputenv("QUARRY_DRIVES", QFile::encodeName(work(u"drives"_s)));
        QVERIFY(files.EnsureFolder(u"a:\\x"_s) && files.EnsureFolder(u"Z:\\x"_s));
        QVERIFY(QFileInfo(work(u"drives/a/x"_s)).isDir() && QFileInfo(work(u"drives/z/x"_s)).isDir());
    }
};

QTEST_GUILESS_MAIN(TestCFileMan)
#include "tst_cfileman.moc"
