#include "TestDatabases.h"

#include <quarry/CSysCfg.h>
#include <quarry/QuarryError.h>

#include "platform/Paths.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using quarry::CSysCfg;
using quarry::QuarryError;
using quarry::test::Engine;

namespace {

const QString SealIni = u"SEAL.INI"_s;
// Keeps GetParameter away from the parameter table where a test is not about it.
const QString NoDatabase = u"\n[SBMK]\nDoubleSealQuota=0\n"_s;

// Answers the message box that the configuration shows, keeping what it said.
class MessageBoxWatcher : public QObject
{
public:
    MessageBoxWatcher()
    {
        connect(&m_timer, &QTimer::timeout, this, &MessageBoxWatcher::answer);
        m_timer.start(0);
    }

    QString caption;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    int shown = 0;

private:
    void answer()
    {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        caption = box->windowTitle();
        text = box->text();
        icon = box->icon();
        ++shown;
        box->accept();
    }

    QTimer m_timer;
};

// A station folder, which is also the system INI folder of the test.
class Station
{
public:
    Station() { qputenv("QUARRY_SYSTEM_DIR", m_dir.path().toUtf8()); }

    // The message boxes shown while the station exists (answered at once, so
    // that a failing read never blocks a test).
    const MessageBoxWatcher &messages() const { return m_messages; }

    QString path(const QString &name) const { return m_dir.filePath(name); }
    QString folder() const { return m_dir.path(); }

    void write(const QString &name, const QString &text) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text.toUtf8());
    }

    // seal.ini with the text (and no database quota unless the text has an
    // [SBMK] section of its own), read by a new object.
    std::unique_ptr<CSysCfg> load(const QString &text, bool *complete = nullptr) const
    {
        write(u"seal.ini"_s,
            text.contains(u"[SBMK]"_s, Qt::CaseInsensitive) ? text : text + NoDatabase);
        auto cfg = std::make_unique<CSysCfg>();
        cfg->IniPath = path(u"seal.ini"_s);
        const bool read = cfg->GetParameter();
        if (complete)
            *complete = read;
        return cfg;
    }

private:
    QTemporaryDir m_dir;
    MessageBoxWatcher m_messages;
};

template<typename T>
QString text(const T &value)
{
    return QVariant::fromValue(value).toString();
}

#define FIELD(name) {QStringLiteral(#name), [](const CSysCfg &c) { return text(c.name); }}

// The public fields the tables below look at, by name.
QString field(const CSysCfg &cfg, const QString &name)
{
    static const QHash<QString, std::function<QString(const CSysCfg &)>> fields = {
        FIELD(BASEMODE), FIELD(ODBCDRIVER), FIELD(SERVER), FIELD(CurLocalBase),
        FIELD(DepartIdLength), FIELD(DEPARTID), FIELD(AreaId), FIELD(SHDH), FIELD(WDHLEN),
        FIELD(WDHMAXLEN), FIELD(WDHMINLEN), FIELD(IFQUERYCENTRE2), FIELD(WdhBeginInAccno),
        FIELD(MaxBoundAccNum), FIELD(UPDBPATH), FIELD(PCNO), FIELD(MAINPORT), FIELD(HOSTBASEMODE),
        FIELD(HOSTSERVER), FIELD(PRINTLINES), FIELD(ONLINEHOST), FIELD(ONLINEPORT),
        FIELD(RECEIVEPATH), FIELD(USER), FIELD(HYDHLEN), FIELD(TRANPORT), FIELD(SFZHLEN),
        FIELD(PrintYjkNoFontSize), FIELD(IfGetAccnoByF8), FIELD(UPLOADTIME), FIELD(UploadPastDays),
        FIELD(GSHOST), FIELD(GSPORT), FIELD(ChequeBatchNoLength),
        FIELD(PrintSeriesNoCurrenty_FirstSeal), FIELD(YYZCS), FIELD(MoneyLen),
        FIELD(DoubleSealQuota), FIELD(YJKLENGTH), FIELD(YjkInputLength), FIELD(gzenable),
        FIELD(JcManualSealEnable), FIELD(MODE), FIELD(QueryHintMode), FIELD(FontSize),
        FIELD(CurrentX), FIELD(HostIp), FIELD(MaxSealCount), FIELD(PrintReceiptCurrentY),
        FIELD(AccNoMaxLen), FIELD(TOTALBANKACCNO),
    };
    return fields.value(name)(cfg);
}

} // namespace

class TestCSysCfg : public QObject
{
    Q_OBJECT

private slots:
    void locating_data();
    void locating();
    void besideTheComponentWins();
    void keys_data();
    void keys();
    void conversions_data();
    void conversions();
    void failureKeepsValuesRead();
    void lists_data();
    void lists();
    void listGetters();
    void emptyAccountPatternsAreWrittenBack();
    void profileCodes_data();
    void profileCodes();
    void modeCodesKeepUnknown_data();
    void modeCodesKeepUnknown();
    void lazyGetters_data();
    void lazyGetters();
    void downloadFilePath_data();
    void downloadFilePath();
    void localQueryString_data();
    void localQueryString();
    void doubleSealQuotaByPztype_data();
    void doubleSealQuotaByPztype();
    void doubleSealQuotaFromDatabase_data();
    void doubleSealQuotaFromDatabase();
    void connectFailure();
    void readAndWrite();
    void parameterLog();
    void program_data();
    void program();
};

void TestCSysCfg::locating_data()
{
    QTest::addColumn<QString>("convertIni"); // "" for none
    QTest::addColumn<QString>("fileName");   // where seal.ini is written
    QTest::addColumn<QString>("expected");   // IniPath, relative to the station

    QTest::newRow("bare SEAL.INI") << QString() << u"seal.ini"_s << u"seal.ini"_s;
    QTest::newRow("relative INITCFG") << u"[SYSTEM]\nINITCFG=branch.ini\n"_s << u"branch.ini"_s
                                      << u"branch.ini"_s;
    QTest::newRow("name in another case") << u"[system]\ninitcfg=BRANCH.INI\n"_s
                                          << u"Branch.ini"_s << u"Branch.ini"_s;
    QTest::newRow("no INITCFG key") << u"[SYSTEM]\nOTHER=x.ini\n"_s << u"SEAL.INI"_s
                                    << u"SEAL.INI"_s;
}

void TestCSysCfg::locating()
{
    QFETCH(QString, convertIni);
    QFETCH(QString, fileName);
    QFETCH(QString, expected);
    Station station;
    if (!convertIni.isEmpty())
        station.write(u"CONVERT.INI"_s, convertIni);
    station.write(fileName, u"[USER]\nMODE=Nelos\n"_s + NoDatabase);

    CSysCfg cfg;
    QCOMPARE(QFileInfo(cfg.IniPath).canonicalFilePath(),
             QFileInfo(station.path(expected)).canonicalFilePath());
    QVERIFY(cfg.GetParameter());
    QCOMPARE(cfg.ProfileCode, qint16(22));
}

void TestCSysCfg::besideTheComponentWins()
{
    const QString beside = QDir(quarry::paths::componentDir()).filePath(u"seal.ini"_s);
    if (QFile::exists(beside))
        QSKIP("a seal.ini is installed beside the library");
    Station station;
    station.write(u"CONVERT.INI"_s, u"[SYSTEM]\nINITCFG=branch.ini\n"_s);
    station.write(u"branch.ini"_s, u"[USER]\nMODE=Nelos\n"_s);
    {
        QFile file(beside);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[USER]\nMODE=Refol\n");
    }
    const auto removeBeside = qScopeGuard([&beside] { QFile::remove(beside); });

    CSysCfg cfg;
    QCOMPARE(cfg.IniPath, beside);
    QCOMPARE(cfg.GetINIData(u"USER"_s, u"MODE"_s, QString(), SealIni), u"Refol"_s);
}

void TestCSysCfg::keys_data()
{
    QTest::addColumn<QString>("ini");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("expected");

    const QList<std::pair<const char *, const char *>> defaults = {
        {"BASEMODE", "ACCESS"}, {"ODBCDRIVER", "FreeTDS"}, {"SERVER", "SealServer"},
        {"CurLocalBase", "LOCAL"}, {"DepartIdLength", "8"}, {"DEPARTID", "1"}, {"AreaId", "000"},
        {"WDHMAXLEN", "6"}, {"WDHMINLEN", "6"}, {"WdhBeginInAccno", "1"},
        {"MaxBoundAccNum", "100"}, {"UPDBPATH", "C:\\SEAL\\STORE"}, {"PCNO", "1"},
        {"MAINPORT", "1600"}, {"HOSTBASEMODE", "ACCESS"}, {"PRINTLINES", "60"},
        {"ONLINEPORT", "1600"}, {"RECEIVEPATH", "C:\\RECEIVE"}, {"USER", ""}, {"HYDHLEN", "4"},
        {"TRANPORT", "1700"}, {"SFZHLEN", "18"}, {"IfGetAccnoByF8", "1"}, {"UPLOADTIME", "20:00"},
        {"GSPORT", "8080"}, {"ChequeBatchNoLength", "1"}, {"YYZCS", "1000"}, {"YJKLENGTH", "8"},
        {"YjkInputLength", "8"}, {"MODE", "普通银行"}, {"QueryHintMode", "0"},
        {"AccNoMaxLen", "12"}, {"TOTALBANKACCNO", "1"}, {"PrintYjkNoFontSize", "0"},
        {"PrintSeriesNoCurrenty_FirstSeal", "0"}, {"MaxSealCount", "0"},
    };
    for (const auto &[name, value] : defaults) {
        QTest::addRow("default %s", name)
            << QString() << QString::fromUtf8(name) << QString::fromUtf8(value);
    }

    const auto row = [](const char *tag, const QString &ini, const QString &name,
                        const QString &expected) {
        QTest::newRow(tag) << ini << name << expected;
    };
    row("dialect", u"[DATABASESET]\nBASEMODE=MYSQL\n"_s, u"BASEMODE"_s, u"MYSQL"_s);
    row("host dialect follows", u"[DATABASESET]\nBASEMODE=SYBASE\n"_s, u"HOSTBASEMODE"_s,
        u"SYBASE"_s);
    row("current base", u"[SQLSERVER]\nLOCALBASE=LOC2\n"_s, u"CurLocalBase"_s, u"LOC2"_s);
    row("branch id", u"[BANKPARAM]\nDEPARTID=110101\n"_s, u"DEPARTID"_s, u"110101"_s);
    row("WDHMAXLEN follows WDHLEN", u"[BANKPARAM]\nWDHLEN=8\n"_s, u"WDHMAXLEN"_s, u"8"_s);
    row("WDHMINLEN own value", u"[BANKPARAM]\nWDHLEN=8\nWDHMINLEN=4\n"_s, u"WDHMINLEN"_s, u"4"_s);
    row("IFQUERYCENTRE read twice", u"[XTCHX]\nIFQUERYCENTRE=1\n"_s, u"IFQUERYCENTRE2"_s, u"1"_s);
    row("HOSTSERVER follows HOST", u"[NETPARAM]\nHOST=10.0.0.9\n"_s, u"HOSTSERVER"_s,
        u"10.0.0.9"_s);
    row("GSHOST follows HOST", u"[NETPARAM]\nHOST=10.0.0.9\n"_s, u"GSHOST"_s, u"10.0.0.9"_s);
    row("online host", u"[ONLINEPARAM]\nHOST=on1\n[NETPARAM]\nHOST=net\n"_s, u"ONLINEHOST"_s,
        u"on1"_s);
    row("print lines", u"[BANKPARAM]\nPRINTLINES=40\n"_s, u"PRINTLINES"_s, u"40"_s);
    row("transfer user", u"[AUTOTRAN]\nUSER=op\n"_s, u"USER"_s, u"op"_s);
    row("yjk print off keeps position",
        u"[sbmk]\nIfPrintYjkNo=0\nPrintYjkNoFontSize=20\nDoubleSealQuota=0\n"_s,
        u"PrintYjkNoFontSize"_s, u"0"_s);
    row("yjk print on", u"[sbmk]\nIfPrintYjkNo=1\nDoubleSealQuota=0\n"_s, u"PrintYjkNoFontSize"_s,
        u"12"_s);
    row("series numbers on", u"[SBMK]\nGenerateSealSeriesNo=1\nDoubleSealQuota=0\n"_s,
        u"PrintSeriesNoCurrenty_FirstSeal"_s, u"50"_s);
    row("upload days", u"[UPLOADTOFTP]\nUploadPastDays=7\n"_s, u"UploadPastDays"_s, u"7"_s);
    row("lower-case sbmk is SBMK", u"[sbmk]\nYYZCS=5\nDoubleSealQuota=0\n"_s, u"YYZCS"_s, u"5"_s);
    row("quota from the file", u"[SBMK]\nDoubleSealQuota=20000.5\n"_s, u"DoubleSealQuota"_s,
        u"20000.5"_s);
    row("input length follows", u"[YJK]\nYJKLENGTH=10\n"_s, u"YjkInputLength"_s, u"10"_s);
    row("seal flags", u"[gzseal]\ngzenable=1\n[JC]\nJcManualSealEnable=1\n"_s, u"gzenable"_s,
        u"1"_s);
    row("hint mode", u"[USER]\nQueryHintMode=2\n"_s, u"QueryHintMode"_s, u"2"_s);
    row("blanks trimmed", u"[BANKPARAM]\nSHDH=   12 34   \n"_s, u"SHDH"_s, u"12 34"_s);
    row("empty value is the default", u"[BANKPARAM]\nDEPARTID=\n"_s, u"DEPARTID"_s, u"1"_s);
    row("key names without case", u"[bankparam]\ndepartid=7\n"_s, u"DEPARTID"_s, u"7"_s);
    row("value of 300 characters", u"[BANKPARAM]\nSHDH="_s + QString(300, u'x') + u'\n',
        u"SHDH"_s, QString(255, u'x'));
    row("Chinese value", u"[USER]\nMODE=日志输出\n"_s, u"MODE"_s, u"日志输出"_s);
    row("Hopas keys", u"[USER]\nMODE=Hopas\n[Hopas]\nCurrentX=250\n"_s, u"CurrentX"_s, u"250"_s);
    row("Hopas default", u"[USER]\nMODE=Hopas\n"_s, u"FontSize"_s, u"12"_s);
    row("Gugal keys", u"[USER]\nMODE=Gugal\n"_s, u"HostIp"_s, u"localhost"_s);
    row("Zacen keys", u"[USER]\nMODE=Zacen\n[Zacen]\nMaxSealCount=5\n"_s, u"MaxSealCount"_s,
        u"5"_s);
    row("Zacen keys of another profile", u"[USER]\nMODE=Gugal\n[Zacen]\nMaxSealCount=5\n"_s,
        u"MaxSealCount"_s, u"0"_s);
    row("Gofos keys", u"[USER]\nMODE=Gofos\n"_s, u"PrintReceiptCurrentY"_s, u"100"_s);
}

void TestCSysCfg::keys()
{
    QFETCH(QString, ini);
    QFETCH(QString, field);
    QFETCH(QString, expected);
    Station station;
    bool complete = false;
    const auto cfg = station.load(ini, &complete);
    QVERIFY(complete);
    QCOMPARE(::field(*cfg, field), expected);
}

void TestCSysCfg::conversions_data()
{
    QTest::addColumn<QString>("ini");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("expected"); // "" when the read fails
    QTest::addColumn<QString>("message");  // what the failure message names

    const auto ok = [](const char *tag, const QString &ini, const QString &name,
                       const QString &expected) {
        QTest::newRow(tag) << ini << name << expected << QString();
    };
    const auto failure = [](const char *tag, const QString &ini, const QString &message) {
        QTest::newRow(tag) << ini << QString() << QString() << message;
    };
    // Lenient: the leading number, 0 without one, half to even.
    ok("leading number", u"[SBMK]\nMoneyLen=12abc\nDoubleSealQuota=0\n"_s, u"MoneyLen"_s, u"12"_s);
    ok("no number", u"[SBMK]\nMoneyLen=abc\nDoubleSealQuota=0\n"_s, u"MoneyLen"_s, u"0"_s);
    ok("blanks inside", u"[SBMK]\nMoneyLen=1 6\nDoubleSealQuota=0\n"_s, u"MoneyLen"_s, u"16"_s);
    ok("half down to even", u"[HYADM]\nSFZHLEN=2.5\n"_s, u"SFZHLEN"_s, u"2"_s);
    ok("half up to even", u"[HYADM]\nSFZHLEN=3.5\n"_s, u"SFZHLEN"_s, u"4"_s);
    ok("negative half", u"[HYADM]\nSFZHLEN=-2.5\n"_s, u"SFZHLEN"_s, u"-2"_s);
    ok("exponent", u"[HYADM]\nSFZHLEN=1e3\n"_s, u"SFZHLEN"_s, u"1000"_s);
    ok("Integer maximum", u"[HYADM]\nSFZHLEN=32767\n"_s, u"SFZHLEN"_s, u"32767"_s);
    ok("Integer minimum", u"[HYADM]\nSFZHLEN=-32768\n"_s, u"SFZHLEN"_s, u"-32768"_s);
    ok("Long beyond Integer", u"[HYADM]\nTRANPORT=70000\n"_s, u"TRANPORT"_s, u"70000"_s);
    ok("Long maximum", u"[HYADM]\nTRANPORT=2147483647\n"_s, u"TRANPORT"_s, u"2147483647"_s);
    ok("Double", u"[SBMK]\nDoubleSealQuota=1234.5yuan\n"_s, u"DoubleSealQuota"_s, u"1234.5"_s);
    failure("Integer overflow", u"[HYADM]\nSFZHLEN=32768\n"_s, u"SFZHLEN=32768"_s);
    failure("Integer overflow by rounding", u"[HYADM]\nSFZHLEN=32767.5\n"_s, u"SFZHLEN=32767.5"_s);
    failure("Long overflow", u"[HYADM]\nTRANPORT=2147483648\n"_s, u"TRANPORT=2147483648"_s);
    // Strict counts: the whole text must be a number.
    ok("count", u"[HYADM]\nHYDHLEN=6\n"_s, u"HYDHLEN"_s, u"6"_s);
    ok("count half to even", u"[HYADM]\nHYDHLEN=4.5\n"_s, u"HYDHLEN"_s, u"4"_s);
    failure("count with letters", u"[HYADM]\nHYDHLEN=6x\n"_s, u"HYDHLEN=6x"_s);
    failure("count without number", u"[BANKPARAM]\nTOTALACCNO=abc\n"_s, u"TOTALACCNO=abc"_s);
    failure("count overflow", u"[BANKPARAM]\nPRINTLINES=40000\n"_s, u"PRINTLINES=40000"_s);
    failure("no account types", u"[BANKPARAM]\nTOTALACCTYPE=0\n"_s, u"TOTALACCTYPE=0"_s);
    ok("negative account patterns", u"[BANKPARAM]\nTOTALACCNO=-2\n"_s, u"AccNoMaxLen"_s, u"0"_s);
}

void TestCSysCfg::conversions()
{
    QFETCH(QString, ini);
    QFETCH(QString, field);
    QFETCH(QString, expected);
    QFETCH(QString, message);
    Station station;
    const MessageBoxWatcher &watcher = station.messages();
    bool complete = false;
    const auto cfg = station.load(ini, &complete);
    QCOMPARE(complete, message.isEmpty());
    if (complete) {
        QCOMPARE(watcher.shown, 0);
        QCOMPARE(::field(*cfg, field), expected);
        return;
    }
    QCOMPARE(watcher.shown, 1);
    QCOMPARE(watcher.caption, u"系统提示"_s);
    QCOMPARE(watcher.icon, QMessageBox::Information);
    QVERIFY2(watcher.text.startsWith(u"初始化系统参数错误！"_s), qPrintable(watcher.text));
    QVERIFY2(watcher.text.contains(message), qPrintable(watcher.text));
}

void TestCSysCfg::failureKeepsValuesRead()
{
    Station station;
    bool complete = true;
    const auto cfg = station.load(
        u"[DATABASESET]\nBASEMODE=MYSQL\n[BANKPARAM]\nTOTALACCNO=2\nACCNOTYPE(1)=9??\n"
        u"TOTALACCTYPE=0\n[USER]\nMODE=Nelos\n"_s,
        &complete);
    QVERIFY(!complete);
    QCOMPARE(cfg->BASEMODE, u"MYSQL"_s);
    QCOMPARE(cfg->ACCNOTYPE, QStringList({u"201?????????"_s, u"9??"_s}));
    QCOMPARE(cfg->MODE, QString());
    QCOMPARE(cfg->ProfileCode, qint16(0));
}

void TestCSysCfg::lists_data()
{
    QTest::addColumn<QString>("ini");
    QTest::addColumn<QStringList>("accounts");
    QTest::addColumn<QStringList>("bankAccounts");
    QTest::addColumn<int>("maxLength");

    const QString pattern = u"201?????????"_s;
    QTest::newRow("defaults") << QString() << QStringList{pattern} << QStringList{pattern} << 12;
    QTest::newRow("bank list copies the account list")
        << u"[BANKPARAM]\nTOTALACCNO=3\nACCNOTYPE(0)=11??\nACCNOTYPE(2)=9*\n"_s
        << QStringList{u"11??"_s, pattern, u"9*"_s} << QStringList{u"11??"_s, pattern, u"9*"_s}
        << 12;
    QTest::newRow("bank list of its own")
        << u"[BANKPARAM]\nTOTALACCNO=1\nACCNOTYPE(0)=11??\nTOTALBANKACCNO=2\n"
           u"BANKACCNOTYPE(0)=7??\n"_s
        << QStringList{u"11??"_s} << QStringList{u"7??"_s, pattern} << 4;
    QTest::newRow("no bank patterns") << u"[BANKPARAM]\nTOTALBANKACCNO=0\n"_s
                                      << QStringList{pattern} << QStringList() << 12;
    QTest::newRow("longest pattern")
        << u"[BANKPARAM]\nTOTALACCNO=2\nACCNOTYPE(0)=11??????????????\nACCNOTYPE(1)=11??\n"_s
        << QStringList{u"11??????????????"_s, u"11??"_s}
        << QStringList{u"11??????????????"_s, u"11??"_s} << 16;
}

void TestCSysCfg::lists()
{
    QFETCH(QString, ini);
    QFETCH(QStringList, accounts);
    QFETCH(QStringList, bankAccounts);
    QFETCH(int, maxLength);
    Station station;
    const auto cfg = station.load(ini);
    QCOMPARE(cfg->GetAccNoType(), accounts);
    for (qint16 i = 0; i <= accounts.size(); ++i) {
        QCOMPARE(cfg->GetAccNo(i), accounts.value(i));
        QCOMPARE(cfg->GetAccNoLen(i), qint16(accounts.value(i).size()));
    }
    for (qint16 i = 0; i <= bankAccounts.size(); ++i)
        QCOMPARE(cfg->GetBankAccNo(i), bankAccounts.value(i));
    QCOMPARE(cfg->AccNoMaxLen, qint16(maxLength));
}

void TestCSysCfg::listGetters()
{
    Station station;
    const auto cfg = station.load(
        u"[BANKPARAM]\nTOTALACCTYPE=2\nACCTYPE(0)=基本户\nTotalAccUse=1\nAccUse(0)=结算\n"
        u"TotalAccState=0\nAccState(0)=ignored\nTotalCurrencyId=1\nCurrencyId(0)=01\n"
        u"[SBMK]\nTotalCheckUsefulLifeKind=2\nCheckUsefulLifeKind(0)=10\n"
        u"CheckUsefulLifeKind(1)=30\n"
        u"DoubleSealQuota=0\n"_s);
    QCOMPARE(cfg->GetAccType(0), u"基本户"_s);
    QCOMPARE(cfg->GetAccType(1), QString());
    QCOMPARE(cfg->GetAccType(2), QString());
    QCOMPARE(cfg->GetAccUse(0), u"结算"_s);
    QCOMPARE(cfg->GetAccState(0), QString());
    QCOMPARE(cfg->GetCurrencyId(0), u"01"_s);
    QCOMPARE(cfg->GetCheckUsefulLifeKinds(1), qint16(30));
    QCOMPARE(cfg->GetCheckUsefulLifeKinds(2), qint16(0));
    try {
        cfg->GetAccNo(-1);
        QFAIL("a negative index is an error");
    } catch (const QuarryError &error) {
        QCOMPARE(error.number(), QuarryError::SubscriptOutOfRange);
    }
}

void TestCSysCfg::emptyAccountPatternsAreWrittenBack()
{
    Station station;
    const auto cfg = station.load(u"[BANKPARAM]\nTOTALACCNO=0\n"_s);
    QCOMPARE(cfg->TOTALACCNO, qint16(1));
    QCOMPARE(cfg->GetAccNoType(), QStringList{u"201?????????"_s});
    QCOMPARE(cfg->GetINIData(u"BANKPARAM"_s, u"TOTALACCNO"_s, QString(), SealIni), u"1"_s);
}

void TestCSysCfg::profileCodes_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("code");

    QTest::newRow("default") << QString() << 0;
    QTest::newRow("普通银行") << u"普通银行"_s << 0;
    QTest::newRow("银行1") << u"银行1"_s << 1;
    QTest::newRow("银行6") << u"银行6"_s << 6;
    QTest::newRow("Fecus") << u"Fecus"_s << 7;
    QTest::newRow("Refol") << u"Refol"_s << 20;
    QTest::newRow("Nelos") << u"Nelos"_s << 22;
    QTest::newRow("日志输出") << u"日志输出"_s << 26;
    QTest::newRow("Bunar") << u"Bunar"_s << 38;
    QTest::newRow("Hilur") << u"Hilur"_s << 39;
    QTest::newRow("Talas") << u"Talas"_s << 45;
    QTest::newRow("Tecis") << u"Tecis"_s << 54;
    QTest::newRow("Gugul") << u"Gugul"_s << 55;
    QTest::newRow("Zacen") << u"Zacen"_s << 58;
    QTest::newRow("Lumun") << u"Lumun"_s << 61;
    QTest::newRow("Vefos") << u"Vefos"_s << 65;
    QTest::newRow("unknown") << u"Nobank"_s << 0;
    QTest::newRow("other case") << u"refol"_s << 0;
}

void TestCSysCfg::profileCodes()
{
    QFETCH(QString, mode);
    QFETCH(int, code);
    Station station;
    const auto cfg = station.load(u"[USER]\nMODE="_s + mode + u'\n');
    QCOMPARE(cfg->ProfileCode, qint16(code));
}

void TestCSysCfg::modeCodesKeepUnknown_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<int>("expected");

    QTest::newRow("UpperMode Letus") << u"UpperMode"_s << u"Letus"_s << u"普通网点"_s << 0;
    QTest::newRow("UpperMode unknown keeps") << u"UpperMode"_s << u"Letus"_s << u"Other"_s << 1;
    QTest::newRow("UpperMode unknown, new object")
        << u"UpperMode"_s << u"Other"_s << u"Other"_s << 0;
    QTest::newRow("SubMode Bivol") << u"SubMode"_s << u"信贷建库机"_s << u"Bivol"_s << 4;
    QTest::newRow("SubMode unknown keeps") << u"SubMode"_s << u"Teril"_s << u"Other"_s << 2;
    QTest::newRow("SubMode Gugul") << u"SubMode"_s << u"Other"_s << u"Gugul"_s << 3;
}

void TestCSysCfg::modeCodesKeepUnknown()
{
    QFETCH(QString, key);
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(int, expected);
    Station station;
    const auto cfg = station.load(u"[USER]\n"_s + key + u'=' + first + u'\n');
    station.write(u"seal.ini"_s, u"[USER]\n"_s + key + u'=' + second + u'\n' + NoDatabase);
    QVERIFY(cfg->GetParameter());
    QCOMPARE(key == u"UpperMode"_s ? cfg->UpperModeCode : cfg->SubModeCode, qint16(expected));
}

void TestCSysCfg::lazyGetters_data()
{
    QTest::addColumn<QString>("getter");
    QTest::addColumn<QString>("first");    // the file before the first call
    QTest::addColumn<QString>("second");   // the file before the second call
    QTest::addColumn<QString>("expected"); // the results of both calls

    QTest::newRow("PreChequeNoLength default")
        << u"PreChequeNoLength"_s << QString() << u"[Cukal]\nPreChequeNoLength=6\n"_s << u"10 10"_s;
    QTest::newRow("PreChequeNoLength mark re-read")
        << u"PreChequeNoLength"_s << u"[Cukal]\nPreChequeNoLength=-1\n"_s
        << u"[Cukal]\nPreChequeNoLength=6\n"_s << u"-1 6"_s;
    QTest::newRow("ParamHostIp from HOST")
        << u"ParamHostIp"_s << u"[NETPARAM]\nHOST=h1\n"_s << u"[BANKPARAM]\nPARAMHOSTIP=h2\n"_s
        << u"h1 h1"_s;
    QTest::newRow("ParamHostIp empty re-read")
        << u"ParamHostIp"_s << QString() << u"[BANKPARAM]\nPARAMHOSTIP=h2\n"_s << u" h2"_s;
    QTest::newRow("IfWriteAutoManualResult") << u"IfWriteAutoManualResult"_s
                                             << u"[LogCen]\nIfWriteAutoManualResult=1\n"_s
                                             << QString() << u"1 1"_s;
    QTest::newRow("HyConfigEnable default") << u"HyConfigEnable"_s << QString()
                                            << u"[HYADM]\nHyConfigEnable=0\n"_s << u"1 1"_s;
    QTest::newRow("PrintLogMode mark re-read")
        << u"PrintLogMode"_s << u"[rzgl]\nPrintLogMode=-100\n"_s << u"[rzgl]\nPrintLogMode=2\n"_s
        << u"-100 2"_s;
    QTest::newRow("Talas font size") << u"TalasGsYjkPrintFontSize"_s << QString()
                                     << u"[Talas]\nGsYjkPrintFontSize=9\n"_s << u"12 12"_s;
    QTest::newRow("Talas zero re-read") << u"TalasGsYjkPrintX"_s << u"[Talas]\nGsYjkPrintX=0\n"_s
                                        << QString() << u"0 200"_s;
    QTest::newRow("Talas date") << u"TalasGsYjkPrintDateY"_s << u"[Talas]\nGsYjkPrintDateY=480\n"_s
                                << QString() << u"480 480"_s;
    QTest::newRow("DownloadFilePath empty re-read")
        << u"DownloadFilePath"_s << QString() << u"[Atktran]\nDownloadFilePath=d:\\in\n"_s
        << u" d:\\in\\"_s;
}

void TestCSysCfg::lazyGetters()
{
    QFETCH(QString, getter);
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, expected);
    using Getter = std::function<QString(CSysCfg &)>;
    const QHash<QString, Getter> getters = {
        {u"PreChequeNoLength"_s, [](CSysCfg &c) { return text(c.GetPreChequeNoLength()); }},
        {u"ParamHostIp"_s, [](CSysCfg &c) { return c.GetParamHostIp(); }},
        {u"IfWriteAutoManualResult"_s,
            [](CSysCfg &c) { return text(c.GetIfWriteAutoManualResult()); }},
        {u"HyConfigEnable"_s, [](CSysCfg &c) { return text(c.GetHyConfigEnable()); }},
        {u"PrintLogMode"_s, [](CSysCfg &c) { return text(c.GetPrintLogMode()); }},
        {u"TalasGsYjkPrintFontSize"_s,
            [](CSysCfg &c) { return text(c.GetTalasGsYjkPrintFontSize()); }},
        {u"TalasGsYjkPrintX"_s, [](CSysCfg &c) { return text(c.GetTalasGsYjkPrintX()); }},
        {u"TalasGsYjkPrintDateY"_s, [](CSysCfg &c) { return text(c.GetTalasGsYjkPrintDateY()); }},
        {u"DownloadFilePath"_s, [](CSysCfg &c) { return c.GetDownloadFilePath(); }},
    };
    const Getter get = getters.value(getter);
    Station station;
    const auto cfg = station.load(first);
    const QString before = get(*cfg);
    station.write(u"seal.ini"_s, second);
    QCOMPARE(before + u' ' + get(*cfg), expected);
}

void TestCSysCfg::downloadFilePath_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected"); // with P for the user profile

    QTest::newRow("profile") << u"%USERPROFILE%\\down"_s << u"P\\down\\"_s;
    QTest::newRow("closing backslash kept") << u"d:\\in\\"_s << u"d:\\in\\"_s;
    QTest::newRow("twice") << u"%USERPROFILE%\\a;%USERPROFILE%"_s << u"P\\a;P\\"_s;
    QTest::newRow("other case not replaced") << u"%userprofile%\\x"_s << u"%userprofile%\\x\\"_s;
    QTest::newRow("empty") << QString() << QString();
}

void TestCSysCfg::downloadFilePath()
{
    QFETCH(QString, value);
    QFETCH(QString, expected);
    const QByteArray saved = qgetenv("USERPROFILE");
    qputenv("USERPROFILE", "/home/teller");
    Station station;
    const auto cfg = station.load(u"[Atktran]\nDownloadFilePath="_s + value + u'\n');
    qputenv("USERPROFILE", saved);
    QCOMPARE(cfg->UserProfile, u"/home/teller"_s);
    QCOMPARE(cfg->GetDownloadFilePath(), expected.replace(u'P', u"/home/teller"_s));
}

void TestCSysCfg::localQueryString_data()
{
    QTest::addColumn<QString>("ini");
    QTest::addColumn<QString>("expected");

    QTest::newRow("default") << QString() << u"ACCNO like '201_________' "_s;
    QTest::newRow("two patterns")
        << u"[BANKPARAM]\nTOTALACCNO=2\nACCNOTYPE(0)=11*\nACCNOTYPE(1)=22??*3*\n"_s
        << u"ACCNO like '11%' or ACCNO like '22__%3%' "_s;
}

void TestCSysCfg::localQueryString()
{
    QFETCH(QString, ini);
    QFETCH(QString, expected);
    Station station;
    QCOMPARE(station.load(ini)->GetLocalQueryString(), expected);
}

void TestCSysCfg::doubleSealQuotaByPztype_data()
{
    QTest::addColumn<int>("pzType");
    QTest::addColumn<double>("quota");

    QTest::newRow("first special") << 2 << 200000.0;
    QTest::newRow("second special") << 3 << 100000.5;
    QTest::newRow("not special") << 4 << 50000.0;
    QTest::newRow("type 0 of an empty entry") << 0 << 7.0;
}

void TestCSysCfg::doubleSealQuotaByPztype()
{
    QFETCH(int, pzType);
    QFETCH(double, quota);
    Station station;
    const auto cfg = station.load(
        u"[SBMK]\nDoubleSealQuota=50000\nTotalSpecialDoubleSealQuota=4\n"
        u"SpecialDoubleSealPztype(0)=2\nSpecialDoubleSealQuota(0)=200000\n"
        u"SpecialDoubleSealPztype(1)=3\nSpecialDoubleSealQuota(1)=100000.5\n"
        u"SpecialDoubleSealPztype(2)=2\nSpecialDoubleSealQuota(2)=1\n"
        u"SpecialDoubleSealQuota(3)=7\n"_s);
    QCOMPARE(cfg->GetDoubleSealQuotaByPztype(qint16(pzType)), quota);
}

void TestCSysCfg::doubleSealQuotaFromDatabase_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QString>("quotaLine");
    QTest::addColumn<QString>("departId");
    QTest::addColumn<double>("quota");

    for (const Engine engine : quarry::test::allEngines()) {
        const QByteArray name = quarry::test::engineName(engine).toUtf8();
        QTest::addRow("%s: own branch", name.constData()) << engine << QString() << u"110201"_s
                                                           << 80000.0;
        QTest::addRow("%s: -1 in the file", name.constData())
            << engine << u"DoubleSealQuota=-1"_s << u"110301"_s << 50000.0;
        QTest::addRow("%s: only an invalid row", name.constData())
            << engine << QString() << u"120101"_s << 0.0;
        QTest::addRow("%s: quote in DEPARTID", name.constData())
            << engine << QString() << u"9' or '1'='1"_s << 0.0;
    }
}

void TestCSysCfg::doubleSealQuotaFromDatabase()
{
    QFETCH(Engine, engine);
    QFETCH(QString, quotaLine);
    QFETCH(QString, departId);
    QFETCH(double, quota);
    QUARRY_REQUIRE_ENGINE(engine);
    Station station;
    quarry::test::TestDatabase local(engine, station.folder(), u"LOCAL"_s);
    QVERIFY2(local.isValid(), qPrintable(local.errorText()));
    QVERIFY2(
        local.execute(
            u"CREATE TABLE parameter (ParamEnName VARCHAR(40), ParamCnName VARCHAR(60), "
            u"RegionName VARCHAR(40), wdh VARCHAR(20), ParamValue VARCHAR(255), IsValid INTEGER);\n"
            u"INSERT INTO parameter VALUES ('DoubleSealQuota', '', 'SBMK', '1102%', '80000', 1);\n"
            u"INSERT INTO parameter VALUES ('DoubleSealQuota', '', 'SBMK', '1103%', '50000', 1);\n"
            u"INSERT INTO parameter VALUES ('DoubleSealQuota', '', 'SBMK', '12%', '90000', 0);\n"
            u"INSERT INTO parameter VALUES ('DoubleSealQuota', '', 'HYADM', '%', '1', 1);\n"
            u"INSERT INTO parameter VALUES ('YYRate', '', 'SBMK', '%', '85', 1);\n"_s),
        qPrintable(local.errorText()));

    const auto cfg = station.load(
        u"[DATABASESET]\nBASEMODE=%1\nODBCDRIVER=%2\n[SQLSERVER]\nSERVER=%3\nLOCALBASE=%4\n"
        u"[BANKPARAM]\nDEPARTID=%5\n[SBMK]\n%6\n"_s.arg(local.baseMode(), local.odbcDriver(),
                                                          local.server(), local.databaseName(),
                                                          departId, quotaLine));
    QCOMPARE(cfg->DoubleSealQuota, quota);
}

void TestCSysCfg::connectFailure()
{
    Station station;
    const auto cfg = station.load(u"[SQLSERVER]\nSERVER=NoServer\nLOCALBASE=NOPE\n"_s);
    try {
        cfg->ConnectDb();
        QFAIL("opening a missing database must fail");
    } catch (const QuarryError &error) {
        QCOMPARE(error.number(), 2000);
        QCOMPARE(error.source(), u"CSysCfg.ConnectDb()"_s);
        QVERIFY2(error.description().startsWith(u"连接数据库NoServer 失败！"_s),
                 qPrintable(error.description()));
        QVERIFY(error.description().size() > u"连接数据库NoServer 失败！"_s.size());
    }
}

void TestCSysCfg::readAndWrite()
{
    Station station;
    const auto cfg = station.load(u"[LOGIN]\nCURHY=0011\n"_s);
    QCOMPARE(cfg->CurHy(), u"0011"_s);
    cfg->SetIniData(u"LOGIN"_s, u"CURHY"_s, u"0042"_s, u"seal.ini"_s);
    QCOMPARE(cfg->CurHy(), u"0042"_s);
    QCOMPARE(cfg->GetINIData(u"login"_s, u"curhy"_s, u"x"_s, u"Seal.Ini"_s), u"0042"_s);
    QCOMPARE(cfg->GetINIData(u"LOGIN"_s, u"NONE"_s, u"  dflt  "_s, SealIni), u"dflt"_s);

    cfg->SetIniData(u"A"_s, u"B"_s, u"other file"_s, u"other.ini"_s);
    QCOMPARE(cfg->GetINIData(u"A"_s, u"B"_s, QString(), u"other.ini"_s), u"other file"_s);
    QVERIFY(QFile::exists(station.path(u"other.ini"_s)));
}

void TestCSysCfg::parameterLog()
{
    Station station;
    const auto cfg = station.load(u"[DATABASESET]\nBASEMODE=MYSQL\nODBCDRIVER=\n"_s);
    const QList<quarry::IniRead> &log = cfg->parameterLog();
    QCOMPARE(log.at(0).key, u"BASEMODE"_s);
    QCOMPARE(log.at(0).value, u"MYSQL"_s);
    QVERIFY(!log.at(0).defaulted);
    QCOMPARE(log.at(1).key, u"ODBCDRIVER"_s);
    QCOMPARE(log.at(1).value, u"FreeTDS"_s);
    QVERIFY(log.at(1).defaulted);
    QCOMPARE(log.at(2).section, u"SQLSERVER"_s);
    QCOMPARE(log.constLast().key, u"QueryHintMode"_s);
    // The two print keys of BANKPARAM sit between two NETPARAM keys.
    const auto zhHost = std::find_if(log.cbegin(), log.cend(), [](const quarry::IniRead &read) {
        return read.key == u"ZHHOST"_s;
    });
    QVERIFY(zhHost != log.cend() && log.cend() - zhHost > 3);
    QCOMPARE((zhHost + 1)->section + (zhHost + 1)->key, u"BANKPARAMPRINTLINES"_s);
    QCOMPARE((zhHost + 3)->key, u"HOSTBASEMODE"_s);

    const qsizetype count = log.size();
    QVERIFY(cfg->GetParameter());
    QCOMPARE(cfg->parameterLog().size(), count);
}

void TestCSysCfg::program_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("succeeds");
    QTest::addColumn<QString>("output"); // contained in standard output or, on failure, error

    QTest::newRow("dump") << QStringList{u"dump"_s} << true << u"[USER] MODE = Nelos\n"_s;
    QTest::newRow("dump default") << QStringList{u"dump"_s} << true
                                  << u"[DATABASESET] BASEMODE = ACCESS  (default)\n"_s;
    QTest::newRow("dump codes") << QStringList{u"dump"_s} << true << u"ProfileCode = 22\n"_s;
    QTest::newRow("dump lists") << QStringList{u"dump"_s} << true
                                << u"ACCNOTYPE(0) = 201?????????\n"_s;
    QTest::newRow("get") << QStringList{u"get"_s, u"USER"_s, u"SubMode"_s} << true
                         << u"信贷建库机\n"_s;
    QTest::newRow("get default") << QStringList{u"get"_s, u"X"_s, u"Y"_s, u"d"_s} << true
                                 << u"d\n"_s;
    QTest::newRow("set") << QStringList{u"set"_s, u"USER"_s, u"MODE"_s, u"Refol"_s} << true
                         << QString();
    QTest::newRow("unknown command") << QStringList{u"show"_s} << false << u"show"_s;
    QTest::newRow("no command") << QStringList() << false << u"no command"_s;
    QTest::newRow("get without key") << QStringList{u"get"_s, u"USER"_s} << false
                                     << u"get USER"_s;
    QTest::newRow("missing --ini file")
        << QStringList{u"--ini"_s, u"/nonexistent/seal.ini"_s, u"dump"_s} << false
        << u"no such file: /nonexistent/seal.ini"_s;
    QTest::newRow("failed read")
        << QStringList{u"--ini"_s, u"bad.ini"_s, u"dump"_s} << false
        << u"系统提示: 初始化系统参数错误！"_s;
}

void TestCSysCfg::program()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, succeeds);
    QFETCH(QString, output);
    Station station;
    station.write(u"SEAL.INI"_s, u"[USER]\nMODE=Nelos\nSubMode=信贷建库机\n"_s + NoDatabase);
    station.write(u"bad.ini"_s, u"[BANKPARAM]\nTOTALACCTYPE=x\n"_s);

    QProcess program;
    program.setWorkingDirectory(station.folder());
    program.start(QStringLiteral(QUARRY_CONFIG_PROGRAM), arguments);
    QVERIFY(program.waitForFinished());
    const QString out = QString::fromUtf8(program.readAllStandardOutput());
    const QString err = QString::fromUtf8(program.readAllStandardError());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode() == 0, succeeds);
    QVERIFY2((succeeds ? out : err).contains(output), qPrintable(out + err));
    if (succeeds && arguments.value(0) == u"get"_s)
        QCOMPARE(out, output);

    if (arguments.value(0) == u"set"_s) {
        CSysCfg cfg;
        QCOMPARE(cfg.GetINIData(arguments.at(1), arguments.at(2), QString(), SealIni),
                 arguments.at(3));
        QVERIFY(cfg.GetParameter());
        QCOMPARE(cfg.ProfileCode, qint16(20));
        QCOMPARE(cfg.SubModeCode, qint16(1));
    }
}

QTEST_MAIN(TestCSysCfg)
#include "tst_csyscfg.moc"
