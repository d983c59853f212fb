#include "BranchWalk.h"
#include "SampleStation.h"

#include "platform/DbConnection.h"
#include "teller/BranchTree.h"
#include "teller/CHy.h"

#include <quarry/QuarryError.h>

#include <QFile>
#include <QTest>

#include <functional>
#include <map>
#include <memory>

using namespace Qt::StringLiterals;
using quarry::CHy;
using quarry::test::Engine;
using quarry::test::SampleStation;

// A lookup as the dialogs call it, its answer as text.
using Lookup = std::function<QString(CHy &)>;
Q_DECLARE_METATYPE(Lookup)

namespace {

// Tellers and branches the sample bank does not have: permission strings of
// every shape, a teller whose type was deleted, one lent to another branch,
// and branch tables gone wrong (a cycle C1 -> C2 -> C3 -> C1, and D3 under
// both D1 and D2), apart from the head office's tree. D5 names its parent as
// only MariaDB matches it, without regard to case and trailing blanks.
const QString Anomalies = uR"(
INSERT INTO HYCONFIG (HYTYPEID, HYTYPENAME, HYQX) VALUES
    (9001, '测试主管', '001'), (9002, '测试柜员', '110'), (9003, '短权限', '1');
INSERT INTO HY (HYDH, HYTYPEID, WDH) VALUES
    ('9000', 9999, '110101'), ('9011', 9001, '110000'), ('9012', 9002, '110000'), ('9013', 9003, '110000');
INSERT INTO HY (HYDH, HYNAME, HYTYPEID, WDH, QYSJ, ZXSJ, PWDEXPDATE, ISAUDIT, OpType, IfConfirm) VALUES
    ('9001', '借调员', 2, '110101', '2005-01-01', '2009-12-31', '2010-06-30', 0, 3, 0);
INSERT INTO WDDZ (WDH, MASTERNO) VALUES ('C1', 'C3'), ('C2', 'C1'), ('C3', 'C2'),
    ('D0', 'X0'), ('D1', 'D0'), ('D2', 'D0'), ('D3', 'D1'), ('D3', 'D2'), ('D4', 'D3'), ('D5', 'd4 ');
)"_s;

// A branch table with more sub-branches under E0 (E1, E2, ...) than one query
// asks about, in the table's order, not in the order of their codes, and F1
// under the last of them.
constexpr int WideLevel = 501;
const QString WideBranchTable = uR"(
CREATE TABLE WDDZ (WDH VARCHAR(20), MASTERNO VARCHAR(20));
INSERT INTO WDDZ (WDH, MASTERNO)
WITH RECURSIVE seq (c) AS (SELECT 1 UNION ALL SELECT c + 1 FROM seq WHERE c < %1)
SELECT REPLACE('EC', 'C', seq.c), 'E0' FROM seq ORDER BY seq.c;
INSERT INTO WDDZ (WDH, MASTERNO) VALUES ('F1', 'E%1');
)"_s.arg(WideLevel);

// The expected answer of the whole-tree lookup: the list of the one-query-per-branch walk.
const QString Walk = u"walk"_s;

// The lookup's answer on a new CHy, or "error: <source>|<description>".
QString answerOf(const Lookup &lookup)
{
    CHy hy;
    try {
        return lookup(hy);
    } catch (const quarry::QuarryError &error) {
        return u"error: "_s + error.source() + u'|' + error.description();
    }
}

QString boolText(bool value)
{
    return value ? u"True"_s : u"False"_s;
}

// The branch lists of roots collected one after the other: "<answers> | <running list>".
Lookup belonged(const QStringList &roots)
{
    return [=](CHy &hy) {
        QStringList answers;
        for (const QString &root : roots)
            answers.append(hy.GetBelongedWDHS(root));
        return answers.join(u',') + u" | "_s + hy.belongedWdhs();
    };
}

} // namespace

class TestCHy : public QObject
{
    Q_OBJECT

private slots:
    // The sample station with the anomalies on each engine there is, filled
    // once: the lookups only read.
    void initTestCase()
    {
        for (Engine engine : quarry::test::allEngines()) {
            if (!quarry::test::missingEngine(engine).isEmpty())
                continue;
            auto &station = m_stations[engine] = std::make_unique<SampleStation>(engine);
            station->changeSeal(Anomalies);
            QVERIFY2(station->isValid(), qPrintable(station->errorText()));
        }
    }

    // The lookups run alike on both engines; the ODBC path is taken once, by the
    // whole-tree walk.
    void lookups_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QByteArray>("ini"); // extra lines of seal.ini
        QTest::addColumn<Lookup>("lookup");
        QTest::addColumn<QString>("expected"); // "error: <source>|<description>" for an error; Walk
        QTest::addColumn<QString>("logged");   // part of the error log's one line, "" for none
        using H = CHy &;
        for (Engine engine : quarry::test::allEngines()) {
            const auto row = [&](const char *tag, const QString &expected, const Lookup &lookup,
                                 const QString &logged = {}, const QByteArray &ini = {}) {
                QTest::newRow(quarry::test::engineTag(engine, tag).constData()) << engine << ini << lookup << expected << logged;
            };
            row("the head office's whole tree", Walk, belonged({u"110000"_s}));
            if (engine == Engine::MariaDbOdbc)
                continue;
            row("branch name", u"东城第1支行"_s, [](H hy) { return hy.GetWdNameByWdh(u"110101"_s); });
            row("teller's branch is its type's", u"110000"_s, [](H hy) { return hy.GetHyWDH(u"9001"_s); });
            row("teller whose type was deleted", {}, [](H hy) { return hy.GetHyWDH(u"9000"_s); });
            row("teller name", u"李建国"_s, [](H hy) { return hy.GetHynameByHydh(u"0002"_s); });
            row("branch exists, quote", u"0"_s, [](H hy) { return QString::number(hy.IsWdhExist(u"'or'1'"_s)); });
            row("manager 001", u"True"_s, [](H hy) { return boolText(hy.isManager(u"9011"_s)); });
            row("manager 110", u"False"_s, [](H hy) { return boolText(hy.isManager(u"9012"_s)); });
            row("manager 1", u"False"_s, [](H hy) { return boolText(hy.isManager(u"9013"_s)); });
            row("manager, type deleted", u"error: CHy|isManager : 行员不存在权限!"_s, [](H hy) { return boolText(hy.isManager(u"9000"_s)); });
            row("power group 001", u"True"_s, [](H hy) { return boolText(hy.isPowerGroup(u"测试主管"_s)); });
            row("branch of the head office", u"110000"_s, [](H hy) { return hy.GetBranchWdh(u"110000"_s); });
            row("branch of an agency", u"110100"_s, [](H hy) { return hy.GetBranchWdh(u"1101010302"_s); });
            row("branch of an unknown code", u"error: CHy::GetBranchWdh()|网点号999不在网点对照表中"_s, [](H hy) { return hy.GetBranchWdh(u"999"_s); });
            row("branch in a cycle", u"error: CHy::GetBranchWdh()|网点对照表中网点C1的上级关系构成循环，找不到它所属的分行！"_s, [](H hy) { return hy.GetBranchWdh(u"C1"_s); }, u" 2000 网点对照表中网点C1的上级"_s);
            row("belonged, without sub-branches, then with", u"'1101010101', | '1101010101','11010101','1101010101','1101010102',"_s, belonged({u"1101010101"_s, u"11010101"_s}));
            row("belonged, quote", u"'1'' or ''1''=''1' | '1'' or ''1''=''1',"_s, belonged({u"1' or '1'='1"_s}));
            row("belonged, cycle", u" | 'C1','C2','C3',"_s, belonged({u"C1"_s}), u"CHy.GetBelongedWDHS() 2000 网点对照表数据有误：网点C1在"_s);
            row("belonged, two parents", u" | 'D0','D1','D3','D4',"_s + (engine == Engine::MariaDb ? u"'D5','D2',"_s : u"'D2',"_s), belonged({u"D0"_s}), u"CHy.GetBelongedWDHS() 2000 网点对照表数据有误：网点D3在"_s);
            // Whether the teller was found (one that is not there, then 9001), and its record with the dates.
            row("teller info", u"False|True|9001|借调员|1011111100|2|总行主管|110101|5|2005-01-01|2009-12-31|2010-06-30|0|3|0"_s, [](H hy) {
                hy.IncludeDate = hy.IfPwdExpire = true;
                // Braced lists are evaluated left to right: the lookup runs first.
                return QStringList{boolText(hy.GetHyInfoByHydh(u"9999"_s)), boolText(hy.GetHyInfoByHydh(u"9001"_s)), hy.hydh, hy.Hyname, hy.Hyqx, QString::number(hy.HyTypeId),
                                   hy.HyTypeName, hy.Wdh, QString::number(hy.Allownum), hy.qysj, hy.Zxsj, hy.PwdExpDate,
                                   QString::number(hy.IsAudit), QString::number(hy.GetOpType), QString::number(hy.GetIfConfirm)}.join(u'|');
            });
            const auto fenhang = [](H hy) { return boolText(hy.isFenhang()); };
            row("first-level branch", u"True"_s, fenhang, {}, "[BANKPARAM]\nDEPARTID=110300\n");
            row("head office", u"False"_s, fenhang, {}, "[BANKPARAM]\nDEPARTID=110000\n");
        }
    }

    void lookups()
    {
        QFETCH(Engine, engine);
        QFETCH(QByteArray, ini);
        QFETCH(Lookup, lookup);
        QFETCH(QString, expected);
        QFETCH(QString, logged);
        QUARRY_REQUIRE_ENGINE(engine);
        SampleStation &sample = *m_stations.at(engine);
        sample.writeIni(ini);
        sample.clearErrorLog();
        if (expected == Walk) {
            quarry::DbConnection connection;
            sample.seal().prepare(connection);
            connection.open(sample.seal().connectionString(), u"BISOL"_s, u"KORMANTE"_s, true);
            QVERIFY2(connection.isOpen(), qPrintable(connection.errorText()));
            expected = u" | "_s + quarry::test::belongedWdhsOneQueryPerBranch(connection, u"110000"_s);
        }
        QCOMPARE(answerOf(lookup), expected);
        const QString log = sample.errorLog();
        QCOMPARE(log.count(u'\n'), logged.isEmpty() ? 0 : 1);
        QVERIFY2(log.contains(logged), qPrintable(log));
    }

    void belongedWdhsBelowAWideLevel_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QString>("rows");     // WDDZ rows below the wide level
        QTest::addColumn<QString>("expected"); // the list from E1 to E4
        QTest::addColumn<QString>("logged");   // part of the error log's one line, "" for none
        for (Engine engine : quarry::test::allEngines()) {
            const auto row = [&](const char *tag, const QString &rows, const QString &expected,
                                 const QString &logged = {}) {
                QTest::newRow(quarry::test::engineTag(engine, tag).constData()) << engine << rows << expected << logged;
            };
            // MariaDB takes "e1 " for E1; SQLite does not.
            const bool loose = engine != Engine::Sqlite;
            row("faults", u"('G2', 'E1'), ('G1', 'E1'), ('G3', 'G1'), ('G1', 'G3'), ('G4', 'E2'), ('G4', 'E3')"_s, u"'E1','G2','G1','G3','E2','G4','E3','E4',"_s, u"网点G1,G4在网点E0之下"_s);
            row("parent spelled two ways", u"('G1', 'E1'), ('G2', 'e1 ')"_s, loose ? u"'E1','G1','G2','E2','E3','E4',"_s : u"'E1','G1','E2','E3','E4',"_s);
            row("parent spelled loosely", u"('G1', 'e1 ')"_s, loose ? u"'E1','G1','E2','E3','E4',"_s : u"'E1','E2','E3','E4',"_s);
        }
    }

    // Below a level too wide for one query the tree is matched in memory where
    // the database compares the codes as text, and read on by query where it
    // does not: each case on a table of its own, as the choice is the table's.
    void belongedWdhsBelowAWideLevel()
    {
        QFETCH(Engine, engine);
        QFETCH(QString, rows);
        QFETCH(QString, expected);
        QFETCH(QString, logged);
        QUARRY_REQUIRE_ENGINE(engine);
        SampleStation station(engine, SampleStation::Contents::Empty);
        station.changeSeal(WideBranchTable + u"INSERT INTO WDDZ (WDH, MASTERNO) VALUES "_s + rows + u";\n"_s);
        QVERIFY2(station.isValid(), qPrintable(station.errorText()));
        station.writeIni();
        for (int i = 5; i <= WideLevel; ++i)
            expected += u"'E%1',"_s.arg(i);
        QCOMPARE(answerOf(belonged({u"E0"_s})), u" | 'E0',"_s + expected + u"'F1',"_s);
        const QString log = station.errorLog();
        QCOMPARE(log.count(u'\n'), logged.isEmpty() ? 0 : 1);
        QVERIFY2(log.contains(logged), qPrintable(log));
    }

    void brokenSealDatabase_data() { quarry::test::addEngineRows({Engine::Sqlite, Engine::MariaDb}); }

    // A branch table without a head office, then the database gone (a closed
    // port, an embedded database file that is missing): a lookup fails at once
    // with the connection's error, IsWdhExist answers -1; both are logged.
    void brokenSealDatabase()
    {
        QFETCH(Engine, engine);
        QUARRY_REQUIRE_ENGINE(engine);
        SampleStation broken(engine, SampleStation::Contents::Empty);
        broken.changeSeal(u"CREATE TABLE WDDZ (WDH VARCHAR(20), MASTERNO VARCHAR(20));"_s);
        QVERIFY2(broken.isValid(), qPrintable(broken.errorText()));
        broken.writeIni();
        QCOMPARE(answerOf([](CHy &hy) { return hy.GetBranchWdh(u"1"_s); }),
                 u"error: CHy::GetBranchWdh()|网点对照表中没有总行！"_s);

        // The embedded database names no server: the default one is named.
        const QString server = engine == Engine::Sqlite ? u"SealServer"_s : u"127.0.0.1:1"_s;
        broken.writeIni({}, server);
        QFile::remove(broken.folder() + u"/SEAL.db"_s);
        const QString failed = u"连接数据库"_s + server + u" 失败！"_s;
        // The system has always named isFenhang here; the connection's own text follows.
        const QString answer = answerOf([](CHy &hy) { return boolText(hy.isManager(u"0001"_s)); });
        QVERIFY2(answer.startsWith(u"error: CHy|isFenhang["_s + failed), qPrintable(answer));
        QCOMPARE(CHy().IsWdhExist(u"110101"_s), -1);
        QCOMPARE(broken.errorLog().count(failed), 2);
    }

    // What the sample data cannot reach: 100,000 levels, each a pair under
    // the first of the level before. No recursion that could overflow the
    // stack, and one read per level, never one per branch.
    void longChain()
    {
        const int count = 100000;
        int reads = 0;
        const auto readLevel = [&](const QStringList &parents) {
            ++reads;
            QList<quarry::BranchLink> rows;
            for (const QString &parent : parents) {
                const int below = parent.mid(1).toInt() + 1;
                if (parent.startsWith(u'a') && below < count)
                    rows += {{u'a' + QString::number(below), parent}, {u'b' + QString::number(below), parent}};
            }
            return rows;
        };
        const quarry::BranchTree tree(u"a0"_s, readLevel);
        QCOMPARE(reads, count);
        QCOMPARE(tree.branches().size(), 2 * count - 1);
        // Depth first: down the a's, then the b's on the way back up.
        QCOMPARE(tree.branches().at(count - 1), u'a' + QString::number(count - 1));
        QCOMPARE(tree.branches().constLast(), u"b1"_s);
        QCOMPARE(tree.repeated(), QStringList());
    }

private:
    std::map<Engine, std::unique_ptr<SampleStation>> m_stations;
};

QTEST_GUILESS_MAIN(TestCHy)
#include "tst_chy.moc"
