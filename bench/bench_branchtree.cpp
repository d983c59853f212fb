// The branch list of a head office with 20,000 branches in 5 levels, as the
// log dialogs ask for it (CHy::GetBelongedWDHS: a query per level until a
// level outgrows one query, then the whole table read once), beside the one
// query per branch that the system used to run. Run by hand:
//   ./bench/bench_branchtree
// MariaDB: the server named by $QUARRY_MARIADB_DIR (as the test fixture
// leaves it), else one started for the run with scripts/mariadb-test-server.sh;
// without a MariaDB server those rows are skipped with a message.

#include "BestOf.h"
#include "BranchWalk.h"
#include "OwnMariaDb.h"
#include "SampleStation.h"

#include "platform/DbConnection.h"
#include "teller/CHy.h"

#include <QTest>

using namespace Qt::StringLiterals;
using quarry::test::Engine;
using quarry::test::SampleStation;

namespace {

// Branches per level, the head office first: 20,000 in all.
constexpr int LevelSizes[] = {1, 10, 100, 1000, 18889};
constexpr int RowsPerInsert = 500;
constexpr int Runs = 3;

QString code(int level, int index)
{
    return QString::number((level + 1) * 100000 + index);
}

// Each branch under the parent its index picks round the level above, so
// that siblings lie scattered over the table as years of changes leave them.
QString treeScript()
{
    QString script = u"CREATE TABLE WDDZ (WDH VARCHAR(20) NOT NULL, WDNAME VARCHAR(60), "
                     "IPADDR VARCHAR(40), MASTERNO VARCHAR(20) NOT NULL);\n"
                     "CREATE INDEX WDDZ_WDH ON WDDZ (WDH);\n"
                     "CREATE INDEX WDDZ_MASTERNO ON WDDZ (MASTERNO);\n"_s;
    QStringList rows;
    const auto flush = [&] {
        if (rows.isEmpty())
            return;
        script += u"INSERT INTO WDDZ (WDH, WDNAME, IPADDR, MASTERNO) VALUES "_s + rows.join(u',')
            + u";\n"_s;
        rows.clear();
    };
    for (int level = 0; level < int(std::size(LevelSizes)); ++level) {
        for (int i = 0; i < LevelSizes[level]; ++i) {
            const QString parent
                = level == 0 ? u"000"_s : code(level - 1, i % LevelSizes[level - 1]);
            rows.append(u"('%1', '网点%1', '', '%2')"_s.arg(code(level, i), parent));
            if (rows.size() == RowsPerInsert)
                flush();
        }
    }
    flush();
    return script;
}

} // namespace

class BenchBranchTree : public QObject
{
    Q_OBJECT

private slots:
    void belongedWdhs_data();
    void belongedWdhs();

private:
    quarry::bench::OwnMariaDb m_server;
};

void BenchBranchTree::belongedWdhs_data()
{
    QTest::addColumn<Engine>("engine");
    for (Engine engine : quarry::test::allEngines())
        QTest::newRow(qPrintable(quarry::test::engineName(engine))) << engine;
}

void BenchBranchTree::belongedWdhs()
{
    QFETCH(Engine, engine);
    const QString missing = quarry::test::missingEngine(engine);
    if (!missing.isEmpty())
        QSKIP(qPrintable(missing));
    SampleStation station(engine, SampleStation::Contents::Empty);
    station.changeSeal(treeScript());
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    station.writeIni();
    const QString headOffice = code(0, 0);

    quarry::CHy hy;
    QCOMPARE(hy.IsWdhExist(headOffice), qint16(1)); // connected before the clock runs
    QString belonged;
    const double belongedMs = quarry::bench::bestOf(Runs, [&] {
        hy.clearBelongedWdhs();
        hy.GetBelongedWDHS(headOffice);
        belonged = hy.belongedWdhs();
    });

    quarry::DbConnection connection;
    station.seal().prepare(connection);
    connection.open(station.seal().connectionString(), u"BISOL"_s, u"KORMANTE"_s, true);
    QVERIFY2(connection.isOpen(), qPrintable(connection.errorText()));
    QString oneByOne;
    const double oneByOneMs = quarry::bench::bestOf(Runs, [&] {
        oneByOne = quarry::test::belongedWdhsOneQueryPerBranch(connection, headOffice);
    });

    QCOMPARE(belonged.count(u','), 20000);
    QCOMPARE(belonged, oneByOne);
    qInfo("%s: 20,000 branches in 5 levels: GetBelongedWDHS %.1f ms, one query per branch "
          "%.1f ms (%.1f times as long)",
          qPrintable(quarry::test::engineName(engine)), belongedMs, oneByOneMs,
          oneByOneMs / belongedMs);
}

QTEST_GUILESS_MAIN(BenchBranchTree)
#include "bench_branchtree.moc"
