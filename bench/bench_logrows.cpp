// Logs of a million and of ten million rows in quarry-viewer's table: the
// time from asking for the rows to their first page painted, to their
// count, and to their last rows (the scroll bar dragged to the end), and
// the memory the model holds; beside QSqlQueryModel, which on MySQL holds
// the whole result before the first row shows. Run by hand:
//   QT_QPA_PLATFORM=offscreen ./bench/bench_logrows
// MariaDB: the server named by $QUARRY_MARIADB_DIR, else one started for the
// run; without a MariaDB server those rows are skipped with a message.

#include "BestOf.h"
#include "OwnMariaDb.h"
#include "SampleStation.h"

#include "LogRowsModel.h"
#include "StationDatabase.h"

#include <QHeaderView>
#include <QSqlQueryModel>
#include <QTableView>
#include <QTest>

#include <malloc.h>

using namespace Qt::StringLiterals;
using quarry::test::Engine;
using quarry::test::SampleStation;
using quarry::viewer::LogRowsModel;

namespace {

constexpr int Runs = 3;
const QString Select = u"SELECT * FROM YWLOG where wdh like '1101%'"_s;

// The business log's table with `rows` rows of 10 columns, made by the
// engine itself.
QString logScript(Engine engine, int rows)
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
              "'1101' || printf('%02d', i % 30), '备注' FROM n;\n"_s.arg(rows);
    return create
        + u"INSERT INTO YWLOG SELECT seq, CONCAT('1101', LPAD(seq MOD 99991, 13, '0')), "
          "LPAD(seq MOD 9999, 7, '0'), '开户', LPAD(seq MOD 200, 4, '0'), '行员', '2007-05-01', "
          "'10:00:00', CONCAT('1101', LPAD(seq MOD 30, 2, '0')), '备注' FROM seq_1_to_%1;\n"_s.arg(
              rows);
}

// The memory the process has allocated and not freed, in MB (glibc).
double heapMb()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / (1024 * 1024);
}

bool waitFor(const std::function<bool()> &done)
{
    return QTest::qWaitFor(done, 600'000);
}

} // namespace

class BenchLogRows : public QObject
{
    Q_OBJECT

private slots:
    void logRows_data();
    void logRows();

private:
    quarry::bench::OwnMariaDb m_server;
};

void BenchLogRows::logRows_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<int>("rows");
    for (int rows : {1'000'000, 10'000'000}) {
        QTest::addRow("sqlite, %d rows", rows) << Engine::Sqlite << rows;
        QTest::addRow("mariadb, %d rows", rows) << Engine::MariaDb << rows;
    }
}

void BenchLogRows::logRows()
{
    QFETCH(Engine, engine);
    QFETCH(int, rows);
    const QString missing = quarry::test::missingEngine(engine);
    if (!missing.isEmpty())
        QSKIP(qPrintable(missing));
    SampleStation station(engine, SampleStation::Contents::Empty);
    station.changeSeal(logScript(engine, rows));
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    station.writeIni();
    quarry::viewer::StationDatabase database;
    QCOMPARE(database.open(), QString());
    const char *name = engine == Engine::Sqlite ? "sqlite" : "mariadb";

    const double start = heapMb();
    LogRowsModel model;
    const double countMs = quarry::bench::bestOf(Runs, [&] {
        model.setQuery(database, Select, u"LOGID"_s);
        QVERIFY(waitFor([&model] { return !model.isBusy(); }));
    });
    QCOMPARE(model.rowCount(), rows);
    const double modelMb = heapMb() - start;
    // Qt's table view keeps a few bytes for each row of its vertical header.
    QTableView view;
    view.setModel(&model);
    view.resize(1000, 700);
    view.show();
    const double viewMb = heapMb() - start - modelMb;
    bool shown = false;
    connect(&model, &LogRowsModel::rowsShown, this, [&shown] { shown = true; });
    const double firstMs = quarry::bench::bestOf(Runs, [&] {
        shown = false;
        model.setQuery(database, Select, u"LOGID"_s);
        QVERIFY(waitFor([&shown] { return shown; }));
        view.viewport()->repaint();
    });
    QVERIFY(waitFor([&model] { return !model.isBusy(); }));
    int run = 0; // each run on a page not read yet
    const double lastMs
        = quarry::bench::bestOf(Runs, [&] { model.index(rows - 1 - 1000 * run++, 0).data(); });
    qInfo("%s, %d rows, paged model: first page painted in %.0f ms, counted in %.0f ms, the model "
          "holding %.1f MB and the view %.1f MB; its last rows in %.0f ms",
          name, rows, firstMs, countMs, modelMb, viewMb, lastMs);
    model.clear();

    QSqlQueryModel whole;
    const double wholeMs
        = quarry::bench::bestOf(1, [&] { whole.setQuery(Select, database.database()); });
    qInfo("%s, %d rows, QSqlQueryModel: first page in %.0f ms, holding %.1f MB", name, rows,
          wholeMs, heapMb() - start);
    whole.clear();
}

QTEST_MAIN(BenchLogRows)
#include "bench_logrows.moc"
