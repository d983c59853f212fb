// quarry-viewer's window on the sample station: the component's dialog asks,
// the log's rows show, cancelling runs nothing, database faults are told in
// the window, the statistics get their chart, and the rows export as CSV.
// The rows' model reads pages in any order of visits and with keys that
// need quoting.

#include "DialogDriver.h"
#include "SampleStation.h"

#include "LogCatalogue.h"
#include "LogRowsModel.h"
#include "PassRateChart.h"
#include "StationDatabase.h"
#include "ViewerWindow.h"

#include "platform/DbConnection.h"

#include <QFile>
#include <QImage>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSqlError>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using quarry::test::Engine;
using quarry::test::SampleStation;

namespace quarry::viewer {

namespace {

LogCatalogue sampleCatalogue()
{
    return LogCatalogue::read(qEnvironmentVariable("QUARRY_SOURCE_DIR") + u"/data/sample/logs.ini"_s);
}

// A catalogue of the text, as logs.ini in dir.
LogCatalogue catalogue(const QTemporaryDir &dir, const QByteArray &text)
{
    QFile file(dir.filePath(u"logs.ini"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("Cannot write %s", qPrintable(file.fileName()));
    file.close();
    return LogCatalogue::read(file.fileName());
}

int entryIndex(const QString &logType)
{
    const QList<LogEntry> entries = sampleCatalogue().entries();
    for (qsizetype i = 0; i < entries.size(); ++i) {
        if (entries[i].logType == logType)
            return int(i);
    }
    qFatal("No %s in the sample catalogue", qPrintable(logType));
}

QString text(const ViewerWindow &window, const QString &name)
{
    if (const auto *label = window.findChild<QLabel *>(name))
        return label->isVisible() ? label->text() : QString();
    return window.findChild<QPlainTextEdit *>(name)->toPlainText();
}

QAbstractItemModel *rows(const ViewerWindow &window)
{
    return window.findChild<QTableView *>(u"resultTable"_s)->model();
}

// The first value of a statement run on the station's seal database.
QVariant firstValue(SampleStation &station, const QString &sql)
{
    DbConnection db;
    station.seal().prepare(db);
    db.open(station.seal().connectionString(), u"BISOL"_s, u"KORMANTE"_s, true);
    QSqlQuery query(db.database());
    if (!query.exec(sql) || !query.next())
        qFatal("%s: %s", qPrintable(sql), qPrintable(query.lastError().text()));
    return query.value(0);
}

// A station whose seal.ini asks no confirmation of an empty query.
#define OPEN_STATION(station, engine)                                                              \
    QUARRY_REQUIRE_ENGINE(engine);                                                                 \
    SampleStation station(engine);                                                                 \
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));                                  \
    station.writeIni("[USER]\nQueryHintMode=0\n")

} // namespace

class TestViewerWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void query_data();
    void query();
    void cancelRunsNothing();
    void missingTable();
    void serverDown();
    void statistics_data();
    void statistics();
    void csvExport();
    void pages_data();
    void pages();
    void pageLost();
};

void TestViewerWindow::query_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QString>("logType");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("dialog");
    QTest::addColumn<QString>("sqlHead");
    QTest::addColumn<QString>("count"); // SQL counting the rows on their own

    for (Engine engine : {Engine::Sqlite, Engine::MariaDb}) {
        const QByteArray name = quarry::test::engineName(engine).toLatin1();
        QTest::addRow("%s: verification log, all", name.data()) << engine << u"YYRZ"_s << QStringList{u"BtnOk!"_s}
            << u"frmYYLog"_s << u"SELECT * FROM YYLOG where Opcode Like '%'"_s << u"SELECT COUNT(*) FROM YYLOG"_s;
        QTest::addRow("%s: cheque list from the database", name.data()) << engine << u"ZPGLRZ"_s
            << QStringList{u"ComPZ"_s, u"Return"_s, u"CmdYes!"_s} << u"frmZPGLLog"_s << u"SELECT * FROM ZPGLLOG where (accno like '%')"_s
            << u"SELECT COUNT(*) FROM ZPGLLOG WHERE pztype = '现金支票'"_s;
    }
}

void TestViewerWindow::query()
{
    QFETCH(Engine, engine);
    QFETCH(QString, logType);
    QFETCH(QStringList, steps);
    QFETCH(QString, dialog);
    QFETCH(QString, sqlHead);
    QFETCH(QString, count);
    OPEN_STATION(station, engine);
    const qint64 expected = firstValue(station, count).toLongLong();
    QVERIFY(expected > 0);

    ViewerWindow window(sampleCatalogue());
    window.show();
    const auto outcome = quarry::test::operate([&] { window.runLog(entryIndex(logType)); }, steps);
    QCOMPARE(outcome.dialog, dialog); // modal and without owner, as a host shows it
    QCOMPARE(text(window, u"errorLabel"_s), QString());
    QVERIFY2(text(window, u"sqlText"_s).startsWith(sqlHead), qPrintable(text(window, u"sqlText"_s)));
    QVERIFY2(text(window, u"statusLabel"_s).contains(u"共 %1 行，用时 "_s.arg(expected)),
             qPrintable(text(window, u"statusLabel"_s)));
    QCOMPARE(rows(window)->rowCount(), expected);
}

void TestViewerWindow::cancelRunsNothing()
{
    OPEN_STATION(station, Engine::Sqlite);
    ViewerWindow window(sampleCatalogue());
    window.show();
    quarry::test::operate([&] { window.runLog(entryIndex(u"YYRZ"_s)); }, {u"BtnOk!"_s});
    QVERIFY(rows(window)->rowCount() > 0);
    const QString ran = text(window, u"sqlText"_s);

    const auto outcome = quarry::test::operate([&] { window.runLog(entryIndex(u"YWRZ"_s)); }, {u"TxtHy=0011"_s, u"BtnCancel!"_s});
    QCOMPARE(outcome.dialog, u"frmYWLog"_s);
    QCOMPARE(text(window, u"statusLabel"_s), u"已取消：未执行查询。"_s);
    QCOMPARE(text(window, u"sqlText"_s), ran); // the last statement that ran
}

// A table the database does not have: its own words in the window, which
// goes on working.
void TestViewerWindow::missingTable()
{
    OPEN_STATION(station, Engine::Sqlite);
    QTemporaryDir dir;
    ViewerWindow window(catalogue(dir, "[Catalogue]\nLogs=XXRZ, PTFHRZ\n[XXRZ]\nTitle=x\nTable=NOSUCHLOG\nKey=LOGID\n[PTFHRZ]\nTitle=p\nTable=PTFHLOG\nKey=LOGID\n"));
    window.show();

    quarry::test::operate([&] { window.runLog(0); }, {u"BtnOk!"_s});
    QVERIFY2(text(window, u"errorLabel"_s).startsWith(u"查询失败："_s)
                 && text(window, u"errorLabel"_s).contains(u"no such table: NOSUCHLOG"_s),
             qPrintable(text(window, u"errorLabel"_s)));
    QCOMPARE(rows(window)->rowCount(), 0);

    quarry::test::operate([&] { window.runLog(1); }, {u"BtnOk!"_s});
    QCOMPARE(text(window, u"errorLabel"_s), QString());
    QCOMPARE(rows(window)->rowCount(), firstValue(station, u"SELECT COUNT(*) FROM PTFHLOG"_s).toInt());
}

// seal.ini names a server that does not answer: the connection fails with
// the driver's text, for a list read from the database and for a query.
void TestViewerWindow::serverDown()
{
    QUARRY_REQUIRE_MARIADB();
    SampleStation station(Engine::MariaDb);
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    station.writeIni("[USER]\nQueryHintMode=0\n", u"127.0.0.1:1"_s);
    ViewerWindow window(sampleCatalogue());
    window.show();

    const auto outcome = quarry::test::operate([&] { window.runLog(entryIndex(u"PTFHRZ"_s)); }, {u"BtnOk!"_s});
    QVERIFY(outcome.shown);
    QVERIFY2(text(window, u"errorLabel"_s).contains(u"连接不上"_s), qPrintable(text(window, u"errorLabel"_s)));
    // The cheque log's voucher list is read first: no dialog without it.
    const auto noDialog = quarry::test::operate([&] { window.runLog(entryIndex(u"ZPGLRZ"_s)); }, {u"CmdYes!"_s});
    QVERIFY(!noDialog.shown);
    QVERIFY2(text(window, u"errorLabel"_s).contains(u"Can't connect"_s), qPrintable(text(window, u"errorLabel"_s)));

    station.writeIni("[USER]\nQueryHintMode=0\n");
    ViewerWindow working(sampleCatalogue());
    quarry::test::operate([&] { working.runLog(entryIndex(u"PTFHRZ"_s)); }, {u"BtnOk!"_s});
    QCOMPARE(text(working, u"errorLabel"_s), QString());
}

void TestViewerWindow::statistics_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addRow("sqlite") << Engine::Sqlite;
    QTest::addRow("mariadb") << Engine::MariaDb;
}

// MariaDB runs the MySQL form of the statement; the SQLite file gets the
// SQL Server form, which it cannot run: the window says so.
void TestViewerWindow::statistics()
{
    QFETCH(Engine, engine);
    OPEN_STATION(station, engine);
    ViewerWindow window(sampleCatalogue());
    window.show();
    quarry::test::operate([&] { window.runLog(entryIndex(u"SEALRESULTSTAT"_s)); },
                          {u"maskEndDate"_s, u"Return"_s, u"cmdOK!"_s}, QMessageBox::Yes);
    auto *chart = window.findChild<PassRateChart *>(u"passRateChart"_s);
    if (engine == Engine::Sqlite) {
        QVERIFY2(text(window, u"errorLabel"_s).startsWith(u"查询失败："_s), qPrintable(text(window, u"errorLabel"_s)));
        QVERIFY(!chart->isVisible());
        return;
    }
    QCOMPARE(text(window, u"errorLabel"_s), QString());
    QVERIFY(chart->isVisible());
    QAbstractItemModel *model = rows(window);
    const QList<std::pair<QString, double>> rates = chart->rates();
    QCOMPARE(rates.size(), model->rowCount());
    QVERIFY(rates.size() > 1);
    for (int row = 0; row < model->rowCount(); ++row) {
        const QString opcode = model->index(row, 2).data().toString();
        const double total = model->index(row, 3).data().toDouble();
        const double passed = model->index(row, 4).data().toDouble();
        QCOMPARE(rates[row].first, opcode);
        QCOMPARE(rates[row].second, passed * 100.0 / total);
        // The statement's own percent text rounds the same rate.
        QCOMPARE(model->index(row, 6).data().toString(), QString::number(passed * 100.0 / total, 'f', 2) + u'%');
    }

    QTemporaryDir dir;
    const QString png = dir.filePath(u"rates.png"_s);
    QVERIFY(window.exportChartPng(png));
    // The whole chart, with a line of its own for each operator's name.
    const QImage image(png);
    QVERIFY(!image.isNull());
    QVERIFY(image.height() > rates.size() * chart->fontMetrics().height() * chart->devicePixelRatio());
}

void TestViewerWindow::csvExport()
{
    OPEN_STATION(station, Engine::Sqlite);
    ViewerWindow window(sampleCatalogue());
    window.show();
    quarry::test::operate([&] { window.runLog(entryIndex(u"ZGSQRZ"_s)); }, {u"TxtCha=0013"_s, u"Command1!"_s});
    const qint64 expected = firstValue(station, u"SELECT COUNT(*) FROM ZGSQLOG WHERE ZGCODE = '0013'"_s).toLongLong();
    QVERIFY(expected > 0);

    QTemporaryDir dir;
    const QString path = dir.filePath(u"zgsq.csv"_s);
    QVERIFY(window.exportCsv(path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.startsWith("\xEF\xBB\xBF" "LOGID,ZGCODE,ZGNAME,Opcode,ACCNO,OPTYPE,Opdate,Optime,wdh\r\n"));
    QCOMPARE(bytes.count("\r\n"), expected + 1);
    const QString first = QString::fromUtf8(bytes.split('\n').at(1));
    QVERIFY2(first.split(u',').at(1) == u"0013"_s && first.split(u',').at(2) == firstValue(station, u"SELECT HYNAME FROM HY WHERE HYDH = '0013'"_s).toString(),
             qPrintable(first));
}

namespace {

// 40 keys that need quoting in a literal, each of them unique in any letter
// case. The ODBC driver quotes for SQL Server, where a backslash is an
// ordinary character; the MariaDB behind it here reads one as an escape.
QStringList pagedKeys(Engine engine)
{
    QStringList heads{u"'"_s, u"''"_s, u"%"_s, u"_"_s, u"中"_s, u"a"_s};
    if (engine != Engine::MariaDbOdbc)
        heads += {u"\\"_s, u"\\'"_s};
    QStringList keys;
    for (int i = 0; i < 40; ++i)
        keys.append(heads[i % heads.size()] + u"%1"_s.arg(i, 2, 10, QChar(u'0')));
    return keys;
}

// The rows the view asks for: all of them, in a list of row numbers.
QList<int> span(int first, int last)
{
    QList<int> rows;
    for (int row = first; first <= last ? row <= last : row >= last; row += first <= last ? 1 : -1)
        rows.append(row);
    return rows;
}

} // namespace

void TestViewerWindow::pages_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QList<int>>("visits");
    QTest::addColumn<bool>("unpaged"); // as Sybase reads, instead of the station's engine's way
    for (Engine engine : quarry::test::allEngines()) {
        const QByteArray name = quarry::test::engineName(engine).toLatin1();
        // Pages of 3, of which 8 are kept: each pass reads most of them anew.
        // ODBC stands for SQL Server, which pages with OFFSET ... FETCH.
        QTest::addRow("%s: down, then up", name.data()) << engine << span(0, 39) + span(39, 0) << false;
        QTest::addRow("%s: jumps", name.data()) << engine << QList<int>{39, 0, 20, 21, 22, 23, 2, 38, 1} << false;
    }
    QTest::addRow("sqlite: all at once") << Engine::Sqlite << QList<int>{39, 0, 20} << true;
}

// Each row shown is the row of that number in the engine's own order.
void TestViewerWindow::pages()
{
    QFETCH(Engine, engine);
    QFETCH(QList<int>, visits);
    QFETCH(bool, unpaged);
    OPEN_STATION(station, engine);
    QString script = u"CREATE TABLE PAGED (K VARCHAR(20) NOT NULL PRIMARY KEY, N INTEGER);\n"_s;
    const QStringList keys = pagedKeys(engine);
    for (qsizetype i = 0; i < keys.size(); ++i)
        script += u"INSERT INTO PAGED VALUES ('%1', %2);\n"_s.arg(QString(keys[i]).replace(u"'"_s, u"''"_s)).arg(i);
    station.changeSeal(script);
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));

    StationDatabase database;
    QCOMPARE(database.open(), QString());
    QStringList ordered;
    QSqlQuery all(database.database());
    QVERIFY(all.exec(u"SELECT K FROM PAGED ORDER BY K"_s));
    while (all.next())
        ordered.append(all.value(0).toString());
    QCOMPARE(ordered.size(), keys.size());

    LogRowsModel model(3);
    QSignalSpy failed(&model, &LogRowsModel::readFailed);
    const QSqlError error = model.setQuery(database.database(), u"SELECT * FROM PAGED WHERE N >= 0"_s, u"k"_s, unpaged ? Paging::None : database.paging());
    QVERIFY2(!error.isValid(), qPrintable(error.text()));
    QCOMPARE(model.rowCount(), keys.size());
    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), u"K"_s);
    for (int row : std::as_const(visits))
        QCOMPARE(model.index(row, 0).data().toString(), ordered[row]);
    QVERIFY2(!model.lastError().isValid(), qPrintable(model.lastError().text()));
    QCoreApplication::processEvents();
    QCOMPARE(failed.size(), 0);
}

// The table goes while its rows are shown: the window says so, and an
// export leaves no file.
void TestViewerWindow::pageLost()
{
    OPEN_STATION(station, Engine::Sqlite);
    station.changeSeal(u"CREATE TABLE GONE AS SELECT * FROM PTFHLOG;\n"_s);
    QTemporaryDir dir;
    ViewerWindow window(catalogue(dir, "[Catalogue]\nLogs=PTFHRZ\n[PTFHRZ]\nTitle=g\nTable=GONE\nKey=LOGID\n"));
    window.show();
    quarry::test::operate([&] { window.runLog(0); }, {u"BtnOk!"_s});
    QVERIFY(rows(window)->rowCount() > 1000); // more than the first page
    station.changeSeal(u"DROP TABLE GONE;\n"_s);
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));

    const QString csv = dir.filePath(u"gone.csv"_s);
    QVERIFY(!window.exportCsv(csv));
    QVERIFY(!QFile::exists(csv));
    QTRY_VERIFY2(text(window, u"errorLabel"_s).startsWith(u"读取结果失败："_s), qPrintable(text(window, u"errorLabel"_s)));
    QVERIFY2(text(window, u"errorLabel"_s).contains(u"no such table: GONE"_s), qPrintable(text(window, u"errorLabel"_s)));
    QCOMPARE(rows(window)->rowCount(), 0);
}

} // namespace quarry::viewer

QTEST_MAIN(quarry::viewer::TestViewerWindow)
#include "tst_viewerwindow.moc"
