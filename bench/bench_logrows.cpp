// The seal verification log of a station at 1 and 10 million rows in
// quarry-viewer's table, on the sample schema and its indexes, with dates over
// seven years, read with the statements its dialog hands back: the first page
// painted, the end reached (Ctrl+End), the middle reached, the first page after
// a sort by a column without an index and the page after it, the rows a second
// of a CSV export of the sorted rows (read by position from the table the sort
// filled) and of their statement alone, every value read (the database's
// share), the program's resident memory before the CSV export of those rows and
// its peak while it writes it, the same of their PDF report with its rows a
// second (-1 beyond a million rows), and the longest time the GUI thread did
// not answer from the query until the CSV was written (a timer's largest gap
// between ticks) with the step it fell in, how long the thread ran and waited
// for a core in it, the longest the program itself held the thread (a gap less
// the wait for a core), and both for each step. One line per case. Run by hand:
//   QT_QPA_PLATFORM=offscreen QUARRY_BENCH_ROWS=1000000 nice bench/bench_logrows
// (the rows of the log; both sizes without QUARRY_BENCH_ROWS; ten million
// rows need QTEST_FUNCTION_TIMEOUT=3600000, a case taking longer than
// QtTest's five minutes). MariaDB: the server
// named by $QUARRY_MARIADB_DIR, else one started for the run; without a
// MariaDB server those cases are skipped with a message.

#include "DialogDriver.h"
#include "OwnMariaDb.h"
#include "SampleLogs.h"
#include "SampleStation.h"

#include "catalogue/ConditionRequest.h"
#include "catalogue/LabelledRows.h"
#include "LogCatalogue.h"
#include "output/LogReport.h"
#include "rows/LogRowsModel.h"
#include "rows/LogSelect.h"
#include "rows/StationDatabase.h"
#include "output/FileExports.h"
#include "window/ResultPane.h"
#include "window/StationBanner.h"

#include "platform/DbConnection.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QScrollBar>
#include <QSemaphore>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;
using quarry::test::Engine;
using quarry::test::SampleStation;
using quarry::viewer::LogEntry;
using quarry::viewer::LogRowsModel;

namespace {

// The dialog's steps for each condition; the account pattern matches 1 %
// of the rows (the third and fourth digits run through 00-99).
const QList<std::pair<const char *, QStringList>> Conditions{
    {"all-empty", {u"BtnOk!"_s}},
    {"one-month", {u"MaskBoxKs=20230301"_s, u"MaskBoxJs=20230331"_s, u"BtnOk!"_s}},
    {"account-1pct", {u"TxtAccNo=1107*"_s, u"BtnOk!"_s}},
};
const QString SortColumn = u"chequeno"_s; // no index
// The most rows whose PDF report is measured (-1 in the line above that).
constexpr qint64 PdfRowsAtMost = 1'000'000;

// The sample's seal verification log replaced by `rows` rows made by the
// engine itself, in scripts of one transaction each, in the order of their day and time,
// 2018-01-01 to 2024-12-31.
QStringList fillScripts(Engine engine, int rows)
{
    if (engine == Engine::Sqlite)
        return {u"DELETE FROM YYLOG;\n"
                "INSERT INTO YYLOG WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
                "WHERE i < %1) SELECT i, '11' || printf('%02d', i % 100) || printf('%013d', i % "
                "99991), printf('%08d', (i * 7919) % 100000000), printf('%07d', i % 9999), "
                "'转账支票', (i % 100000) / 100.0, CASE i % 2 WHEN 0 THEN '自动验印' ELSE "
                "'人工验印' END, CASE i % 5 WHEN 0 THEN '不通过' ELSE '通过' END, printf('%04d', "
                "i % 200), '行员', date('2018-01-01', printf('+%d days', i * 2557 / (%1 + 1))), "
                "time((i * 86400 / (%1 / 2557 + 1)) % 86400, 'unixepoch'), '1101' || "
                "printf('%02d', i % 30) FROM n;\n"_s.arg(rows)};
    // In transactions of a million rows: the lock table of the server's
    // buffer pool holds no more.
    QStringList scripts{u"DELETE FROM YYLOG;\n"_s};
    for (int first = 1; first <= rows; first += 1'000'000) {
        scripts
            += u"INSERT INTO YYLOG SELECT seq, CONCAT('11', LPAD(seq MOD 100, 2, '0'), "
               "LPAD(seq MOD 99991, 13, '0')), LPAD((seq * 7919) MOD 100000000, 8, '0'), "
               "LPAD(seq MOD 9999, 7, '0'), '转账支票', (seq MOD 100000) / 100, IF(seq MOD 2 = "
               "0, '自动验印', '人工验印'), IF(seq MOD 5 = 0, '不通过', '通过'), LPAD(seq MOD "
               "200, 4, '0'), '行员', DATE_FORMAT('2018-01-01' + INTERVAL (seq * 2557 DIV (%1 + "
               "1)) DAY, '%Y-%m-%d'), TIME_FORMAT(SEC_TO_TIME((seq * 86400 DIV (%1 DIV 2557 + "
               "1)) MOD 86400), '%H:%i:%s'), CONCAT('1101', LPAD(seq MOD 30, 2, '0')) FROM "
               "seq_%2_to_%3;\n"_s.arg(rows)
                   .arg(first)
                   .arg(qMin(rows, first + 999'999));
    }
    return scripts;
}

// The time the calling thread has run and has waited for a core, in
// milliseconds (the kernel's schedstat of the thread).
struct ThreadTimes
{
    qint64 ran = 0;
    qint64 queued = 0;

    static ThreadTimes now()
    {
        ThreadTimes times;
        if (std::FILE *stat = std::fopen("/proc/thread-self/schedstat", "r")) {
            long long ran = 0;
            long long queued = 0;
            if (std::fscanf(stat, "%lld %lld", &ran, &queued) == 2)
                times = {ran / 1'000'000, queued / 1'000'000};
            std::fclose(stat);
        }
        return times;
    }
};

// The largest gap between the ticks of a precise timer on the GUI thread,
// and the step of the bench it ended in: a gap is the step's that was
// running when the thread answered again (a step's own call on the GUI
// thread holds it as an operator's click would).
class GuiBlock
{
public:
    GuiBlock()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(5);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { tick(); });
        m_since.start();
        m_timer.start();
    }
    void step(const char *name)
    {
        m_step = name;
        m_steps.append({name});
    }
    // The gap under way ends the last step.
    void stop()
    {
        tick();
        m_timer.stop();
    }
    qint64 largestMs() const { return m_largest; }
    // The time the GUI thread ran in the largest gap, and the time it
    // waited for a core (the machine's load); the rest of the gap it slept,
    // waiting for something (a lock, a server).
    qint64 largestCpuMs() const { return m_largestCpu; }
    qint64 largestQueuedMs() const { return m_largestQueued; }
    // The largest gap less the time the thread waited for a core in it: the
    // longest the program itself held the thread, and in which step.
    qint64 heldMs() const { return m_held; }
    const char *heldStep() const { return m_heldStep; }
    const char *largestStep() const { return m_largestStep; }
    // "step:gap/held,...": the largest gap of each step and the longest the
    // program held the thread, in milliseconds, in the order they ran.
    QByteArray eachStep() const
    {
        QByteArrayList steps;
        for (const Step &step : m_steps)
            steps.append(step.name + ':' + QByteArray::number(step.largest) + '/'
                         + QByteArray::number(step.held));
        return steps.join(',');
    }

private:
    struct Step
    {
        QByteArray name;
        qint64 largest = 0;
        qint64 held = 0;
    };

    void tick()
    {
        const qint64 gap = m_since.restart();
        const ThreadTimes times = ThreadTimes::now();
        const ThreadTimes before = std::exchange(m_times, times);
        // The gap less the time the thread waited for a core.
        const qint64 held = gap - (times.queued - before.queued);
        if (!m_steps.isEmpty()) {
            Step &step = m_steps.last();
            step.largest = qMax(step.largest, gap);
            step.held = qMax(step.held, held);
        }
        if (gap > m_largest) {
            m_largest = gap;
            m_largestCpu = times.ran - before.ran;
            m_largestQueued = times.queued - before.queued;
            m_largestStep = m_step;
        }
        if (held > m_held) {
            m_held = held;
            m_heldStep = m_step;
        }
    }

    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_largest = 0;
    const char *m_step = "";
    const char *m_largestStep = "";
    ThreadTimes m_times = ThreadTimes::now();
    qint64 m_largestCpu = 0;
    qint64 m_largestQueued = 0;
    qint64 m_held = 0;
    const char *m_heldStep = "";
    QList<Step> m_steps;
};

// Waits in the event loop, as the program does, rather than with
// QTest::qWaitFor, whose sleeps between turns would be gaps of its own.
bool waitFor(const std::function<bool()> &done)
{
    QDeadlineTimer deadline(1'800'000);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        // The gap timer's ticks wake it at least every few milliseconds.
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

// Milliseconds that `run` took.
qint64 timed(const std::function<void()> &run)
{
    QElapsedTimer timer;
    timer.start();
    run();
    return timer.elapsed();
}

// The rows a second of source's statement alone, on a connection of its
// own, every value read.
qint64 readRowsPerSecond(const quarry::viewer::RowSource &source)
{
    qint64 perSecond = -1;
    const auto read
        = [&perSecond](const QSqlDatabase &database, const QString &fault, const QString &select) {
              if (!fault.isEmpty())
                  return;
              QSqlQuery query(database);
              query.setForwardOnly(true);
              qint64 rows = 0;
              const qint64 ms = timed([&] {
                  query.exec(select);
                  const int columns = query.record().count();
                  for (; query.next(); ++rows) {
                      for (int c = 0; c < columns; ++c)
                          query.value(c);
                  }
              });
              perSecond = rows * 1000 / std::max<qint64>(ms, 1);
          };
    if (source.lender) {
        QSemaphore done;
        source.lender([&](const QSqlDatabase &database, const QString &fault) {
            read(database, fault, source.select);
            done.release();
        });
        done.acquire();
    } else {
        quarry::DbConnection connection;
        const QString fault = source.opener(connection);
        read(connection.database(), fault, source.select);
    }
    return perSecond;
}

// A figure of the program's memory in /proc/self/status (VmRSS, VmHWM), in
// MiB.
qint64 memoryMiB(const QByteArray &figure)
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(figure + ':'))
            return line.mid(figure.size() + 1).trimmed().split(' ').value(0).toLongLong() / 1024;
    }
    return -1;
}

// The program's peak resident memory starts again from what it holds now,
// which is returned.
qint64 resetPeakMemory()
{
    QFile refs(u"/proc/self/clear_refs"_s);
    if (refs.open(QIODevice::WriteOnly))
        refs.write("5");
    return memoryMiB("VmRSS");
}

LogEntry sealVerificationLog()
{
    const auto entries
        = quarry::viewer::LogCatalogue::read(quarry::test::sampleCataloguePath()).entries();
    for (const LogEntry &entry : entries) {
        if (entry.logType == u"YYRZ"_s)
            return entry;
    }
    qFatal("No YYRZ in the sample catalogue");
}

} // namespace

class BenchLogRows : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void logRows_data();
    void logRows();

private:
    void measure(const char *condition, const char *engine, int rows, const QString &select,
                 const LogEntry &entry, quarry::viewer::StationDatabase &database);

    quarry::bench::OwnMariaDb m_server;
};

// The sample station and catalogue come from the sources.
void BenchLogRows::initTestCase()
{
    if (qEnvironmentVariableIsEmpty("QUARRY_SOURCE_DIR"))
        qputenv("QUARRY_SOURCE_DIR", QUARRY_SOURCE_DIR);
}

void BenchLogRows::logRows_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<int>("rows");
    const QString asked = qEnvironmentVariable("QUARRY_BENCH_ROWS");
    const QList<int> sizes
        = asked.isEmpty() ? QList<int>{1'000'000, 10'000'000} : QList<int>{asked.toInt()};
    for (int rows : sizes) {
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
    SampleStation station(engine);
    QElapsedTimer filling;
    filling.start();
    for (const QString &script : fillScripts(engine, rows))
        station.changeSeal(script);
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    qInfo("%d rows filled in %.0f s", rows, filling.elapsed() / 1000.0);
    station.writeIni("[USER]\nQueryHintMode=0\n");
    quarry::viewer::StationDatabase database;
    QCOMPARE(database.open(), QString());
    LogEntry entry = sealVerificationLog();
    QCOMPARE(database.fill(entry.listA) + database.fill(entry.listB), QString());
    for (const auto &[name, steps] : Conditions) {
        QString condition;
        quarry::test::operate([&] { condition = quarry::viewer::askCondition(entry); }, steps,
                              QMessageBox::Yes);
        QVERIFY2(!condition.isEmpty(), name);
        measure(name, engine == Engine::Sqlite ? "sqlite" : "mariadb", rows,
                quarry::viewer::logSelect(entry, condition), entry, database);
    }
}

void BenchLogRows::measure(const char *condition, const char *engine, int rows,
                           const QString &select, const LogEntry &entry,
                           quarry::viewer::StationDatabase &database)
{
    LogRowsModel model;
    quarry::viewer::LabelledRows labelled;
    labelled.setSourceModel(&model);
    labelled.setEntry(entry);
    // The window's own table, over the labelled rows, set up as the window
    // does when rows come.
    quarry::viewer::ResultPane pane(new quarry::viewer::StationBanner({}), database, model,
                                    &labelled, nullptr);
    pane.resize(1000, 800);
    pane.show();
    QTableView &view = *pane.findChild<QTableView *>(u"resultTable"_s);
    bool shown = false;
    connect(&model, &LogRowsModel::rowsShown, this, [&] {
        pane.scrollToTop();
        if (!std::exchange(shown, true))
            pane.showColumns(entry);
    });
    // Painted with the rows it shows (a window of the log's), whose pages
    // come in the background; below the log's last row there is none.
    const auto painted = [&] {
        view.viewport()->repaint();
        const auto read = [&view](int y) {
            const QModelIndex cell = view.indexAt({0, y});
            return !cell.isValid() || cell.data().isValid();
        };
        QVERIFY(waitFor([&] { return read(0) && read(view.viewport()->height() - 1); }));
        view.viewport()->repaint();
    };
    // The table's scroll bar runs over the whole log.
    QScrollBar &bar = *view.verticalScrollBar();

    GuiBlock block;
    block.step("query");
    QElapsedTimer sinceCounted;
    connect(&model, &LogRowsModel::counted, this, [&sinceCounted] { sinceCounted.start(); });
    const qint64 firstMs = timed([&] {
        model.setQuery(database, select, entry.key, quarry::viewer::newestFirst(entry));
        QVERIFY(waitFor([&shown] { return shown; }));
        painted();
    });
    block.step("count");
    // Not busy: counted, and the order bookmarked, which the jump to the
    // middle below starts from.
    QVERIFY(waitFor([&model] { return !model.isBusy(); }));
    QCoreApplication::processEvents(); // the table laid out for the rows counted
    const qint64 countedRss = memoryMiB("VmRSS");
    const int headerSections = view.verticalHeader()->count();
    qInfo("%s: bookmarked %lld ms after the count was told", condition,
          sinceCounted.isValid() ? sinceCounted.elapsed() : -1);
    block.step("end");
    const qint64 endMs = timed([&] {
        bar.setValue(bar.maximum());
        painted();
    });
    block.step("middle");
    const qint64 middleMs = timed([&] {
        bar.setValue(model.rowCount() / 2);
        painted();
    });
    int sortColumn = 0;
    while (model.headerData(sortColumn, Qt::Horizontal)
               .toString()
               .compare(SortColumn, Qt::CaseInsensitive))
        ++sortColumn;
    bool sorted = false;
    connect(&model, &LogRowsModel::rowsShown, this, [&sorted] { sorted = true; });
    block.step("sort");
    const qint64 sortFirstMs = timed([&] {
        view.sortByColumn(sortColumn, Qt::AscendingOrder);
        QVERIFY(waitFor([&sorted] { return sorted; }));
        painted();
    });
    // The page after the first one of the sorted rows.
    block.step("next-page");
    const qint64 sortNextMs = timed([&] {
        bar.setValue(LogRowsModel::PageRows + 10);
        painted();
    });
    const LogRowsModel::Part onView = model.statement(0, -1);
    const quarry::viewer::RowSource source{
        database.opener(), onView.select, database.describe(), std::nullopt, 0, onView.lender};
    const auto busy = [](qint64) {
        QCoreApplication::processEvents();
        return true;
    };
    QTemporaryDir dir;
    const qint64 before = resetPeakMemory();
    block.step("export");
    const qint64 csvMs = timed([&] {
        const QString failed
            = quarry::viewer::writeCsv(dir.filePath(u"log.csv"_s), labelled, source, busy);
        QVERIFY2(failed.isEmpty(), qPrintable(failed));
    });
    const qint64 csvPeak = memoryMiB("VmHWM");
    // The reading alone and the report answer no event, as a reading of the
    // table does not.
    block.stop();
    const qint64 blocked = block.largestMs();
    const qint64 readSpeed = readRowsPerSecond(source);
    const quarry::viewer::LogReport report
        = quarry::viewer::logReport(labelled, source,
                                    {entry.title, {}, database.describe(), select}, {});
    // A report of ten million rows takes most of an hour.
    qint64 pdfMs = -1;
    qint64 pdfBefore = -1;
    qint64 pdfPeak = -1;
    if (model.rowCount() <= PdfRowsAtMost) {
        pdfBefore = resetPeakMemory();
        pdfMs = timed([&] {
            const QString failed
                = quarry::viewer::writePdf(dir.filePath(u"log.pdf"_s), report, entry.title, busy);
            QVERIFY2(failed.isEmpty(), qPrintable(failed));
        });
        pdfPeak = memoryMiB("VmHWM");
    }
    QVERIFY2(!model.lastError().isValid(), qPrintable(model.lastError().text()));
    const qint64 count = model.rowCount();
    std::printf("case=%s engine=%s rows=%d first_page_ms=%lld end_ms=%lld middle_ms=%lld "
                "sort_first_ms=%lld sort_next_ms=%lld counted_rss_mib=%lld header_sections=%d "
                "csv_rows_per_s=%lld read_rows_per_s=%lld "
                "csv_rss_mib=%lld csv_peak_mib=%lld pdf_rows_per_s=%lld pdf_rss_mib=%lld "
                "pdf_peak_mib=%lld gui_block_ms=%lld gui_block_step=%s gui_block_cpu_ms=%lld "
                "gui_block_queued_ms=%lld "
                "gui_held_ms=%lld gui_held_step=%s gui_block_steps=%s\n",
                condition, engine, rows, firstMs, endMs, middleMs, sortFirstMs, sortNextMs,
                countedRss, headerSections, count * 1000 / std::max<qint64>(csvMs, 1), readSpeed,
                before, csvPeak, pdfMs < 0 ? -1 : count * 1000 / std::max<qint64>(pdfMs, 1),
                pdfBefore, pdfPeak, blocked, block.largestStep(), block.largestCpuMs(),
                block.largestQueuedMs(), block.heldMs(), block.heldStep(),
                block.eachStep().constData());
    std::fflush(stdout);
}

QTEST_MAIN(BenchLogRows)
#include "bench_logrows.moc"
