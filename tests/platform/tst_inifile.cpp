#include "TestFiles.h"

#include "platform/IniFile.h"
#include "platform/Paths.h"

#include <QDir>
#include <QFile>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using quarry::IniFile;
using quarry::test::readFile;

namespace {

// UTF-16 with its byte-order mark.
QByteArray utf16(const QString &text, bool bigEndian)
{
    QStringEncoder encoder(bigEndian ? QStringConverter::Utf16BE : QStringConverter::Utf16LE,
                           QStringConverter::Flag::WriteBom);
    return encoder.encode(text);
}

// 普通银行 and 慮 in GB18030. The second byte of 慮 is "]".
const QByteArray GbPuTongYinHang = QByteArray::fromHex("c6d5cda8d2f8d0d0");
const QByteArray GbLu = QByteArray::fromHex("915d");
const QByteArray OldIni("[A]\r\nK=old\r\n");

} // namespace

class TestIniFile : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    int m_files = 0;

    QString fileWith(const QByteArray &bytes)
    {
        const QString path = m_dir.filePath(u"f%1.ini"_s.arg(++m_files));
        quarry::test::writeFile(path, bytes);
        return path;
    }

private Q_SLOTS:
    void value_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("expected");

        QTest::newRow("key of another section, its name empty") << QByteArray("[A]\nK=a\n[]\nL=b\n") << u"A"_s << u"L"_s << QString();
        QTest::newRow("blanks around names and values") << QByteArray(" \t[ A ]\t\n \t K \t=\t  v w \t \n") << u" A\t"_s << u" K "_s << u"v w"_s;
        QTest::newRow("inner blanks of a section name must match") << QByteArray("[  My  Sec  ]\nK=v\n") << u"My Sec"_s << u"K"_s << QString();
        QTest::newRow("double quotes") << QByteArray("[A]\nK= \"a b \" \n") << u"A"_s << u"K"_s << u"a b "_s;
        QTest::newRow("mixed quotes") << QByteArray("[A]\nK='abc\"\n") << u"A"_s << u"K"_s << u"'abc\""_s;
        const QByteArray twice("[A]\nK=first\nk=second\n[B]\n[a]\nK=third\nL=later\n");
        QTest::newRow("first of duplicate keys and sections") << twice << u"A"_s << u"K"_s << u"first"_s;
        QTest::newRow("keys of a repeated section are not seen") << twice << u"A"_s << u"L"_s << QString();
        QTest::newRow("comment line") << QByteArray("[A]\n;K=commented\n") << u"A"_s << u";K"_s << QString();
        QTest::newRow("an empty key name finds nothing") << QByteArray("[A]\n =v\n") << u"A"_s << u""_s << QString();
        QTest::newRow("line without equals sign ignored") << QByteArray("[A]\njunk line\nK=v\n") << u"A"_s << u"K"_s << u"v"_s;
        QTest::newRow("inline comment is part of the value") << QByteArray("[A]\nK==v ; note\n") << u"A"_s << u"K"_s << u"=v ; note"_s;
        QTest::newRow("header without closing bracket is no section") << QByteArray("[A]\nK=a\n[B\nL=b\n") << u"A"_s << u"L"_s << u"b"_s;
        QTest::newRow("lone CR") << QByteArray("[A]\rK=v\rL=w\r") << u"A"_s << u"K"_s << u"v"_s;
        QTest::newRow("cut never splits a character") << QByteArray("[A]\nK=" + QByteArray(254, 'x') + "\xF0\x9F\x98\x80\n") << u"A"_s << u"K"_s << QString(254, u'x');
        // UTF-16 is read unit by unit: a lone surrogate within the 255 stays.
        QTest::newRow("255 units of UTF-16, the last a lone high surrogate") << utf16(u"[A]\nK="_s + QString(254, u'x') + QChar(0xD800) + u'\n', false) << u"A"_s << u"K"_s << QString(254, u'x') + QChar(0xD800);
        QTest::newRow("cut at the first NUL, the value's first character") << QByteArray("[A]\nK=\0cd\n", 10) << u"A"_s << u"K"_s << QString();
        QTest::newRow("blanks alone are an empty value") << QByteArray("[A]\nK= \t\n") << u"A"_s << u"K"_s << QString();

        const QString text = u"[SYSTEM]\r\nMODE=普通银行\r\n"_s;
        QTest::newRow("UTF-8") << text.toUtf8() << u"system"_s << u"MODE"_s << u"普通银行"_s;
        QTest::newRow("GB18030, a bracket inside a character") << "[" + GbLu + "]\r\nMODE=" + GbPuTongYinHang + GbLu + "\r\n" << u"慮"_s << u"mode"_s << u"普通银行慮"_s;
        // U+0D0A and U+0A0D hold the bytes of CR and LF: they must not end a line.
        QTest::newRow("UTF-16LE, bytes of CR and LF inside characters") << utf16(u"[\u0D0A]\n\u0A0D=\u0D0D\n"_s, false) << u"\u0D0A"_s << u"\u0A0D"_s << u"\u0D0D"_s;
        QTest::newRow("UTF-16LE of odd length, the stray byte not read") << utf16(u"[A]\nK=1"_s, false) + 'A' << u"A"_s << u"K"_s << u"1"_s;
        QTest::newRow("the last ] closes the section name") << QByteArray("[a]b] x\nK=v\n") << u"a]b"_s << u"K"_s << u"v"_s;
        // A line that starts with U+FEFF is neither a section nor the key K.
        QTest::newRow("U+FEFF before a section header") << QByteArray::fromHex("5b415d0a 4b3d310a efbbbf5b425d0a 4c3d320a") << u"A"_s << u"L"_s << u"2"_s;
        QTest::newRow("U+FEFF before a key") << QByteArray::fromHex("5b415d0a efbbbf4b3d310a") << u"A"_s << u"K"_s << QString();
        QTest::newRow("GB18030 character cut off by the equals sign") << QByteArray::fromHex("5b415d0a 9a3d310a") << u"A"_s << u"\uFFFD"_s << u"1"_s;
    }

    void value()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, section);
        QFETCH(QString, key);

        QTEST(IniFile::load(fileWith(text)).value(section, key), "expected");
    }

    void write_data()
    {
        QTest::addColumn<QByteArray>("before"); // null: in a folder that is missing; "/": the path is a folder
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("reason"); // a part of what the error says; "" when written

        QTest::newRow("changes only the value, spelling kept") << QByteArray("; top\r\n[DataBase]\r\n  Key =  \"old\" \t\r\nB=2\r\n\r\n[C]\r\nKey=3\r\n") << u" DATABASE "_s << u"\tkey"_s << u"new"_s << QByteArray("; top\r\n[DataBase]\r\n  Key =  new \t\r\nB=2\r\n\r\n[C]\r\nKey=3\r\n") << QString();
        QTest::newRow("first of duplicate keys and sections") << QByteArray("[A]\nL=1\nL=2\n[A]\nK=2\n") << u"a"_s << u"L"_s << u"3"_s << QByteArray("[A]\nL=3\nL=2\n[A]\nK=2\n") << QString();
        QTest::newRow("key added after the section's last line, not after a comment") << QByteArray("[A]\nX=1\n;Z=0\n\n[B]\nZ=2\n") << u"A"_s << u"Z"_s << u"3"_s << QByteArray("[A]\nX=1\n;Z=0\nZ=3\n\n[B]\nZ=2\n") << QString();
        QTest::newRow("no line break anywhere, LF added") << QByteArray("[A]") << u"A"_s << u"K"_s << u"v"_s << QByteArray("[A]\nK=v") << QString();
        QTest::newRow("a lone CR never joins the LF of a blank line") << QByteArray("[A]\rK=1\n\n") << u"A"_s << u"L"_s << u"v"_s << QByteArray("[A]\rK=1\nL=v\n\n") << QString();
        QTest::newRow("line break of the first line used") << QByteArray("[A]\r\nX=1\nY=2") << u"A"_s << u"K"_s << u"v"_s << QByteArray("[A]\r\nX=1\nY=2\r\nK=v") << QString();
        QTest::newRow("NUL and bytes of other lines kept") << QByteArray("[A]\n\0\xFF\xFE junk\nK=1\n", 18) << u"A"_s << u"K"_s << u"2"_s << QByteArray("[A]\n\0\xFF\xFE junk\nK=2\n", 18) << QString();
        QTest::newRow("UTF-8 with BOM kept") << QByteArray("\xEF\xBB\xBF[A]\nK=1\n") << u"A"_s << u"K"_s << u"分行"_s << "\xEF\xBB\xBF[A]\nK=" + u"分行"_s.toUtf8() + "\n" << QString();
        QTest::newRow("GB18030 kept, section added") << "[A]\r\nMODE=" + GbPuTongYinHang + "\r\n" << u"慮"_s << u"K"_s << u"分行"_s << "[A]\r\nMODE=" + GbPuTongYinHang + "\r\n[" + GbLu + "]\r\nK=" + QByteArray::fromHex("b7d6d0d0")
                   + "\r\n" << QString();
        QTest::newRow("UTF-16BE key added") << utf16(u"[A]\nK=1\n"_s, true) << u"A"_s << u"L"_s << u"分行"_s << utf16(u"[A]\nK=1\nL=分行\n"_s, true) << QString();
        QTest::newRow("U+FEFF line kept, the key added") << QByteArray::fromHex("5b415d0a efbbbf4b3d310a") << u"A"_s << u"K"_s << u"2"_s << QByteArray::fromHex("5b415d0a efbbbf4b3d310a 4b3d320a") << QString();
        QTest::newRow("only the value's bytes change in GB18030") << QByteArray::fromHex("5b415d0a 9a3d310a") << u"A"_s << u"\uFFFD"_s << u"模"_s << QByteArray::fromHex("5b415d0a 9a3dc4a30a") << QString();
        QTest::newRow("GB18030 kept while a byte that is not UTF-8 stays") << QByteArray::fromHex("5b415d0a 4b3dff0a 4c3dc4a30a") << u"A"_s << u"M"_s << u"模"_s << QByteArray::fromHex("5b415d0a 4b3dff0a 4c3dc4a30a 4d3dc4a30a") << QString();
        QTest::newRow("GB18030 that becomes ASCII") << QByteArray::fromHex("5b415d0a 4b3dff0a") << u"A"_s << u"K"_s << u"x"_s << QByteArray::fromHex("5b415d0a 4b3d780a") << QString();
        QTest::newRow("255 characters, quote at one end") << QByteArray("[A]\n") << u"A"_s << u"K"_s << u'"' + QString(254, u'x') << "[A]\nK=\"" + QByteArray(254, 'x') + "\n" << QString();

        // Refused, every byte kept.
        const auto refused = [](const char *tag, const QString &section, const QString &key, const QString &value,
                                const QString &reason, const QByteArray &before = OldIni) {
            QTest::newRow(tag) << before << section << key << value << before << reason;
        };
        refused("line break in the value", u"A"_s, u"K"_s, u"v\n[B]\nX=1"_s, u"换行符"_s);
        refused("NUL in the value", u"A"_s, u"K"_s, u"v\u0000w"_s, u"NUL"_s);
        refused("equals sign in the key", u"A"_s, u"K=X"_s, u"v"_s, u"键不能"_s);
        refused("key read as a comment", u"A"_s, u" ;K"_s, u"v"_s, u"键不能"_s);
        refused("a key of blanks", u"A"_s, u" \t"_s, u"v"_s, u"键不能"_s);
        refused("lone high surrogate ending the value", u"B"_s, u"K"_s, u"v"_s + QChar(0xD800), u"代理码元"_s);
        refused("lone low surrogate in the section", u"B"_s + QChar(0xDC00), u"K"_s, u"v"_s, u"代理码元"_s);
        refused("tab after the value", u"A"_s, u"K"_s, u"v\t"_s, u"空格或制表符"_s);
        refused("a pair of quotes alone", u"A"_s, u"K"_s, u"''"_s, u"引号"_s);
        refused("256 characters", u"A"_s, u"K"_s, QString(256, u'x'), u"255"_s);
        refused("UTF-16 of odd length", u"A"_s, u"K"_s, u"1"_s, u"字节数却是奇数"_s, QByteArray::fromHex("fffe41"));
        QTest::newRow("in a folder that is missing") << QByteArray() << u"A"_s << u"K"_s << u"v"_s << QByteArray() << u"无法写入"_s;
        QTest::newRow("a folder") << "/"_ba << u"A"_s << u"K"_s << u"v"_s << QByteArray() << u"无法读取"_s;
        // L reads 模 in GB18030, ģ in UTF-8.
        refused("GB18030 that would become UTF-8", u"A"_s, u"K"_s, u"x"_s, u"GB18030"_s, QByteArray::fromHex("5b415d0a 4b3dff0a 4c3dc4a30a"));
    }

    void write()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QString, reason);

        const QString path = before.isNull() ? m_dir.filePath(u"missing/seal.ini"_s) : before == "/" ? m_dir.path() : fileWith(before);
        QString error;
        QVERIFY2(IniFile::write(path, section, key, value, &error) == reason.isEmpty() && error.contains(reason), qPrintable(error));
        QTEST(readFile(path), "after");
        if (reason.isEmpty())
            QCOMPARE(IniFile::load(path).value(section, key), value);
        else
            QVERIFY(!IniFile::write(path, section, key, value)); // again: nothing builds up
    }

    // Where a name of seal.ini or CONVERT.INI is found on this disk.
    void resolveIniFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected"); // below the test folder

        QTest::newRow("bare name, other case") << u"CONVERT.INI"_s << u"/system/Convert.ini"_s;
        QTest::newRow("relative path") << u"SUB\\A.INI"_s << u"/system/sub/a.ini"_s;
        QTest::newRow("drive path") << u"C:\\SEAL\\SEAL.INI"_s << u"/drives/c/seal/seal.ini"_s;
        QTest::newRow("missing folder") << u"C:\\NONE\\SEAL.INI"_s << u"/drives/c/NONE/SEAL.INI"_s;
        QTest::newRow("bare drive") << u"c:seal.ini"_s << u"/drives/c/seal.ini"_s;
        QTest::newRow("a drive alone") << u"C:"_s << u"/drives/c"_s;
        QTest::newRow("a colon after no letter") << u"1:A.INI"_s << u"/system/1:A.INI"_s;
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
        QCOMPARE(quarry::paths::resolveIniFile(name), dir.path() + expected);
    }

    // Written through a link, with its permissions, and no temporary file left behind.
    void writeKeepsLinkAndPermissions()
    {
        const QString target = fileWith("[A]\nK=1\n");
        const QString link = m_dir.filePath(u"link.ini"_s);
        QVERIFY(QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        const QFileDevice::Permissions permissions = QFile::permissions(target);
        QVERIFY(QFile::link(target, link));
        const QStringList files = QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);

        QVERIFY(IniFile::write(link, u"A"_s, u"K"_s, u"2"_s));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(readFile(target), QByteArray("[A]\nK=2\n"));
        QCOMPARE(QFile::permissions(target), permissions);
        QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden | QDir::System), files);
    }
};

QTEST_GUILESS_MAIN(TestIniFile)
#include "tst_inifile.moc"
