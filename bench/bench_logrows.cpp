// A log of a million rows in quarry-viewer's table: the time to open it (the
// count and the first page), to show its last rows (the scroll bar dragged
// to the end) and to read it through page after page (scrolling on, or an
// export), and the memory the rows take; beside QSqlQueryModel, which on
// MySQL holds the whole result before the first row shows. Run by hand:
//   ./bench/bench_logrows
// MariaDB: the server named by $QUARRY_MARIADB_DIR, else one started for the
// run; without a MariaDB server those rows are skipped with a message.

#include "BestOf.h"
#include "OwnMariaDb.h"
#include "SampleStation.h"

#include "LogRowsModel.h"
#include "StationDatabase.h"

#include <QSqlQueryModel>
#include <QTest>

#include <malloc.h>

using namespace Qt::StringLiterals;
using quarry::test::Engine;
using quarry::test::SampleStation;
using quarry::viewer::LogRowsModel;

namespace {

constexpr int Rows = 1000000;
constexpr int Runs = 3;
const QString Select = u"SELECT * FROM YWLOG where wdh like '1101%'"_s;

// The business log's table with Rows rows of 10 columns, made by the
// engine itself.
QString logScript(Engine engine)
{
    const QString create
        = u"CREATE TABLE YWLOG (LOGID INTEGER NOT NULL PRIMARY KEY, ACCNO VARCHAR(32), "
          "YJKNUMBER VARCHAR(20), OPTYPE VARCHAR(40), Opcode VARCHAR(20), "
          "OpName VARCHAR(40), Opdate VARCHAR(10), Optime VARCHAR(8), wdh VARCHAR(20), "
          "Memo VARCHAR(100));\n"_s;
    if (engine == Engine::Sqlite)
        return create
            + u"INSERT INTO YWLOG WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
              "WHERE i < %1) SELECT i, '1101' || printf('%013d', i % 99991), printf('%07d', i % "
              "9999), "
              "'开户', printf('%04d', i % 200), '行员', '2007-05-01', '10:00:00', "
              "'1101' || printf('%02d', i % 30), '备注' FROM n;\n"_s.arg(Rows);
    return create
        + u"INSERT INTO YWLOG SELECT seq, CONCAT('1101', LPAD(seq MOD 99991, 13, '0')), "
          "LPAD(seq MOD 9999, 7, '0'), '开户', LPAD(seq MOD 200, 4, '0'), '行员', '2007-05-01', "
          "'10:00:00', CONCAT('1101', LPAD(seq MOD 30, 2, '0')), '备注' FROM seq_1_to_%1;\n"_s.arg(
              Rows);
}

// The memory the process has allocated and not freed, in MB (glibc).
double heapMb()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / (1024 * 1024);
}

// Reads every value of every row, as an export does; the time in ms.
double readThrough(const QAbstractItemModel &model)
{
    return quarry::bench::bestOf(1, [&] {
        for (int row = 0; row < model.rowCount(); ++row) {
            for (int c = 0; c < model.columnCount(); ++c)
                model.index(row, c).data();
        }
    });
}

} // namespace

class BenchLogRows : public QObject
{
    Q_OBJECT

private slots:
    void millionRows_data();
    void millionRows();

private:
    quarry::bench::OwnMariaDb m_server;
};

void BenchLogRows::millionRows_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::newRow("sqlite") << Engine::Sqlite;
    QTest::newRow("mariadb") << Engine::MariaDb;
}

void BenchLogRows::millionRows()
{
    QFETCH(Engine, engine);
    const QString missing = quarry::test::missingEngine(engine);
    if (!missing.isEmpty())
        QSKIP(qPrintable(missing));
    SampleStation station(engine, SampleStation::Contents::Empty);
    station.changeSeal(logScript(engine));
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    station.writeIni();
    quarry::viewer::StationDatabase database;
    QCOMPARE(database.open(), QString());
    const char *name = engine == Engine::Sqlite ? "sqlite" : "mariadb";

    const double start = heapMb();
    LogRowsModel model;
    const auto open = [&] {
        const QSqlError error
            = model.setQuery(database.database(), Select, u"LOGID"_s, database.paging());
        if (error.isValid())
            qFatal("%s", qPrintable(error.text()));
    };
    const double openMs = quarry::bench::bestOf(Runs, open);
    QCOMPARE(model.rowCount(), Rows);
    const double openMb = heapMb() - start;
    double lastMs = std::numeric_limits<double>::max();
    for (int run = 0; run < Runs; ++run) {
        open();
        lastMs
            = std::min(lastMs, quarry::bench::bestOf(1, [&] { model.index(Rows - 1, 0).data(); }));
    }
    open();
    const double pagedMs = readThrough(model);
    qInfo("%s, paged model: opens in %.0f ms holding %.1f MB, shows its last rows in %.0f ms, "
          "reads through in %.1f s holding %.1f MB",
          name, openMs, openMb, lastMs, pagedMs / 1000, heapMb() - start);
    model.clear();

    QSqlQueryModel whole;
    const double wholeOpenMs
        = quarry::bench::bestOf(1, [&] { whole.setQuery(Select, database.database()); });
    const double wholeOpenMb = heapMb() - start;
    const double wholeMs = quarry::bench::bestOf(1,
                                                 [&] {
                                                     while (whole.canFetchMore())
                                                         whole.fetchMore();
                                                 })
        + readThrough(whole);
    qInfo("%s, QSqlQueryModel: opens in %.0f ms holding %.1f MB, reads through in %.1f s holding "
          "%.1f MB",
          name, wholeOpenMs, wholeOpenMb, wholeMs / 1000, heapMb() - start);
    whole.clear();
}

QTEST_GUILESS_MAIN(BenchLogRows)
#include "bench_logrows.moc"
