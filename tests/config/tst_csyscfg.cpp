#include "TestDatabases.h"
#include "ModalWatch.h"
#include "TestFiles.h"

#include <quarry/CSysCfg.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using quarry::CSysCfg;
using quarry::test::Engine;
using quarry::test::readFile;
using quarry::test::writeFile;

namespace {

const QString SealIni = u"SEAL.INI"_s;
// Keeps GetParameter away from the parameter table where a test is not about it.
const QString NoDatabase = u"\n[SBMK]\nDoubleSealQuota=0\n"_s;
// The station's seal.ini in the program tests.
const QString SealIniText = u"[USER]\nMODE=Nelos\nSubMode=信贷建库机\n"_s + NoDatabase;

// A station folder, which is also the system INI folder of the test. It answers
// the message boxes shown while it exists at once, counting them and keeping what
// the last one showed, so that a failing read never blocks a test.
class Station : public QTemporaryDir
{
public:
    Station() { qputenv("QUARRY_SYSTEM_DIR", QFile::encodeName(path())); }

    quarry::test::BoxSeen box;
    int shown = 0;
    bool complete = false; // what the last load's GetParameter returned

    // seal.ini with the text (and no database quota unless the text has an
    // [SBMK] section of its own), read by a new object.
    std::unique_ptr<CSysCfg> load(const QString &text)
    {
        writeFile(filePath(u"seal.ini"_s), (text.contains(u"[SBMK]"_s, Qt::CaseInsensitive) ? text : text + NoDatabase).toUtf8());
        auto cfg = std::make_unique<CSysCfg>();
        cfg->IniPath = filePath(u"seal.ini"_s);
        complete = cfg->GetParameter();
        return cfg;
    }

private:
    quarry::test::ModalWatch m_watch{nullptr, [this](QWidget *modal) {
        ++shown;
        quarry::test::answerBox(QMessageBox::Ok, &box)(modal);
    }, true};
};

template<typename T>
QString numbers(const QList<T> &values)
{
    QStringList texts;
    for (const T value : values)
        texts << QString::number(value);
    return texts.join(u' ');
}

// A public field or lazy getter the tables below look at.
using Getter = std::function<QString(CSysCfg &)>;
#define FIELD(name) Getter([](CSysCfg &c) { return QVariant::fromValue(c.name).toString(); })

} // namespace

Q_DECLARE_METATYPE(Getter)

class TestCSysCfg : public QObject
{
    Q_OBJECT

    QTemporaryDir m_library; // a copy of the library, which the program loads

private slots:
    void initTestCase()
    {
        const QString library = QStringLiteral(QUARRY_LIBRARY);
        QVERIFY(QFile::copy(library, m_library.filePath(QFileInfo(library).fileName())));
    }

    void values_data()
    {
        QTest::addColumn<QString>("ini");
        QTest::addColumn<QString>("second"); // the file for a second read, null for none
        QTest::addColumn<Getter>("field");
        QTest::addColumn<QString>("expected"); // both values when read twice, ~ for the user profile
        QTest::addColumn<QString>("message");  // what the failure message names, "" for none

        // A failed read (a message given) keeps what it read before.
        const auto read = [](const char *tag, const QString &ini, const Getter &field, const QString &expected,
                           const QString &message = {}) {
            QTest::newRow(tag) << ini << QString() << field << expected << message;
        };
        const auto failure = [&read](const char *tag, const QString &ini, const QString &message) {
            read(tag, u"[DATABASESET]\nBASEMODE=MYSQL\n"_s + ini, FIELD(BASEMODE), u"MYSQL"_s, message);
        };
        // Read again after GetParameter: codes are read again by it, lazy getters by themselves.
        const auto reread = [](const char *tag, const Getter &field, const QString &first, const QString &second,
                               const QString &expected) {
            QTest::newRow(tag) << first << u"\n"_s + second << field << expected << QString();
        };
        // The account patterns, the bank account patterns, the query and the count in the file.
        const Getter lists = [](CSysCfg &c) {
            QStringList bank;
            for (qint16 i = 0; !c.GetBankAccNo(i).isEmpty(); ++i)
                bank << c.GetBankAccNo(i);
            return QStringList{c.GetAccNoType().join(u' '), bank.join(u' '), c.GetLocalQueryString(),
                               c.GetINIData(u"BANKPARAM"_s, u"TOTALACCNO"_s, QString(), SealIni)}
                .join(u" | "_s);
        };
        read("default", QString(), FIELD(ODBCDRIVER), u"FreeTDS"_s);
        read("empty value is the default, one account type", u"[BANKPARAM]\nDEPARTID=\nTOTALACCTYPE=1\n"_s, FIELD(DEPARTID), u"1"_s);
        read("WDHMAXLEN follows WDHLEN", u"[BANKPARAM]\nWDHLEN=8\n"_s, FIELD(WDHMAXLEN), u"8"_s);
        read("IFQUERYCENTRE read twice", u"[XTCHX]\nIFQUERYCENTRE=1\n"_s, FIELD(IFQUERYCENTRE2), u"1"_s);
        read("GSHOST follows HOST", u"[NETPARAM]\nHOST=10.0.0.9\n"_s, FIELD(GSHOST), u"10.0.0.9"_s);
        read("yjk print on", u"[sbmk]\nIfPrintYjkNo=1\nDoubleSealQuota=0"_s, FIELD(PrintYjkNoFontSize), u"12"_s);
        read("input length follows", u"[YJK]\nYJKLENGTH=10\n"_s, FIELD(YjkInputLength), u"10"_s);
        read("other profile", u"[USER]\nMODE=Gugal\n[Zacen]\nMaxSealCount=5"_s, FIELD(MaxSealCount), u"0"_s);
        // Lenient numbers: the leading number, 0 without one, half to even.
        read("leading number", u"[SBMK]\nMoneyLen=1 6x\nDoubleSealQuota=0\n"_s, FIELD(MoneyLen), u"16"_s);
        read("no number", u"[SBMK]\nMoneyLen=abc\nDoubleSealQuota=0\n"_s, FIELD(MoneyLen), u"0"_s);
        read("half up to even", u"[HYADM]\nSFZHLEN=3.5\n"_s, FIELD(SFZHLEN), u"4"_s);
        read("Integer minimum, half to even", u"[HYADM]\nSFZHLEN=-32768.5\n"_s, FIELD(SFZHLEN), u"-32768"_s);
        read("Long maximum", u"[HYADM]\nTRANPORT=2147483647\n"_s, FIELD(TRANPORT), u"2147483647"_s);
        failure("overflow by rounding", u"[HYADM]\nSFZHLEN=32767.5\n"_s, u"SFZHLEN=32767.5"_s);
        failure("Long overflow", u"[HYADM]\nTRANPORT=2147483648\n"_s, u"TRANPORT=2147483648"_s);
        // Strict counts: the whole text must be a number.
        read("count half to even", u"[HYADM]\nHYDHLEN=4.5\n"_s, FIELD(HYDHLEN), u"4"_s);
        failure("count with letters", u"[HYADM]\nHYDHLEN=6x\n"_s, u"HYDHLEN=6x"_s);
        failure("no account types", u"[BANKPARAM]\nTOTALACCTYPE=0\n"_s, u"TOTALACCTYPE=0"_s);
        read("no patterns written back as one default", u"[BANKPARAM]\nTOTALACCNO=0\n"_s, lists, u"201????????? | 201????????? | ACCNO like '201_________'  | 1"_s);
        read("bank patterns copy the account patterns", u"[BANKPARAM]\nTOTALACCNO=3\nACCNOTYPE(0)=11??\nACCNOTYPE(2)=22??*3*\n"_s, lists, u"11?? 201????????? 22??*3* | 11?? 201????????? 22??*3* | ACCNO like '11__' or ACCNO like '201_________' or ACCNO like '22__%3%'  | 3"_s);
        read("a pattern is data on MySQL", u"[DATABASESET]\nBASEMODE=MYSQL\n[BANKPARAM]\nTOTALACCNO=1\nACCNOTYPE(0)=1'\\?\n"_s, lists, u"1'\\? | 1'\\? | ACCNO like '1''\\\\\\\\_'  | 1"_s);
        read("bank patterns of their own", u"[BANKPARAM]\nTOTALACCNO=1\nACCNOTYPE(0)=11??\nTOTALBANKACCNO=2\nBANKACCNOTYPE(0)=7??"_s, lists, u"11?? | 7?? 201????????? | ACCNO like '11__'  | 1"_s);
        // A host may raise the public count past the patterns read.
        read("count raised past the patterns, then lowered", u"[BANKPARAM]\nTOTALACCNO=1\nACCNOTYPE(0)=11??\n"_s, [](CSysCfg &c) { c.TOTALACCNO = 3; const QString raised = c.GetLocalQueryString(); c.TOTALACCNO = 0; return raised + u'|' + c.GetLocalQueryString(); }, u"ACCNO like '11__' |"_s);
        read("negative pattern count", u"[BANKPARAM]\nTOTALACCNO=-2\n"_s, FIELD(AccNoMaxLen), u"0"_s);
        const QString special = u"[SBMK]\nDoubleSealQuota=50000\nTotalSpecialDoubleSealQuota=3\nSpecialDoubleSealPztype(0)=2\nSpecialDoubleSealQuota(0)=200000.5\nSpecialDoubleSealPztype(1)=2\nSpecialDoubleSealQuota(1)=1\nSpecialDoubleSealQuota(2)=7\n"_s;
        read("first entry of a type", special, FIELD(GetDoubleSealQuotaByPztype(2)), u"200000.5"_s);
        read("type without entry", special, FIELD(GetDoubleSealQuotaByPztype(4)), u"50000"_s);
        read("entry without type is type 0", special, FIELD(GetDoubleSealQuotaByPztype(0)), u"7"_s);
        read("list element overflows", u"[SBMK]\nDoubleSealQuota=0\nTotalCheckUsefulLifeKind=3\nCheckUsefulLifeKind(0)=7\nCheckUsefulLifeKind(1)=99999\nCheckUsefulLifeKind(2)=9\n"_s, [](CSysCfg &c) { return numbers(c.CheckUsefulLifeKind); }, u"7 0 0"_s, u"CheckUsefulLifeKind(1)=99999"_s);
        read("quota of a pair overflows", u"[SBMK]\nDoubleSealQuota=0\nTotalSpecialDoubleSealQuota=2\nSpecialDoubleSealPztype(0)=3\nSpecialDoubleSealQuota(0)=1e999\n"_s, [](CSysCfg &c) { return numbers(c.SpecialDoubleSealPztype) + u" | "_s + numbers(c.SpecialDoubleSealQuota); }, u"3 0 | 0 0"_s, u"SpecialDoubleSealQuota(0)=1e999"_s);
        const QString nelos = u"[USER]\nMODE=Nelos"_s;
        reread("Refol", FIELD(ProfileCode), nelos, u"[USER]\nMODE=Refol"_s, u"22 20"_s);
        reread("other case", FIELD(ProfileCode), nelos, u"[USER]\nMODE=refol"_s, u"22 0"_s);
        // Trimmed of blanks (U+0020) only.
        reread("blanks inside quotes", FIELD(ProfileCode), nelos, u"[USER]\nMODE=\" Refol \""_s, u"22 20"_s);
        reread("ideographic space", FIELD(ProfileCode), nelos, u"[USER]\nMODE=Refol\u3000"_s, u"22 0"_s);
        reread("tab inside quotes", FIELD(ProfileCode), nelos, u"[USER]\nMODE=\"Refol\t\""_s, u"22 0"_s);
        reread("UpperMode unknown keeps", FIELD(UpperModeCode), u"[USER]\nUpperMode=Letus"_s, u"[USER]\nUpperMode=Other"_s, u"1 1"_s);
        reread("SubMode, the first name", FIELD(SubModeCode), u"[USER]\nSubMode=信贷建库机"_s, u"[USER]\nSubMode=普通网点"_s, u"1 0"_s);
        reread("mark re-read", FIELD(GetPrintLogMode()), u"[rzgl]\nPrintLogMode=-100"_s, u"[rzgl]\nPrintLogMode=2"_s, u"-100 2"_s);
        reread("zero re-read", FIELD(GetTalasGsYjkPrintX()), u"[Talas]\nGsYjkPrintX=0"_s, {}, u"0 200"_s);
        reread("from HOST", FIELD(GetParamHostIp()), u"[NETPARAM]\nHOST=h1"_s, u"[BANKPARAM]\nPARAMHOSTIP=h2"_s, u"h1 h1"_s);
        reread("empty re-read", FIELD(GetParamHostIp()), {}, u"[BANKPARAM]\nPARAMHOSTIP=h2"_s, u" h2"_s);
        read("lazy numbers", u"[Cukal]\nPreChequeNoLength=8\n[LogCen]\nIfWriteAutoManualResult=1\n[HYADM]\nHyConfigEnable=0\n"_s, [](CSysCfg &c) { return u"%1 %2 %3"_s.arg(c.GetPreChequeNoLength()).arg(c.GetIfWriteAutoManualResult()).arg(c.GetHyConfigEnable()); }, u"8 1 0"_s);
        read("series numbers when generated", u"[sbmk]\nGenerateSealSeriesNo=1\nSealSeriesNoLen=8\nDoubleSealQuota=0\n"_s, FIELD(SealSeriesNoLen), u"8"_s);
        read("download path with its backslash", u"[Atktran]\nDownloadFilePath=C:\\dl\\\n"_s, FIELD(GetDownloadFilePath()), u"C:\\dl\\"_s);
        reread("user profile", FIELD(GetDownloadFilePath()), u"[Atktran]\nDownloadFilePath=%USERPROFILE%\\a;%USERPROFILE%"_s, QString(), u"~\\a;~\\ ~\\a;~\\"_s);
    }

    void values()
    {
        QFETCH(QString, ini);
        QFETCH(QString, second);
        QFETCH(Getter, field);
        QFETCH(QString, expected);
        QFETCH(QString, message);
        qputenv("USERPROFILE", "/home/teller");
        Station station;
        const auto cfg = station.load(ini);
        QCOMPARE(station.complete, message.isEmpty());
        QCOMPARE(station.shown, station.complete ? 0 : 1);
        QString actual = field(*cfg);
        if (!second.isNull()) {
            writeFile(station.filePath(u"seal.ini"_s), (second + NoDatabase).toUtf8());
            QVERIFY(cfg->GetParameter());
            actual += u' ' + field(*cfg);
        }
        QCOMPARE(actual, expected.replace(u'~', u"/home/teller"_s));
        if (!station.complete) {
            QCOMPARE(station.box.caption, u"系统提示"_s);
            QVERIFY2(station.box.text.startsWith(u"初始化系统参数错误！"_s) && station.box.text.contains(message),
                     qPrintable(station.box.text));
            QCOMPARE(station.box.buttonTexts, QStringList{u"确定"_s}); // though no translation is loaded
        }
    }

    void doubleSealQuotaFromDatabase_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QString>("quotaLine");
        QTest::addColumn<QString>("departId");
        QTest::addColumn<double>("quota");

        for (const Engine engine : quarry::test::allEngines()) {
            const auto row = [&](const char *tag, const QString &quotaLine, const QString &departId,
                                 double quota) {
                QTest::newRow(quarry::test::engineTag(engine, tag).constData()) << engine << quotaLine << departId << quota;
            };
            row("own branch", QString(), u"110201"_s, 80000.0);
            row("-1 in the file", u"DoubleSealQuota=-1"_s, u"110301"_s, 50000.0);
            row("only an invalid row", QString(), u"120101"_s, 0.0);
            row("quote in DEPARTID", QString(), u"9' or '1'='1"_s, 0.0);
        }
    }

    void doubleSealQuotaFromDatabase()
    {
        QFETCH(Engine, engine);
        QFETCH(QString, quotaLine);
        QFETCH(QString, departId);
        QUARRY_REQUIRE_ENGINE(engine);
        Station station;
        quarry::test::TestDatabase local(engine, station.path(), u"LOCAL"_s);
        QVERIFY2(local.isValid(), qPrintable(local.errorText()));
        QVERIFY2(local.execute(
            u"CREATE TABLE parameter (ParamEnName VARCHAR(40), ParamCnName VARCHAR(60), "
            u"RegionName VARCHAR(40), wdh VARCHAR(20), ParamValue VARCHAR(255), IsValid INTEGER);\n"
            u"INSERT INTO parameter VALUES ('DoubleSealQuota', '', 'SBMK', '1102%', '80000', 1), "
            u"('DoubleSealQuota', '', 'SBMK', '1103%', '50000', 1), "
            u"('DoubleSealQuota', '', 'SBMK', '12%', '90000', 0), "
            u"('DoubleSealQuota', '', 'HYADM', '%', '1', 1), "
            u"('YYRate', '', 'SBMK', '%', '85', 1);\n"_s),
            qPrintable(local.errorText()));

        const auto cfg = station.load(
            u"[DATABASESET]\nBASEMODE=%1\nODBCDRIVER=%2\n[SQLSERVER]\nSERVER=%3\nLOCALBASE=%4\n"
            u"[BANKPARAM]\nDEPARTID=%5\n[SBMK]\n%6\n"_s.arg(local.baseMode(), local.odbcDriver(),
                local.server(), local.databaseName(), departId, quotaLine));
        QTEST(cfg->DoubleSealQuota, "quota");
    }

    void program_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("convertIni"); // CONVERT.INI in the system folder, none when empty
        QTest::addColumn<QByteArray>("beside");     // seal.ini beside the library, none when empty
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("output");  // in standard output or standard error
        QTest::addColumn<QString>("changed"); // the one station file the program changes
        QTest::addColumn<QByteArray>("after"); // and its bytes afterwards

        const auto row = [](const char *tag, const QStringList &arguments, int status,
                            const QString &output, const QString &changed = {},
                            const QByteArray &after = {}) {
            QTest::newRow(tag) << arguments << QByteArray() << QByteArray() << status << output << changed << after;
        };
        row("dump", {u"dump"_s}, 0, u"[DATABASESET] BASEMODE = ACCESS  （缺省值）\n"_s);
        row("get", {u"get"_s, u"USER"_s, u"SubMode"_s}, 0, u"信贷建库机\n"_s);
        // CONVERT.INI names the station's seal.ini (found without regard to case), but one beside
        // the library wins.
        const QByteArray convertIni = "[system]\ninitcfg=BAD.INI\n";
        QTest::newRow("named by CONVERT.INI") << QStringList{u"get"_s, u"BANKPARAM"_s, u"TOTALACCTYPE"_s} << convertIni << QByteArray() << 0 << u"x\n"_s << QString() << QByteArray();
        QTest::newRow("beside the library") << QStringList{u"get"_s, u"USER"_s, u"MODE"_s} << convertIni << QByteArray("[USER]\nMODE=Refol\n") << 0 << u"Refol\n"_s << QString() << QByteArray();
        row("set says where", {u"set"_s, u"USER"_s, u"MODE"_s, u"Refol"_s}, 0, u"SEAL.INI：[USER] MODE=Refol"_s, u"SEAL.INI"_s, SealIniText.toUtf8().replace("Nelos", "Refol"));
        row("get without key", {u"get"_s, u"USER"_s}, 2, u"get USER"_s);
        row("set without its arguments", {u"set"_s}, 2, u"命令未知或参数不对：set"_s);
        row("failed read", {u"--ini"_s, u"bad.ini"_s, u"dump"_s}, 1, u"系统提示: 初始化系统参数错误！"_s);
        row("dump writes the pattern count back", {u"--ini"_s, u"zero.ini"_s, u"dump"_s}, 0, u"TOTALACCNO 原为 0，读取时已把 TOTALACCNO=1 写入文件"_s, u"zero.ini"_s, "[BANKPARAM]\nTOTALACCNO=1\n[SBMK]\nDoubleSealQuota=0\n");
        // A value that would not read back as written is not written, and the tool says why.
        row("set with a blank", {u"set"_s, u"USER"_s, u"MODE"_s, u"Refol "_s}, 2, u"结尾是空格或制表符"_s);
        row("directory given", {u"--ini"_s, u"folder"_s, u"dump"_s}, 2, u"folder 是文件夹"_s);
        QTest::newRow("no station") << QStringList{u"get"_s, u"USER"_s, u"MODE"_s} << QByteArray("[SYSTEM]\nINITCFG=MISSING.INI\n") << QByteArray() << 1 << u"MISSING.INI"_s << QString() << QByteArray();
        QTest::newRow("dump, no station") << QStringList{u"dump"_s} << QByteArray("[SYSTEM]\nINITCFG=MISSING.INI\n") << QByteArray() << 1 << u"MISSING.INI 不存在，每个值都取缺省值"_s << QString() << QByteArray();
        QTest::newRow("unreadable seal.ini") << QStringList{u"get"_s, u"USER"_s, u"MODE"_s} << QByteArray("[SYSTEM]\nINITCFG=folder\n") << QByteArray() << 2 << u"无法读取 "_s << QString() << QByteArray();
        // The station's databases are not there: one fault among the findings.
        row("check", {u"check"_s}, 1, u"错误  验印数据库 SEAL 打不开：数据库文件 "_s);
        row("check for tools", {u"--ini"_s, u"bad.ini"_s, u"check"_s, u"--json"_s}, 1, u"\"subject\": \"[BANKPARAM] TOTALACCTYPE\""_s);
        row("check writes nothing back", {u"--ini"_s, u"zero.ini"_s, u"check"_s}, 1, u"zero.ini（指定的文件）"_s);
        row("JSON of another command", {u"dump"_s, u"--json"_s}, 2, u"参数不对：dump"_s);
        row("unknown option, in Qt's own words", {u"--bogus"_s, u"dump"_s}, 2, u"未知选项“bogus”"_s);
    }

    void program()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, convertIni);
        QFETCH(QByteArray, beside);
        QFETCH(QString, output);
        QFETCH(QString, changed);
        QFETCH(QByteArray, after);
        Station station;
        const QHash<QString, QByteArray> files{
            {u"SEAL.INI"_s, SealIniText.toUtf8()},
            {u"bad.ini"_s, "[BANKPARAM]\nTOTALACCTYPE=x\n"},
            {u"zero.ini"_s, "[BANKPARAM]\nTOTALACCNO=0\n[SBMK]\nDoubleSealQuota=0\n"},
        };
        for (auto file = files.cbegin(); file != files.cend(); ++file)
            writeFile(station.filePath(file.key()), file.value());
        if (!convertIni.isEmpty())
            writeFile(station.filePath(u"CONVERT.INI"_s), convertIni);
        QVERIFY(QDir(station.path()).mkdir(u"folder"_s));
        // Beside the copy: whatever lies beside the built library makes no difference.
        const QString besideFile = m_library.filePath(u"seal.ini"_s);
        const auto removeBeside = qScopeGuard([&besideFile] { QFile::remove(besideFile); });
        if (!beside.isEmpty())
            writeFile(besideFile, beside);

        QProcess program;
        program.setWorkingDirectory(station.path());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"LD_LIBRARY_PATH"_s, m_library.path());
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(QUARRY_CONFIG_PROGRAM), arguments);
        QVERIFY2(program.waitForFinished(quarry::test::WaitLimit), "quarry-config ended");
        QTEST(program.exitCode(), "status");
        const QString out =
            QString::fromUtf8(program.readAllStandardOutput() + program.readAllStandardError());
        QVERIFY2(out.contains(output), qPrintable(out));
        for (auto file = files.cbegin(); file != files.cend(); ++file)
            QCOMPARE(readFile(station.filePath(file.key())), file.key() == changed ? after : file.value());
    }
};

QTEST_MAIN(TestCSysCfg)
#include "tst_csyscfg.moc"
