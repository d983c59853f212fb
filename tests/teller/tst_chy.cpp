#include "BranchWalk.h"
#include "SampleStation.h"

#include "platform/DbConnection.h"
#include "teller/CHy.h"

#include <quarry/QuarryError.h>

#include <QFile>
#include <QTest>

#include <functional>
#include <map>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using quarry::CHy;
using quarry::QuarryError;
using quarry::test::Engine;
using quarry::test::SampleStation;

// A lookup as the dialogs call it, its answer as text.
using Lookup = std::function<QString(CHy &)>;
Q_DECLARE_METATYPE(Lookup)

namespace {

// Tellers and branches the sample bank does not have: permission strings of
// every shape, a teller whose type was deleted, one lent to another branch,
// and branch tables gone wrong (a cycle C1 -> C2 -> C3 -> C1, and D3 under
// both D1 and D2), apart from the head office's tree.
const QString Anomalies = uR"(
INSERT INTO HYCONFIG (HYTYPEID, HYTYPENAME, HYQX, HYLEVEL, ALLOWNUM, WDH, ISVISIBLE) VALUES
    (9001, '测试主管', '001', 1, 1, '110000', 1),
    (9002, '测试柜员', '110', 1, 1, '110000', 1),
    (9003, '短权限', '1', 1, 1, '110000', 1);
INSERT INTO HY (HYDH, HYNAME, HYMM, HYTYPEID, HYGROUPID, WDH, QYSJ, ZXSJ, PWDEXPDATE,
                ISAUDIT, OPHYDH, OpType, IfConfirm) VALUES
    ('9000', '无类型', 'x', 9999, 1, '110101', '2005-01-01', '3000-01-01', '2010-06-30', 1, '0001', 0, 1),
    ('9001', '借调员', 'x', 2, 1, '110101', '2005-01-01', '2009-12-31', '2010-06-30', 0, '0001', 3, 0),
    ('9011', '主管甲', 'x', 9001, 1, '110000', '2005-01-01', '3000-01-01', '2010-06-30', 1, '0001', 0, 1),
    ('9012', '柜员乙', 'x', 9002, 1, '110000', '2005-01-01', '3000-01-01', '2010-06-30', 1, '0001', 0, 1),
    ('9013', '柜员丙', 'x', 9003, 1, '110000', '2005-01-01', '3000-01-01', '2010-06-30', 1, '0001', 0, 1);
INSERT INTO WDDZ (WDH, WDNAME, IPADDR, MASTERNO) VALUES
    ('C1', '环一', '', 'C3'), ('C2', '环二', '', 'C1'), ('C3', '环三', '', 'C2'),
    ('D0', '双一', '', 'X0'), ('D1', '双二', '', 'D0'), ('D2', '双三', '', 'D0'),
    ('D3', '双四', '', 'D1'), ('D3', '双四', '', 'D2'), ('D4', '双五', '', 'D3');
)"_s;

// The branches of 110101: three outlets with two agencies each.
const QString Branch110101 = u"'110101','11010101','1101010101','1101010102','11010102',"
                             "'1101010201','1101010202','11010103','1101010301','1101010302',"_s;

void addEngineColumn()
{
    QTest::addColumn<Engine>("engine");
}

// One row per engine for each row that add() makes.
template<typename Add>
void forEachEngine(Add add)
{
    for (Engine engine : quarry::test::allEngines())
        add(engine, quarry::test::engineName(engine));
}

std::optional<QuarryError> errorOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const QuarryError &error) {
        return error;
    }
    return std::nullopt;
}

QString boolText(bool value)
{
    return value ? u"True"_s : u"False"_s;
}

} // namespace

class TestCHy : public QObject
{
    Q_OBJECT

private slots:
    void lookups_data();
    void lookups();
    void belongedWdhs_data();
    void belongedWdhs();
    void belongedWdhsOfTheHeadOffice_data();
    void belongedWdhsOfTheHeadOffice();
    void hyInfo_data();
    void hyInfo();
    void isFenhang_data();
    void isFenhang();
    void databaseDown_data();
    void databaseDown();
    void noHeadOffice_data();
    void noHeadOffice();

private:
    SampleStation &station(Engine engine);

    std::map<Engine, std::unique_ptr<SampleStation>> m_stations;
};

// The sample station of the row's engine with the anomalies, seal.ini written
// with extra lines, the error log empty.
#define STATION(name, extra)                                                                      \
    QFETCH(Engine, engine);                                                                       \
    QUARRY_REQUIRE_ENGINE(engine);                                                                \
    SampleStation &name = station(engine);                                                        \
    QVERIFY2(name.isValid(), qPrintable(name.errorText()));                                       \
    name.writeIni(extra);                                                                         \
    name.clearErrorLog()

// Filled once per engine: the lookups only read.
SampleStation &TestCHy::station(Engine engine)
{
    auto &station = m_stations[engine];
    if (!station) {
        station = std::make_unique<SampleStation>(engine);
        station->changeSeal(Anomalies);
    }
    return *station;
}

void TestCHy::lookups_data()
{
    addEngineColumn();
    QTest::addColumn<Lookup>("lookup");
    QTest::addColumn<QString>("expected"); // "error: <source>|<description>" for an error
    QTest::addColumn<bool>("logged");

    const auto name = [](const QString &wdh) {
        return Lookup([=](CHy &hy) { return hy.GetWdNameByWdh(wdh); });
    };
    const auto hyWdh = [](const QString &hydh) {
        return Lookup([=](CHy &hy) { return hy.GetHyWDH(hydh); });
    };
    const auto hyName = [](const QString &hydh) {
        return Lookup([=](CHy &hy) { return hy.GetHynameByHydh(hydh); });
    };
    const auto exists = [](const QString &wdh) {
        return Lookup([=](CHy &hy) { return QString::number(hy.IsWdhExist(wdh)); });
    };
    const auto manager = [](const QString &hydh) {
        return Lookup([=](CHy &hy) { return boolText(hy.isManager(hydh)); });
    };
    const auto powerGroup = [](const QString &type) {
        return Lookup([=](CHy &hy) { return boolText(hy.isPowerGroup(type)); });
    };
    const auto branch = [](const QString &wdh) {
        return Lookup([=](CHy &hy) { return hy.GetBranchWdh(wdh); });
    };

    forEachEngine([&](Engine engine, const QString &e) {
        const auto row = [&](const char *tag, const Lookup &lookup, const QString &expected,
                             bool logged = false) {
            QTest::addRow("%s/%s", qPrintable(e), tag) << engine << lookup << expected << logged;
        };
        row("branch name", name(u"110101"_s), u"东城第1支行"_s);
        row("branch name, unknown", name(u"999999"_s), QString());
        row("branch name, quote", name(u"110101' or '1'='1"_s), QString());
        row("teller's branch is its type's", hyWdh(u"9001"_s), u"110000"_s);
        row("teller's branch, sample clerk", hyWdh(u"0011"_s), u"110101"_s);
        row("teller whose type was deleted", hyWdh(u"9000"_s), QString());
        row("teller unknown", hyWdh(u"nobody"_s), QString());
        row("teller name", hyName(u"0002"_s), u"李建国"_s);
        row("teller name, unknown", hyName(u"0'--"_s), QString());
        row("branch exists", exists(u"1101010101"_s), u"1"_s);
        row("branch does not exist", exists(u"999"_s), u"0"_s);
        row("branch exists, quote", exists(u"' or WDH<>'"_s), u"0"_s);
        row("manager 1111111111", manager(u"0001"_s), u"True"_s);
        row("manager 1100000000", manager(u"0003"_s), u"False"_s);
        row("manager 001", manager(u"9011"_s), u"True"_s);
        row("manager 110", manager(u"9012"_s), u"False"_s);
        row("manager 1", manager(u"9013"_s), u"False"_s);
        row("manager, type deleted", manager(u"9000"_s), u"error: CHy|isManager : 行员不存在权限!"_s);
        row("manager, unknown", manager(u"x' or '1'='1"_s), u"error: CHy|isManager : 行员不存在权限!"_s);
        row("power group 001", powerGroup(u"测试主管"_s), u"True"_s);
        row("power group 110", powerGroup(u"测试柜员"_s), u"False"_s);
        row("power group 1", powerGroup(u"短权限"_s), u"False"_s);
        row("power group, unknown", powerGroup(u"无此组"_s), u"error: CHy|isPowerGroup : 行员组不存在权限!"_s);
        row("branch of the head office", branch(u"110000"_s), u"110000"_s);
        row("branch of a first-level branch", branch(u"110100"_s), u"110100"_s);
        row("branch of an agency", branch(u"1101010302"_s), u"110100"_s);
        row("branch of an unknown code", branch(u"999"_s),
            u"error: CHy::GetBranchWdh()|网点号999不在网点对照表中"_s);
        row("branch above an unknown parent", branch(u"D1"_s),
            u"error: CHy::GetBranchWdh()|网点号X0不在网点对照表中"_s);
        row("branch in a cycle", branch(u"C1"_s),
            u"error: CHy::GetBranchWdh()|网点对照表中网点C1的上级关系构成循环，找不到它所属的分行！"_s, true);
    });
}

void TestCHy::lookups()
{
    QFETCH(Lookup, lookup);
    QFETCH(QString, expected);
    QFETCH(bool, logged);
    STATION(sample, {});
    CHy hy;
    QString answer;
    if (const auto error = errorOf([&] { answer = lookup(hy); }))
        answer = u"error: "_s + error->source() + u'|' + error->description();
    QCOMPARE(answer, expected);
    const QString log = sample.errorLog();
    QCOMPARE(log.count(u'\n'), logged ? 1 : 0);
    if (logged)
        QVERIFY2(log.contains(u" 2000 "_s + expected.section(u'|', 1)), qPrintable(log));
}

void TestCHy::belongedWdhs_data()
{
    addEngineColumn();
    QTest::addColumn<QStringList>("roots"); // collected one after the other
    QTest::addColumn<QString>("list");
    QTest::addColumn<QString>("result"); // of the last call
    QTest::addColumn<QString>("logged"); // part of the error log, "" for none

    forEachEngine([](Engine engine, const QString &e) {
        const auto row = [&](const char *tag) -> QTestData & {
            return QTest::addRow("%s/%s", qPrintable(e), tag) << engine;
        };
        row("agency without sub-branches") << QStringList{u"1101010101"_s} << u"'1101010101',"_s
                                           << u"'1101010101'"_s << QString();
        row("unknown branch") << QStringList{u"999"_s} << u"'999',"_s << u"'999'"_s << QString();
        row("sub-branch") << QStringList{u"110101"_s} << Branch110101 << QString() << QString();
        row("list runs on") << QStringList{u"1101010101"_s, u"110101"_s}
                            << u"'1101010101',"_s + Branch110101 << QString() << QString();
        row("quote in the code") << QStringList{u"1' or '1'='1"_s} << u"'1'' or ''1''=''1',"_s
                                 << u"'1'' or ''1''=''1'"_s << QString();
        row("cycle") << QStringList{u"C1"_s} << u"'C1','C2','C3',"_s << QString() << u"网点C1"_s;
        row("two parents") << QStringList{u"D0"_s} << u"'D0','D1','D3','D4','D2',"_s << QString()
                           << u"网点D3"_s;
    });
}

void TestCHy::belongedWdhs()
{
    QFETCH(QStringList, roots);
    QFETCH(QString, list);
    QFETCH(QString, result);
    QFETCH(QString, logged);
    STATION(sample, {});
    CHy hy;
    QString last;
    for (const QString &root : std::as_const(roots))
        last = hy.GetBelongedWDHS(root);
    QCOMPARE(hy.belongedWdhs(), list);
    QCOMPARE(last, result);
    if (logged.isEmpty()) {
        QCOMPARE(sample.errorLog(), QString());
    } else {
        const QStringList lines = sample.errorLog().split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines.first().startsWith(u"CHy.GetBelongedWDHS() 2000 "_s), qPrintable(lines.first()));
        QVERIFY2(lines.first().contains(logged), qPrintable(lines.first()));
    }
    hy.clearBelongedWdhs();
    QCOMPARE(hy.GetBelongedWDHS(u"1101010101"_s), u"'1101010101'"_s);
    QCOMPARE(hy.belongedWdhs(), u"'1101010101',"_s);
}

void TestCHy::belongedWdhsOfTheHeadOffice_data()
{
    addEngineColumn();
    forEachEngine([](Engine engine, const QString &e) { QTest::newRow(qPrintable(e)) << engine; });
}

// The whole sample tree in the order of the one-query-per-branch walk.
void TestCHy::belongedWdhsOfTheHeadOffice()
{
    STATION(sample, {});
    quarry::DbConnection connection;
    sample.seal().prepare(connection);
    connection.open(sample.seal().connectionString(), u"BISOL"_s, u"KORMANTE"_s, true);
    QVERIFY2(connection.isOpen(), qPrintable(connection.errorText()));
    const QString expected = quarry::test::belongedWdhsOneQueryPerBranch(connection, u"110000"_s);
    QCOMPARE(expected.count(u','), 399);

    CHy hy;
    QCOMPARE(hy.GetBelongedWDHS(u"110000"_s), QString());
    QCOMPARE(hy.belongedWdhs(), expected);
}

void TestCHy::hyInfo_data()
{
    addEngineColumn();
    QTest::addColumn<QString>("hydh");
    QTest::addColumn<bool>("includeDate");
    QTest::addColumn<bool>("ifPwdExpire");
    // hydh, name, rights, type id, type name, branch, allowed number, start, end, password
    // expiry, audit flag, change kind, confirmation; empty when there is no such teller.
    QTest::addColumn<QStringList>("record");
    forEachEngine([](Engine engine, const QString &e) {
        const auto row = [&](const char *tag) -> QTestData & {
            return QTest::addRow("%s/%s", qPrintable(e), tag) << engine;
        };
        row("plain") << u"9001"_s << false << false
                     << QStringList{u"9001"_s, u"借调员"_s, u"1011111100"_s, u"2"_s, u"总行主管"_s,
                                    u"110101"_s, u"5"_s, u""_s, u""_s, u""_s, u"0"_s, u"3"_s, u"0"_s};
        row("with dates") << u"9001"_s << true << false
                          << QStringList{u"9001"_s, u"借调员"_s, u"1011111100"_s, u"2"_s, u"总行主管"_s,
                                         u"110101"_s, u"5"_s, u"2005-01-01"_s, u"2009-12-31"_s, u""_s,
                                         u"0"_s, u"3"_s, u"0"_s};
        row("with expiry") << u"0002"_s << false << true
                           << QStringList{u"0002"_s, u"李建国"_s, u"1011111100"_s, u"2"_s, u"总行主管"_s,
                                          u"110000"_s, u"5"_s, u""_s, u""_s, u"2010-06-30"_s, u"1"_s,
                                          u"0"_s, u"1"_s};
        row("type deleted") << u"9000"_s << true << true << QStringList();
        row("unknown") << u"' or ''='"_s << true << true << QStringList();
    });
}

void TestCHy::hyInfo()
{
    QFETCH(QString, hydh);
    QFETCH(bool, includeDate);
    QFETCH(bool, ifPwdExpire);
    QFETCH(QStringList, record);
    STATION(sample, {});
    CHy hy;
    hy.IncludeDate = includeDate;
    hy.IfPwdExpire = ifPwdExpire;
    QCOMPARE(hy.GetHyInfoByHydh(hydh), !record.isEmpty());
    if (record.isEmpty()) {
        QCOMPARE(hy.hydh, QString());
        return;
    }
    QCOMPARE((QStringList{hy.hydh, hy.Hyname, hy.Hyqx, QString::number(hy.HyTypeId), hy.HyTypeName,
                          hy.Wdh, QString::number(hy.Allownum), hy.qysj, hy.Zxsj, hy.PwdExpDate,
                          QString::number(hy.IsAudit), QString::number(hy.GetOpType),
                          QString::number(hy.GetIfConfirm)}),
             record);
}

void TestCHy::isFenhang_data()
{
    addEngineColumn();
    QTest::addColumn<QByteArray>("departId");
    QTest::addColumn<bool>("fenhang");
    forEachEngine([](Engine engine, const QString &e) {
        const auto row = [&](const char *tag) -> QTestData & {
            return QTest::addRow("%s/%s", qPrintable(e), tag) << engine;
        };
        row("first-level branch") << QByteArray("110300") << true;
        row("sub-branch") << QByteArray("110301") << false;
        row("head office") << QByteArray("110000") << false;
        row("unknown") << QByteArray("777") << false;
    });
}

void TestCHy::isFenhang()
{
    QFETCH(QByteArray, departId);
    QFETCH(bool, fenhang);
    STATION(sample, "[BANKPARAM]\nDEPARTID=" + departId + '\n');
    CHy hy;
    QCOMPARE(hy.isFenhang(), fenhang);
}

void TestCHy::databaseDown_data()
{
    addEngineColumn();
    QTest::addColumn<Lookup>("lookup");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("prefix"); // of the description, before the connection's error
    forEachEngine([](Engine engine, const QString &e) {
        const auto row = [&](const char *tag, const QString &source, const QString &prefix,
                             const Lookup &lookup) {
            QTest::addRow("%s/%s", qPrintable(e), tag) << engine << lookup << source << prefix;
        };
        row("GetWdNameByWdh", u"CHy.GetWdNameByWdh()"_s, u"CHy.GetWdNameByWdh["_s,
            [](CHy &hy) { return hy.GetWdNameByWdh(u"110101"_s); });
        row("GetHyWDH", u"CHy.GetHyWDH()"_s, u"CHy.GetHyWDH["_s,
            [](CHy &hy) { return hy.GetHyWDH(u"0011"_s); });
        row("isFenhang", u"CHy"_s, u"isFenhang["_s, [](CHy &hy) { return boolText(hy.isFenhang()); });
        row("isManager", u"CHy"_s, u"isFenhang["_s,
            [](CHy &hy) { return boolText(hy.isManager(u"0001"_s)); });
        row("isPowerGroup", u"CHy"_s, u"isPowerGroup["_s,
            [](CHy &hy) { return boolText(hy.isPowerGroup(u"总行主管"_s)); });
        row("GetBelongedWDHS", u"CHy.GetBelongedWDHS()"_s, u"CHy.GetBelongedWDHS["_s,
            [](CHy &hy) { return hy.GetBelongedWDHS(u"110000"_s); });
        row("GetBranchWdh", u"CHy::GetBranchWdh()"_s, u"CHy::GetBranchWdh["_s,
            [](CHy &hy) { return hy.GetBranchWdh(u"110101"_s); });
        row("IsWdhExist", QString(), u"CHy.IsWdhExist["_s,
            [](CHy &hy) { return QString::number(hy.IsWdhExist(u"110101"_s)); });
    });
}

// A closed port (an embedded database file that is missing): the lookup
// fails at once with the connection's error, and the error is logged.
void TestCHy::databaseDown()
{
    QFETCH(Engine, engine);
    QFETCH(Lookup, lookup);
    QFETCH(QString, source);
    QFETCH(QString, prefix);
    QUARRY_REQUIRE_ENGINE(engine);
    SampleStation down(engine, SampleStation::Contents::Empty);
    QVERIFY2(down.isValid(), qPrintable(down.errorText()));
    // The embedded database names no server: the default one is named.
    const QString server = engine == Engine::Sqlite ? u"SealServer"_s : u"127.0.0.1:1"_s;
    down.writeIni({}, server);
    if (engine == Engine::Sqlite)
        QVERIFY(QFile::remove(down.folder() + u"/SEAL.db"_s));

    CHy hy; // needs no database until asked
    QCOMPARE(down.errorLog(), QString());
    QString answer;
    const auto error = errorOf([&] { answer = lookup(hy); });
    const QString description = prefix + u"连接数据库"_s + server + u" 失败！"_s;
    if (source.isEmpty()) {
        QVERIFY(!error);
        QCOMPARE(answer, u"-1"_s);
    } else {
        QVERIFY(error);
        QCOMPARE(error->number(), QuarryError::DataError);
        QCOMPARE(error->source(), source);
        QVERIFY2(error->description().startsWith(description), error->what());
        QVERIFY2(error->description().endsWith(u']'), error->what());
    }
    const QString log = down.errorLog();
    QCOMPARE(log.count(u'\n'), 1);
    QVERIFY2(log.contains(u" 2000 "_s + description), qPrintable(log));
}

void TestCHy::noHeadOffice_data()
{
    addEngineColumn();
    forEachEngine([](Engine engine, const QString &e) { QTest::newRow(qPrintable(e)) << engine; });
}

void TestCHy::noHeadOffice()
{
    QFETCH(Engine, engine);
    QUARRY_REQUIRE_ENGINE(engine);
    SampleStation empty(engine, SampleStation::Contents::Empty);
    QVERIFY2(empty.isValid(), qPrintable(empty.errorText()));
    QVERIFY2(empty.seal().execute(u"CREATE TABLE WDDZ (WDH VARCHAR(20), WDNAME VARCHAR(60), "
                                    "IPADDR VARCHAR(40), MASTERNO VARCHAR(20));\n"
                                    "INSERT INTO WDDZ VALUES ('1', 'x', '', '2');"_s),
             qPrintable(empty.seal().errorText()));
    empty.writeIni();
    CHy hy;
    const auto error = errorOf([&] { hy.GetBranchWdh(u"1"_s); });
    QVERIFY(error);
    QCOMPARE(error->source(), u"CHy::GetBranchWdh()"_s);
    QCOMPARE(error->description(), u"网点对照表中没有总行！"_s);
}

QTEST_GUILESS_MAIN(TestCHy)
#include "tst_chy.moc"
