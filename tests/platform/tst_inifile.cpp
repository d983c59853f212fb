#include "platform/IniFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using quarry::IniFile;

namespace {

QByteArray nul()
{
    return QByteArray(1, '\0');
}

// UTF-16 with its byte-order mark, written out by hand.
QByteArray utf16(const QString &text, bool bigEndian)
{
    QByteArray bytes = bigEndian ? QByteArray("\xFE\xFF") : QByteArray("\xFF\xFE");
    for (const QChar c : text) {
        const char high = char(c.unicode() >> 8);
        const char low = char(c.unicode() & 0xFF);
        bytes.append(bigEndian ? high : low).append(bigEndian ? low : high);
    }
    return bytes;
}

// 普通银行, 分行 and 慮 in GB18030. The second byte of 慮 is "]".
const QByteArray GbPuTongYinHang = QByteArray::fromHex("c6d5cda8d2f8d0d0");
const QByteArray GbFenHang = QByteArray::fromHex("b7d6d0d0");
const QByteArray GbLu = QByteArray::fromHex("915d");

} // namespace

class TestIniFile : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    int m_files = 0;

    QString newPath()
    {
        return m_dir.filePath(u"f%1.ini"_s.arg(++m_files));
    }

    QString fileWith(const QByteArray &bytes)
    {
        const QString path = newPath();
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write the test file");
        return path;
    }

    static QByteArray contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
    }

    void value_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("expected");

        QTest::newRow("plain") << QByteArray("[A]\nK=v\n") << u"A"_s << u"K"_s << u"v"_s;
        QTest::newRow("names without regard to case")
            << QByteArray("[DataBaseSet]\nBaseMode=MYSQL\n") << u"DATABASESET"_s << u"basemode"_s << u"MYSQL"_s;
        QTest::newRow("blanks and tabs around names and values")
            << QByteArray(" \t[ A ]\t\n \t K \t=\t  v w \t \n") << u"A"_s << u"K"_s << u"v w"_s;
        QTest::newRow("names asked with blanks around")
            << QByteArray("[A]\nK=v\n") << u" A\t"_s << u" K "_s << u"v"_s;
        QTest::newRow("blanks inside a section name count")
            << QByteArray("[  My  Sec  ]\nK=v\n") << u"My  Sec"_s << u"K"_s << u"v"_s;
        QTest::newRow("inner blanks of a section name must match")
            << QByteArray("[  My  Sec  ]\nK=v\n") << u"My Sec"_s << u"K"_s << QString();
        QTest::newRow("blanks inside a key count") << QByteArray("[A]\nMY KEY=v\n") << u"my key"_s << u"K"_s << QString();
        QTest::newRow("double quotes") << QByteArray("[A]\nK= \"a b \" \n") << u"A"_s << u"K"_s << u"a b "_s;
        QTest::newRow("single quotes") << QByteArray("[A]\nK='v'\n") << u"A"_s << u"K"_s << u"v"_s;
        QTest::newRow("quote inside") << QByteArray("[A]\nK=\"x\"y\n") << u"A"_s << u"K"_s << u"\"x\"y"_s;
        QTest::newRow("unbalanced quote") << QByteArray("[A]\nK=\"abc\n") << u"A"_s << u"K"_s << u"\"abc"_s;
        QTest::newRow("mixed quotes") << QByteArray("[A]\nK='abc\"\n") << u"A"_s << u"K"_s << u"'abc\""_s;
        QTest::newRow("missing section") << QByteArray("[A]\nK=v\n") << u"B"_s << u"K"_s << QString();
        QTest::newRow("missing key") << QByteArray("[A]\nK=v\n") << u"A"_s << u"L"_s << QString();
        QTest::newRow("empty value") << QByteArray("[A]\nK=\nL=x\n") << u"A"_s << u"K"_s << QString();
        QTest::newRow("key of another section") << QByteArray("[A]\nK=a\n[B]\nL=b\n") << u"A"_s << u"L"_s << QString();
        QTest::newRow("key before any section") << QByteArray("K=a\n[A]\nL=b\n") << u"A"_s << u"K"_s << QString();
        QTest::newRow("first of duplicate keys")
            << QByteArray("[A]\nK=first\nk=second\n") << u"A"_s << u"K"_s << u"first"_s;
        QTest::newRow("first of duplicate sections")
            << QByteArray("[A]\nK=first\n[B]\n[a]\nK=second\nL=later\n") << u"A"_s << u"K"_s << u"first"_s;
        QTest::newRow("keys of a repeated section are not seen")
            << QByteArray("[A]\nK=first\n[B]\n[a]\nK=second\nL=later\n") << u"A"_s << u"L"_s << QString();
        QTest::newRow("comment line") << QByteArray("[A]\n;K=commented\n") << u"A"_s << u"K"_s << QString();
        QTest::newRow("line without equals sign ignored")
            << QByteArray("[A]\njunk line\nK=v\n") << u"A"_s << u"K"_s << u"v"_s;
        QTest::newRow("inline comment is part of the value")
            << QByteArray("[A]\nK=v ; note\n") << u"A"_s << u"K"_s << u"v ; note"_s;
        QTest::newRow("equals sign in the value") << QByteArray("[A]\nK==a=b\n") << u"A"_s << u"K"_s << u"=a=b"_s;
        QTest::newRow("text after a section name") << QByteArray("[A] junk\nK=v\n") << u"A"_s << u"K"_s << u"v"_s;
        QTest::newRow("header without closing bracket is no section")
            << QByteArray("[A]\nK=a\n[B\nL=b\n") << u"A"_s << u"L"_s << u"b"_s;
        QTest::newRow("lone CR") << QByteArray("[A]\rK=v\rL=w\r") << u"A"_s << u"K"_s << u"v"_s;
        QTest::newRow("mixed line breaks") << QByteArray("[A]\r\rK=v\n\r\nL=w") << u"A"_s << u"L"_s << u"w"_s;
        QTest::newRow("cut to 255 characters")
            << QByteArray("[A]\nK=" + QByteArray(300, 'x') + "\n") << u"A"_s << u"K"_s << QString(255, u'x');
        QTest::newRow("255 characters, not bytes")
            << ("[A]\nK=" + u"银"_s.repeated(300).toUtf8()) << u"A"_s << u"K"_s << u"银"_s.repeated(255);
        QTest::newRow("cut never splits a character")
            << QByteArray("[A]\nK=" + QByteArray(254, 'x') + "\xF0\x9F\x98\x80\n") << u"A"_s << u"K"_s
            << QString(254, u'x');
        QTest::newRow("cut after the quotes are removed")
            << QByteArray("[A]\nK=\"" + QByteArray(255, 'x') + "\"\n") << u"A"_s << u"K"_s << QString(255, u'x');
        QTest::newRow("cut at the first NUL")
            << QByteArray("[A]\nK=ab" + nul() + "cd\n") << u"A"_s << u"K"_s << u"ab"_s;
        QTest::newRow("other white space is kept")
            << u"[A]\nK=\u3000v\u3000\n"_s.toUtf8() << u"A"_s << u"K"_s << u"\u3000v\u3000"_s;
        QTest::newRow("Chinese names") << u"[系统]\n模式=普通银行\n"_s.toUtf8() << u"系统"_s << u"模式"_s << u"普通银行"_s;
    }

    void value()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, expected);

        QCOMPARE(IniFile::load(fileWith(text)).value(section, key), expected);
    }

    void hasSection_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("section");
        QTest::addColumn<bool>("expected");

        QTest::newRow("present") << QByteArray("[A]\nK=v\n") << u"A"_s << true;
        QTest::newRow("without keys") << QByteArray("[A]\n") << u"a"_s << true;
        QTest::newRow("missing") << QByteArray("[A]\nK=v\n") << u"B"_s << false;
        QTest::newRow("only in a comment") << QByteArray(";[B]\n") << u"B"_s << false;
    }

    void hasSection()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, section);
        QFETCH(bool, expected);

        QCOMPARE(IniFile::load(fileWith(text)).hasSection(section), expected);
    }

    void unreadableFile_data()
    {
        QTest::addColumn<QString>("path");

        QTest::newRow("missing file") << m_dir.filePath(u"missing.ini"_s);
        QTest::newRow("missing folder") << m_dir.filePath(u"missing/seal.ini"_s);
        QTest::newRow("folder") << m_dir.path();
    }

    void unreadableFile()
    {
        QFETCH(QString, path);

        const IniFile ini = IniFile::load(path);
        QVERIFY(!ini.hasSection(u"A"_s));
        QCOMPARE(ini.value(u"A"_s, u"K"_s), QString());
    }

    void encodings_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("expected");

        const QString text = u"[SYSTEM]\r\nMODE=普通银行\r\n"_s;
        QTest::newRow("UTF-8") << text.toUtf8() << u"SYSTEM"_s << u"MODE"_s << u"普通银行"_s;
        QTest::newRow("UTF-8 with BOM") << "\xEF\xBB\xBF" + text.toUtf8() << u"SYSTEM"_s << u"MODE"_s << u"普通银行"_s;
        QTest::newRow("GB18030") << "[SYSTEM]\r\nMODE=" + GbPuTongYinHang + "\r\n" << u"SYSTEM"_s << u"mode"_s
                                 << u"普通银行"_s;
        QTest::newRow("GB18030, a bracket inside a character")
            << "[" + GbLu + "]\r\nMODE=" + GbPuTongYinHang + GbLu + "\r\n" << u"慮"_s << u"MODE"_s << u"普通银行慮"_s;
        QTest::newRow("UTF-16LE") << utf16(text, false) << u"SYSTEM"_s << u"MODE"_s << u"普通银行"_s;
        QTest::newRow("UTF-16BE") << utf16(text, true) << u"SYSTEM"_s << u"MODE"_s << u"普通银行"_s;
        // U+0D0A and U+0A0D hold the bytes of CR and LF: they must not end a line.
        QTest::newRow("UTF-16LE, bytes of CR and LF inside characters")
            << utf16(u"[\u0D0A]\n\u0A0D=\u0D0D\n"_s, false) << u"\u0D0A"_s << u"\u0A0D"_s << u"\u0D0D"_s;
    }

    void encodings()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, expected);

        QCOMPARE(IniFile::load(fileWith(text)).value(section, key), expected);
    }

    void write_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("after");

        QTest::newRow("changes only the value")
            << QByteArray("; top\r\n[A]\r\n  Key =  old \t\r\nB=2\r\n\r\n[C]\r\nKey=3\r\n") << u"A"_s
            << u"Key"_s << u"new"_s
            << QByteArray("; top\r\n[A]\r\n  Key =  new \t\r\nB=2\r\n\r\n[C]\r\nKey=3\r\n");
        QTest::newRow("names without regard to case, spelling kept")
            << QByteArray("[DataBase]\nBaseMode=ACCESS\n") << u"DATABASE"_s << u"basemode"_s << u"MYSQL"_s
            << QByteArray("[DataBase]\nBaseMode=MYSQL\n");
        QTest::newRow("names given with blanks around")
            << QByteArray("[A]\nK=1\n") << u" A "_s << u"\tK "_s << u"2"_s << QByteArray("[A]\nK=2\n");
        QTest::newRow("quoted value replaced with its quotes")
            << QByteArray("[A]\nK=\"old\"\n") << u"A"_s << u"K"_s << u"new"_s << QByteArray("[A]\nK=new\n");
        QTest::newRow("empty value filled") << QByteArray("[A]\nK=\nL=1\n") << u"A"_s << u"K"_s << u"v"_s
                                            << QByteArray("[A]\nK=v\nL=1\n");
        QTest::newRow("value emptied") << QByteArray("[A]\nK= v \n") << u"A"_s << u"K"_s << QString()
                                       << QByteArray("[A]\nK=  \n");
        QTest::newRow("first of duplicate keys") << QByteArray("[A]\nK=1\nK=2\n") << u"A"_s << u"K"_s << u"3"_s
                                                 << QByteArray("[A]\nK=3\nK=2\n");
        QTest::newRow("first of duplicate sections")
            << QByteArray("[A]\nL=1\n[A]\nK=2\n") << u"a"_s << u"K"_s << u"3"_s
            << QByteArray("[A]\nL=1\nK=3\n[A]\nK=2\n");
        QTest::newRow("key added after the section's last line")
            << QByteArray("[A]\nX=1\n; note\n\n[B]\nZ=2\n") << u"A"_s << u"Z"_s << u"3"_s
            << QByteArray("[A]\nX=1\n; note\nZ=3\n\n[B]\nZ=2\n");
        QTest::newRow("commented key not changed")
            << QByteArray("[A]\n;K=1\n") << u"A"_s << u"K"_s << u"2"_s << QByteArray("[A]\n;K=1\nK=2\n");
        QTest::newRow("key added to a section without keys")
            << QByteArray("[A]\r\n[B]\r\n") << u"A"_s << u"K"_s << u"v"_s << QByteArray("[A]\r\nK=v\r\n[B]\r\n");
        QTest::newRow("key added to the last line without line break")
            << QByteArray("[A]\r\nX=1") << u"A"_s << u"K"_s << u"v"_s << QByteArray("[A]\r\nX=1\r\nK=v");
        QTest::newRow("section added at the end") << QByteArray("[A]\r\nX=1\r\n") << u"B"_s << u"K"_s << u"v"_s
                                                  << QByteArray("[A]\r\nX=1\r\n[B]\r\nK=v\r\n");
        QTest::newRow("section added after a last line without line break")
            << QByteArray("[A]\r\nX=1") << u"B"_s << u"K"_s << u"v"_s << QByteArray("[A]\r\nX=1\r\n[B]\r\nK=v");
        QTest::newRow("section added to an empty file") << QByteArray() << u"A"_s << u"K"_s << u"v"_s
                                                        << QByteArray("[A]\nK=v\n");
        QTest::newRow("lone CR kept") << QByteArray("[A]\rX=1\r") << u"A"_s << u"K"_s << u"v"_s
                                      << QByteArray("[A]\rX=1\rK=v\r");
        QTest::newRow("line break of the first line used")
            << QByteArray("[A]\r\nX=1\nY=2") << u"A"_s << u"K"_s << u"v"_s << QByteArray("[A]\r\nX=1\nY=2\r\nK=v");
        QTest::newRow("NUL and bytes of other lines kept")
            << QByteArray("[A]\n" + nul() + "\xFF\xFE junk\nK=1\n") << u"A"_s << u"K"_s << u"2"_s
            << QByteArray("[A]\n" + nul() + "\xFF\xFE junk\nK=2\n");
        QTest::newRow("UTF-8 with BOM kept")
            << QByteArray("\xEF\xBB\xBF[A]\nK=1\n") << u"A"_s << u"K"_s << u"分行"_s
            << "\xEF\xBB\xBF[A]\nK=" + u"分行"_s.toUtf8() + "\n";
        QTest::newRow("GB18030 kept") << "[A]\r\nMODE=" + GbPuTongYinHang + "\r\n" << u"A"_s << u"MODE"_s
                                      << u"分行"_s << "[A]\r\nMODE=" + GbFenHang + "\r\n";
        QTest::newRow("GB18030 section added")
            << "[A]\r\nMODE=" + GbPuTongYinHang + "\r\n" << u"慮"_s << u"K"_s << u"分行"_s
            << "[A]\r\nMODE=" + GbPuTongYinHang + "\r\n[" + GbLu + "]\r\nK=" + GbFenHang + "\r\n";
        QTest::newRow("UTF-16LE kept") << utf16(u"[A]\r\nK=1\r\n"_s, false) << u"A"_s << u"K"_s << u"分行"_s
                                       << utf16(u"[A]\r\nK=分行\r\n"_s, false);
        QTest::newRow("UTF-16BE key added") << utf16(u"[A]\nK=1\n"_s, true) << u"A"_s << u"L"_s << u"分行"_s
                                            << utf16(u"[A]\nK=1\nL=分行\n"_s, true);
    }

    void write()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QByteArray, after);

        const QString path = fileWith(before);
        QVERIFY(IniFile::write(path, section, key, value));
        QCOMPARE(contents(path), after);
        QCOMPARE(IniFile::load(path).value(section, key), value.trimmed());
    }

    void writeCreatesUtf8File()
    {
        const QString path = newPath();
        QVERIFY(IniFile::write(path, u"SYSTEM"_s, u"MODE"_s, u"普通银行"_s));
        QCOMPARE(contents(path), u"[SYSTEM]\nMODE=普通银行\n"_s.toUtf8());
        QVERIFY(IniFile::write(path, u"SYSTEM"_s, u"INITCFG"_s, u"C:\\SEAL\\SEAL.INI"_s));
        const IniFile ini = IniFile::load(path);
        QCOMPARE(ini.value(u"system"_s, u"mode"_s), u"普通银行"_s);
        QCOMPARE(ini.value(u"system"_s, u"initcfg"_s), u"C:\\SEAL\\SEAL.INI"_s);
    }

    void rejectedWrite_data()
    {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");

        QTest::newRow("line break in the value") << u"A"_s << u"K"_s << u"v\n[B]\nX=1"_s;
        QTest::newRow("NUL in the value") << u"A"_s << u"K"_s << u"v\u0000w"_s;
        QTest::newRow("line break in the key") << u"A"_s << u"K\nX"_s << u"v"_s;
        QTest::newRow("line break in the section") << u"A]\n[B"_s << u"K"_s << u"v"_s;
        QTest::newRow("bracket in the section") << u"A]B"_s << u"K"_s << u"v"_s;
        QTest::newRow("empty key") << u"A"_s << u" "_s << u"v"_s;
        QTest::newRow("equals sign in the key") << u"A"_s << u"K=X"_s << u"v"_s;
        QTest::newRow("key read as a comment") << u"A"_s << u" ;K"_s << u"v"_s;
    }

    void rejectedWrite()
    {
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, value);

        const QByteArray before("[A]\r\nK=old\r\n");
        const QString path = fileWith(before);
        QVERIFY(!IniFile::write(path, section, key, value));
        QCOMPARE(contents(path), before);
    }

    void failedWrite_data()
    {
        QTest::addColumn<QString>("path");

        QTest::newRow("missing folder") << m_dir.filePath(u"missing/seal.ini"_s);
        QTest::newRow("folder") << m_dir.path();
    }

    void failedWrite()
    {
        QFETCH(QString, path);

        QVERIFY(!IniFile::write(path, u"A"_s, u"K"_s, u"v"_s));
        QVERIFY(!QFileInfo::exists(m_dir.filePath(u"missing"_s)));
    }

    void writeKeepsPermissionsAndLeavesNoTemporaryFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"seal.ini"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[A]\nK=1\n");
        file.close();
        QVERIFY(file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup));
        const QFileDevice::Permissions permissions = QFile::permissions(path);

        QVERIFY(IniFile::write(path, u"A"_s, u"K"_s, u"2"_s));
        QCOMPARE(QFile::permissions(path), permissions);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"seal.ini"_s});
    }

    void writeThroughLinkKeepsTheLink()
    {
        QTemporaryDir dir;
        const QString target = dir.filePath(u"seal.ini"_s);
        const QString link = dir.filePath(u"link.ini"_s);
        QFile file(target);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[A]\nK=1\n");
        file.close();
        QVERIFY(QFile::link(target, link));

        QVERIFY(IniFile::write(link, u"A"_s, u"K"_s, u"2"_s));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(contents(target), QByteArray("[A]\nK=2\n"));
    }
};

QTEST_GUILESS_MAIN(TestIniFile)
#include "tst_inifile.moc"
