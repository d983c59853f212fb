// quarry-viewer's window on the sample station: the component's dialog asks,
// the rows show under labels that say what they are (and keep saying it
// after a cancelled dialog), each fault is told once in the window and the
// error log while the window goes on working, the statistics get their
// chart where they run and a sentence where they do not, and the rows
// export as labelled. The rows' model reads pages in any order of visits
// and with keys that need quoting, under Qt's model tester.

#include "DialogDriver.h"
#include "SampleLogs.h"

#include "LogCatalogue.h"
#include "rows/LogRowsModel.h"
#include "rows/RowStream.h"
#include "output/ExportActions.h"
#include "output/PassRateChart.h"
#include "ReadRows.h"
#include "TestFiles.h"
#include "rows/StationDatabase.h"
#include "window/LogTable.h"
#include "window/ViewerWindow.h"

#include <QAbstractItemModelTester>
#include <QAbstractProxyModel>
#include <QAction>
#include <QElapsedTimer>
#include <QClipboard>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScopeGuard>
#include <QScrollBar>
#include <QSet>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QSqlError>
#include <QSqlQuery>
#include <QTableView>
#include <QWheelEvent>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <numeric>
#include <optional>

using namespace Qt::StringLiterals;
using quarry::test::Engine;
using quarry::test::Row;
using quarry::test::SampleStation;

namespace quarry::viewer {

namespace {

const QByteArray NoHint = "[USER]\nQueryHintMode=0\n";

LogCatalogue sampleCatalogue()
{
    return LogCatalogue::read(quarry::test::sampleCataloguePath());
}

// The viewer's window over the logs, shown.
struct ShownWindow : ViewerWindow
{
    explicit ShownWindow(const LogCatalogue &logs = sampleCatalogue()) : ViewerWindow(logs) { show(); }
};

// A catalogue of the text, as logs.ini in dir.
LogCatalogue catalogue(const QTemporaryDir &dir, const QByteArray &text)
{
    quarry::test::writeFile(dir.filePath(u"logs.ini"_s), text);
    return LogCatalogue::read(dir.filePath(u"logs.ini"_s));
}

// A label's text while the operator can see it, "" while hidden.
QString shown(const ViewerWindow &window, const QString &name)
{
    const auto *label = window.findChild<QLabel *>(name);
    return label->isVisibleTo(&window) && window.isVisible() ? label->text() : QString();
}

QString sql(const ViewerWindow &window)
{
    return window.findChild<QPlainTextEdit *>(u"sqlText"_s)->toPlainText();
}

// The window's export actions, which its buttons reach through a save dialog.
ExportActions &exports(const ViewerWindow &window)
{
    return *window.findChild<ExportActions *>();
}

LogTable *table(const ViewerWindow &window)
{
    return window.findChild<LogTable *>(u"resultTable"_s);
}

// The log's rows, of which the table shows those on view.
const QAbstractItemModel &logRows(const ViewerWindow &window)
{
    return *qobject_cast<const QAbstractProxyModel *>(table(window)->model())->sourceModel();
}

// Waits while the window reads in the background; false when it still
// does after the wait limit.
bool settle(const ViewerWindow &window)
{
    const auto *busy = window.findChild<QProgressBar *>(u"queryProgress"_s);
    return QTest::qWaitFor([busy, &window] { return !busy->isVisibleTo(&window); }, test::WaitLimit);
}

// The dialog of the log chosen in the list and queried, operated by steps,
// and the rows read.
quarry::test::Outcome run(ViewerWindow &window, const QString &logType, const QStringList &steps,
                          QMessageBox::StandardButton answer = QMessageBox::Ok)
{
    auto *logs = window.findChild<QListWidget *>(u"logList"_s);
    logs->setCurrentItem(logs->findItems(u"  "_s + logType, Qt::MatchEndsWith).value(0));
    auto *query = window.findChild<QPushButton *>(u"queryButton"_s);
    const auto outcome = quarry::test::operate([query] { query->click(); }, steps, answer);
    settle(window);
    return outcome;
}

} // namespace

class TestViewerWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void query_data();
    void query();
    void tools();
    void saveDialogs_data();
    void saveDialogs();
    void faults_data();
    void faults();
    void noLogFolder();
    void statistics_data();
    void statistics();
    void pages_data();
    void pages();
    void slowPage();
    void sortedOnce_data();
    void sortedOnce();
    void sortedBeforeTheCount();
    void pageLost();
    void countTold_data();
    void countTold();
    void scrolling_data();
    void scrolling();
    void barsSettle();
    void titlesFollow();
    void copyAtMost();

private:
    QTemporaryDir m_drives; // where an error log without a station lands
    QTemporaryDir m_home;   // the user's, with the documents folder
};

void TestViewerWindow::initTestCase()
{
    qputenv("HOME", QFile::encodeName(m_home.path()));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home.path())); // without user-dirs.dirs
    QVERIFY(QDir(m_home.path()).mkpath(u"Documents"_s));
}

void TestViewerWindow::init()
{
    qputenv("QUARRY_DRIVES", QFile::encodeName(m_drives.path()));
}

void TestViewerWindow::query_data()
{
    quarry::test::addEngineRows(quarry::test::logEngines());
}

// The cheque list, its voucher type from the database: the rows, labelled
// with the log, the station and their count; the window title names the
// log; titles from the catalogue over columns wide enough for their values.
void TestViewerWindow::query()
{
    QFETCH(Engine, engine);
    QUARRY_SAMPLE_STATION(station, engine, NoHint);
    const qint64 expected = quarry::test::sealRows(station, u"SELECT COUNT(*) AS n FROM ZPGLLOG WHERE pztype = '现金支票'"_s).value(0).value(u"n"_s).toLongLong();
    QVERIFY(expected > 0);

    ShownWindow window;
    const QList<LogEntry> entries = sampleCatalogue().entries();
    const LogEntry entry = *std::find_if(entries.cbegin(), entries.cend(),
                                         [](const LogEntry &e) { return e.logType == "ZPGLRZ"_L1; });
    // Modal and without owner, as a host shows it.
    QCOMPARE(run(window, u"ZPGLRZ"_s, {u"ComPZ"_s, u"Return"_s, u"CmdYes!"_s}).dialog, u"frmZPGLLog"_s);
    QVERIFY2(sql(window).startsWith(u"SELECT * FROM ZPGLLOG where (accno like '%')"_s), qPrintable(sql(window)));
    const QString label = shown(window, u"resultLabel"_s);
    for (const QString &part : {entry.title, entry.logType, StationDatabase().describe(), u"共 %1 行"_s.arg(expected)})
        QVERIFY2(label.contains(part), qPrintable(label + u" lacks "_s + part));
    QVERIFY2(window.windowTitle().startsWith(entry.title), qPrintable(window.windowTitle()));
    QTableView *view = table(window);
    QCOMPARE(logRows(window).rowCount(), expected);
    const int account = 1; // accno, after LOGID
    QCOMPARE(view->model()->headerData(account, Qt::Horizontal).toString(), u"账号"_s);
    const int fitting = qMax(static_cast<QAbstractItemView *>(view)->sizeHintForColumn(account),
                             view->horizontalHeader()->sectionSizeHint(account));
    QCOMPARE(view->columnWidth(account), fitting); // as wide as its widest value or title

    // The export reads the rows anew on the station's engine, in the order on view.
    QTemporaryDir dir;
    QVERIFY(exports(window).exportCsv(dir.filePath(u"rows.csv"_s)));
    const QStringList lines = QString::fromUtf8(quarry::test::readFile(dir.filePath(u"rows.csv"_s))).split(u"\r\n"_s, Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), expected + 1);
    QCOMPARE(lines[1].section(u',', 0, 0), view->model()->index(0, 0).data().toString());
}

// A cancelled dialog of another log leaves the rows on screen labelled as
// they were. Then what an auditor reaches for: an export writes the rows
// under their titles, with the descriptions beside their codes; a column's
// title sorts on the database (the SQL shown says so), Ctrl+C copies the
// selected cells as a table, and the rows go to Excel and to a report of the
// station's rows per page.
void TestViewerWindow::tools()
{
    QUARRY_SAMPLE_STATION(station, Engine::Sqlite, NoHint + "[BANKPARAM]\nPRINTLINES=2\n");
    ShownWindow window;
    QVERIFY(!exports(window).exportPdf(m_home.filePath(u"none.pdf"_s))); // nothing to export yet
    QCOMPARE(window.statusBar()->currentMessage(), u"没有可导出的结果：请先查询。"_s);
    run(window, u"HYRZ"_s, {u"TxtHy=0011"_s, u"BtnOk!"_s});
    const qint64 rows = quarry::test::sealRows(station, u"SELECT COUNT(*) AS n FROM HYLog WHERE Opcode = '0011'"_s).value(0).value(u"n"_s).toLongLong();
    const QStringList before{shown(window, u"resultLabel"_s), sql(window), window.windowTitle()};

    QCOMPARE(run(window, u"YWRZ"_s, {u"TxtHy=0012"_s, u"BtnCancel!"_s}).dialog, u"frmYWLog"_s);
    QCOMPARE((QStringList{shown(window, u"resultLabel"_s), sql(window), window.windowTitle()}), before);

    // The first save dialog opens in the user's documents, the next one where
    // the last file went.
    QTemporaryDir dir;
    QStringList opened;
    for (const bool save : {true, false}) {
        quarry::test::ModalWatch watch(nullptr, [&](QWidget *widget) {
            auto *dialog = qobject_cast<QFileDialog *>(widget);
            opened << (dialog ? dialog->directory().absolutePath() : widget->objectName());
            if (dialog)
                dialog->selectFile(dir.filePath(u"hy.csv"_s));
            QTest::keyClick(widget, save ? Qt::Key_Return : Qt::Key_Escape);
        });
        window.findChild<QPushButton *>(u"exportCsvButton"_s)->click();
    }
    QCOMPARE(opened, (QStringList{m_home.filePath(u"Documents"_s), dir.path()}));
    // A file that cannot be written is a fault, said and logged.
    QVERIFY(!exports(window).exportCsv(dir.filePath(u"none/hy.csv"_s)));
    QVERIFY2(shown(window, u"errorLabel"_s).contains(u"无法写入"_s), qPrintable(shown(window, u"errorLabel"_s)));
    const QStringList lines = QString::fromUtf8(quarry::test::readFile(dir.filePath(u"hy.csv"_s))).split(u"\r\n"_s, Qt::SkipEmptyParts);
    QCOMPARE(lines[0], u"序号,操作柜员,操作柜员姓名,复核柜员,复核柜员姓名,操作类型,所涉柜员,说明,日期,时间,网点号"_s);
    const Row first = quarry::test::sealRows(station, u"SELECT OPTYPE, Memo FROM HYLog WHERE Opcode = '0011' ORDER BY Opdate DESC, Optime DESC, LOGID DESC"_s).value(0);
    QCOMPARE(lines[1].split(u',').at(5), first[u"optype"_s] + u' ' + first[u"memo"_s]); // "1 增加行员"

    // The log opens newest first; a title's first click sorts by its column
    // going up, the second going down, the third returns to the log's own
    // order; each order starts at the top left.
    QTableView *view = table(window);
    window.resize(320, 300);
    const auto firstKey = [&station](const char *order) {
        return quarry::test::sealRows(station, u"SELECT LOGID FROM HYLog WHERE Opcode = '0011' ORDER BY "_s + QLatin1StringView(order)).value(0).value(u"logid"_s);
    };
    const QString newest = firstKey("Opdate DESC, Optime DESC, LOGID DESC");
    QCOMPARE(view->model()->index(0, 0).data().toString(), newest);
    QHeaderView *header = view->horizontalHeader();
    const QStringList clicked{firstKey("OPTYPE, LOGID"), firstKey("OPTYPE DESC, LOGID DESC"), newest};
    for (const QString &first : clicked) {
        view->scrollToBottom();
        view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->maximum());
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, {header->sectionViewportPosition(5) + 4, header->height() / 2}); // 操作类型, OPTYPE
        QVERIFY(settle(window));
        QCOMPARE(view->model()->index(0, 0).data().toString(), first);
        QCOMPARE(view->verticalScrollBar()->value(), 0);
        QCOMPARE(view->horizontalScrollBar()->value(), 0);
    }

    const QAbstractItemModel &model = *view->model();
    // The second row: it is read from a statement that starts there.
    view->selectionModel()->select(QItemSelection(model.index(1, 0), model.index(1, 1)), QItemSelectionModel::Select);
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    view->setFocus();
    QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
    const QString block = u"%1\t%2\n"_s.arg(model.index(1, 0).data().toString(), model.index(1, 1).data().toString());
    QCOMPARE(QGuiApplication::clipboard()->text(), block);
    // Kept by the log's rows: the same rows copied away from them, and
    // selected on view again on the way back.
    QScrollBar *bar = view->verticalScrollBar();
    QVERIFY(bar->maximum() > 2);
    bar->setValue(bar->maximum());
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), block);
    bar->setValue(0);
    QCOMPARE(view->selectionModel()->selectedIndexes().size(), 2);
    QVERIFY(view->selectionModel()->isSelected(model.index(1, 1)));

    QVERIFY(exports(window).exportSelectionXlsx(dir.filePath(u"block.xlsx"_s))); // the row copied
    QVERIFY2(window.statusBar()->currentMessage().contains(u"的 1 行"_s), qPrintable(window.statusBar()->currentMessage()));
    // Ctrl+A selects every row of the log, not those on view.
    QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
    const QStringList copied = QGuiApplication::clipboard()->text().split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(copied.size(), rows);
    QCOMPARE(copied.last().section(u'\t', 0, 0), firstKey("Opdate, Optime, LOGID"));
    view->clearSelection();
    QVERIFY(!exports(window).exportSelectionXlsx(dir.filePath(u"none.xlsx"_s)));
    QCOMPARE(window.statusBar()->currentMessage(), u"没有选中的单元格：请先在表格中选择要导出的行或单元格。"_s);
    QVERIFY(exports(window).exportPdf(dir.filePath(u"hy.pdf"_s)));
    static const QRegularExpression page(u"/Type\\s*/Page[^s]"_s);
    QCOMPARE(QString::fromLatin1(quarry::test::readFile(dir.filePath(u"hy.pdf"_s))).count(page), (rows + 1) / 2);
}

// Each export button, and the table's menu item, opens its own save dialog
// for its own kind of file; the print button opens the preview.
void TestViewerWindow::saveDialogs_data()
{
    QTest::addColumn<QString>("control"); // a button's object name or a menu item's text
    QTest::addColumn<QString>("dialog");  // the dialog's title and the suffix of the file it offers
    QTest::newRow("csv") << u"exportCsvButton"_s << u"导出 CSV csv"_s;
    QTest::newRow("excel") << u"exportXlsxButton"_s << u"导出 Excel xlsx"_s;
    QTest::newRow("pdf") << u"exportPdfButton"_s << u"导出 PDF pdf"_s;
    QTest::newRow("chart") << u"exportPngButton"_s << u"导出图表 png"_s;
    QTest::newRow("selection") << u"导出所选到 Excel…"_s << u"导出所选到 Excel xlsx"_s;
    QTest::newRow("preview") << u"printButton"_s << u"打印预览 — 行员日志 "_s;
}

void TestViewerWindow::saveDialogs()
{
    QFETCH(QString, control);
    QFETCH(QString, dialog);
    QUARRY_SAMPLE_STATION(station, Engine::Sqlite, NoHint);
    ShownWindow window;
    run(window, u"HYRZ"_s, {u"TxtHy=0011"_s, u"BtnOk!"_s});
    QString seen;
    quarry::test::ModalWatch watch(nullptr, [&seen](QWidget *widget) {
        const auto *files = qobject_cast<QFileDialog *>(widget);
        seen = widget->windowTitle() + u' ' + (files ? QFileInfo(files->selectedFiles().value(0)).suffix() : QString());
        QTest::keyClick(widget, Qt::Key_Escape);
    });
    if (auto *button = window.findChild<QPushButton *>(control))
        button->click();
    for (QAction *action : table(window)->actions())
        if (action->text() == control)
            action->trigger();
    QCOMPARE(seen, dialog);
}

namespace {

enum Fault { NoStation, MissingFile, ServerDown, MissingTable, MissingList };

// Puts the fault in; the returned function takes it out again.
std::function<void()> breakStation(int fault, SampleStation &station, const QTemporaryDir &empty)
{
    const QString seal = QDir(station.folder()).filePath(u"SEAL.db"_s);
    switch (fault) {
    case NoStation:
        qputenv("QUARRY_SYSTEM_DIR", QFile::encodeName(empty.path()));
        return [&station] { station.writeIni(NoHint); };
    case MissingFile:
        QFile::rename(seal, seal + u".away"_s);
        return [seal] { QFile::rename(seal + u".away"_s, seal); };
    case ServerDown:
        station.writeIni(NoHint, u"127.0.0.1:1"_s);
        return [&station] { station.writeIni(NoHint); };
    case MissingTable:
    case MissingList:
        break;
    }
    return [] {};
}

} // namespace

void TestViewerWindow::faults_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<int>("fault");
    QTest::addColumn<QString>("logType");
    QTest::addColumn<QString>("ok"); // the dialog's OK button
    QTest::addColumn<QStringList>("said"); // by the station's banner, then the window, in this order

    const QString blocked = u"本站点现在不能查询，请管理员处理："_s;
    QTest::newRow("no station") << Engine::Sqlite << int(NoStation) << u"PTFHRZ"_s << u"BtnOk"_s
                                << QStringList{blocked, u"未找到站点配置"_s, u"seal.ini"_s, u"CONVERT.INI"_s, u"QUARRY_SYSTEM_DIR"_s};
    QTest::newRow("missing file") << Engine::Sqlite << int(MissingFile) << u"YWRZ"_s << u"BtnOk"_s
                                  << QStringList{blocked, u"验印数据库 SEAL 打不开："_s, u"SEAL.db"_s, u"处理："_s};
    QTest::newRow("server down") << Engine::MariaDb << int(ServerDown) << u"ZPGLRZ"_s << u"CmdYes"_s
                                 << QStringList{blocked, u"（服务器 127.0.0.1:1）打不开："_s, u"quarry_seal_"_s, u"连接不上"_s, u"Can't connect"_s};
    QTest::newRow("missing table") << Engine::Sqlite << int(MissingTable) << u"XXRZ"_s << u"BtnOk"_s
                                   << QStringList{u"本站点有以下问题"_s, u"读不到表 NOSUCHLOG"_s, u"在嵌入式数据库 SEAL"_s, u"上查询失败："_s, u"no such table: NOSUCHLOG"_s};
    QTest::newRow("missing list table") << Engine::Sqlite << int(MissingList) << u"ZPGLRZ"_s << u"CmdYes"_s
                                        << QStringList{u"在嵌入式数据库 SEAL"_s, u"上读取代码表失败："_s, u"no such table: NOSUCHLIST"_s};
}

// What is wrong with the station is said once, in the banner that names
// what failed and where with the administrator's next step, and appended
// to the error log once however often the operator tries; no dialog is
// shown over a station the component cannot use (its own boxes would say
// it again, a branch lookup would blame the branch). A station that can be
// used runs its queries, whose faults the window says. The same window's
// next query, with the fault gone, shows the rows.
void TestViewerWindow::faults()
{
    QFETCH(Engine, engine);
    QFETCH(int, fault);
    QFETCH(QString, logType);
    QFETCH(QString, ok);
    QFETCH(QStringList, said);
    QUARRY_SAMPLE_STATION(station, engine, NoHint);
    station.clearErrorLog();
    QTemporaryDir dir;
    const bool inCatalogue = fault == MissingTable || fault == MissingList;
    // The station check finds the missing table too.
    const QByteArray missing = fault == MissingTable ? "XXRZ, " : "";
    const QByteArray list = fault == MissingList ? "NOSUCHLIST" : "P_FIELD_VAL_DEF";
    LogCatalogue logs = catalogue(dir, "[Catalogue]\nLogs=" + missing + "PTFHRZ, YWRZ, ZPGLRZ\n[XXRZ]\nTitle=x\nTable=NOSUCHLOG\nKey=LOGID\n"
                                       "[PTFHRZ]\nTitle=p\nTable=PTFHLOG\nKey=LOGID\n[YWRZ]\nTitle=y\nTable=YWLOG\nKey=LOGID\nShowWDH=true\n"
                                       "[ZPGLRZ]\nTitle=z\nTable=ZPGLLOG\nKey=LOGID\nListASql=SELECT FieldValue, ValueDescr FROM " + list + "\n");
    ShownWindow window(logs);
    // The check at start sees the station whole, not half broken.
    const auto *banner = window.findChild<QLabel *>(u"stationBanner"_s);
    QTRY_VERIFY_WITH_TIMEOUT(banner->findChildren<QThread *>().isEmpty(), test::WaitLimit);
    // Taken out again before the next query, or when the test fails first.
    std::optional repair(qScopeGuard(breakStation(fault, station, dir)));

    QCOMPARE(run(window, logType, {ok + u'!'}).shown, fault == MissingTable);
    QCOMPARE(run(window, logType, {ok + u'!'}).shown, fault == MissingTable);
    const QString message = shown(window, u"stationBanner"_s) + u'\n' + shown(window, u"errorLabel"_s);
    qsizetype at = 0;
    for (const QString &part : std::as_const(said)) {
        at = message.indexOf(part, at);
        QVERIFY2(at >= 0, qPrintable(message + u" lacks "_s + part));
    }
    QVERIFY2(!message.contains(u"网点号不存在"_s), qPrintable(message));
    const QString log = fault == NoStation ? QString::fromUtf8(quarry::test::readFile(m_drives.filePath(u"c/errorpath/error.txt"_s)))
                                           : station.errorLog();
    QCOMPARE(log.count(u"StationCheck"_s), fault == MissingList ? 0 : 1);
    QVERIFY2(log.contains(said[1]), qPrintable(log));
    QCOMPARE(log.count(u"quarry-viewer"_s), inCatalogue ? 2 : 0); // each query tries again
    QCOMPARE(logRows(window).rowCount(), 0);

    repair.reset();
    // A fault of the catalogue stays: another log of it works.
    run(window, inCatalogue ? u"PTFHRZ"_s : logType, {inCatalogue ? u"BtnOk!"_s : ok + u'!'});
    QCOMPARE(shown(window, u"errorLabel"_s), QString());
    QCOMPARE(shown(window, u"stationBanner"_s) == QString(), fault != MissingTable);
    QVERIFY(logRows(window).rowCount() > 0);
}

// A station whose error log cannot be written is still queried; the banner
// says why nothing is logged, and says it once.
void TestViewerWindow::noLogFolder()
{
    QUARRY_SAMPLE_STATION(station, Engine::Sqlite, NoHint);
    const QString ini = QDir(station.folder()).filePath(u"seal.ini"_s);
    quarry::test::writeFile(ini, quarry::test::readFile(ini).replace("/log\n", "/no/log\n"));
    ShownWindow window;
    QTRY_VERIFY(!shown(window, u"stationBanner"_s).isEmpty()); // from the check at start
    const QString banner = shown(window, u"stationBanner"_s);
    QVERIFY2(banner.startsWith(u"本站点有以下问题"_s) && banner.contains(u"/no/log"_s), qPrintable(banner));
    QCOMPARE(banner.count(u"错误日志"_s), 1);
    run(window, u"HYRZ"_s, {u"TxtHy=0011"_s, u"BtnOk!"_s});
    QVERIFY(logRows(window).rowCount() > 0);
    QCOMPARE(shown(window, u"stationBanner"_s), banner);
}

void TestViewerWindow::statistics_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QString>("form"); // a fragment only the form run has
    QTest::newRow("sqlite") << Engine::Sqlite << u"dbo.HY.wdh"_s;
    QTest::newRow("mariadb") << Engine::MariaDb << u" CONCAT(CAST("_s;
}

// The embedded station shows the SQL Server form the dialog hands it and
// says in one sentence why it does not run; MariaDB runs the MySQL form
// and shows the chart of rates from 0 to 100 %, the id column of 1s out of
// the table's view, and saves the chart whole.
void TestViewerWindow::statistics()
{
    QFETCH(Engine, engine);
    QFETCH(QString, form);
    QUARRY_SAMPLE_STATION(station, engine, NoHint);
    station.clearErrorLog();
    ShownWindow window;
    run(window, u"SEALRESULTSTAT"_s, {u"maskEndDate"_s, u"Return"_s, u"cmdOK!"_s}, QMessageBox::Yes);
    QVERIFY2(sql(window).contains(form), qPrintable(sql(window)));
    QCOMPARE(shown(window, u"errorLabel"_s), QString());
    auto *chart = window.findChild<PassRateChart *>(u"passRateChart"_s);
    if (engine == Engine::Sqlite) {
        QVERIFY2(shown(window, u"noticeLabel"_s).contains(u"SQL Server 和 MySQL"_s), qPrintable(shown(window, u"noticeLabel"_s)));
        QVERIFY(!chart->isVisible());
        QCOMPARE(station.errorLog(), QString()); // no fault
        return;
    }
    QVERIFY(chart->isVisible());
    QVERIFY(shown(window, u"noticeLabel"_s).contains(u"没有通过票据的操作员"_s));
    QTableView *view = table(window);
    const QAbstractItemModel *model = &logRows(window);
    QVERIFY(view->isColumnHidden(0)); // id
    const QList<std::pair<QString, double>> rates = chart->rates();
    QCOMPARE(rates.size(), model->rowCount());
    QList<double> shares;
    for (int row = 0; row < model->rowCount(); ++row) {
        QCOMPARE(rates[row].first, model->index(row, 2).data().toString());
        shares << model->index(row, 4).data().toDouble() * 100.0 / model->index(row, 3).data().toDouble();
        QCOMPARE(rates[row].second, shares.last());
    }
    std::sort(shares.begin(), shares.end());
    QVERIFY2(shares.first() < 50 && shares.last() == 100, qPrintable(u"%1..%2"_s.arg(shares.first()).arg(shares.last())));

    QTemporaryDir dir;
    const QString png = dir.filePath(u"rates.png"_s);
    QVERIFY(exports(window).exportChartPng(png));
    // The whole chart, with a line of its own for each operator's name.
    const QImage image(png);
    QVERIFY(image.height() > rates.size() * chart->fontMetrics().height() * chart->devicePixelRatio());
}

namespace {

// The table PAGED of 40 keys K that need quoting in a literal, each of them
// unique in any letter case, their numbers N, and G: a few values and NULLs.
// The ODBC driver quotes for SQL Server, where a backslash is an ordinary
// character; the MariaDB behind it here reads one as an escape.
QString pagedTable(Engine engine)
{
    QStringList heads{u"'"_s, u"''"_s, u"%"_s, u"_"_s, u"中"_s, u"a"_s};
    if (engine != Engine::MariaDbOdbc)
        heads += {u"\\"_s, u"\\'"_s};
    QString script = u"CREATE TABLE PAGED (K VARCHAR(20) NOT NULL PRIMARY KEY, N INTEGER, G INTEGER);\n"_s;
    for (int i = 0; i < 40; ++i) {
        const QString key = heads[i % heads.size()] + u"%1"_s.arg(i, 2, 10, QChar(u'0'));
        const QString group = i % 7 == 3 ? u"NULL"_s : QString::number(i % 5);
        script += u"INSERT INTO PAGED VALUES ('%1', %2, %3);\n"_s.arg(QString(key).replace(u"'"_s, u"''"_s)).arg(i).arg(group);
    }
    return script;
}

// A station of its own, its seal database made by script, and the viewer's
// connection to it; a Sybase station reads all rows at once.
struct OwnStation
{
    OwnStation(Engine engine, const QString &script, bool sybase = false)
        : station(engine, SampleStation::Contents::Empty)
    {
        station.changeSeal(script);
        if (!station.isValid())
            qFatal("%s", qPrintable(station.errorText()));
        station.writeIni();
        const QString ini = QDir(station.folder()).filePath(u"seal.ini"_s);
        if (sybase)
            quarry::test::writeFile(ini, quarry::test::readFile(ini).replace("BASEMODE=SQLSERVER", "BASEMODE=SYBASE11"));
        if (const QString fault = database.open(); !fault.isEmpty())
            qFatal("%s", qPrintable(fault));
    }
    SampleStation station;
    StationDatabase database;
};

// The key in row once its page is in, which asking for it starts.
QString key(LogRowsModel &model, int row)
{
    model.index(row, 0).data();
    return QTest::qWaitFor([&model] { return !model.isBusy(); }, test::WaitLimit) ? model.index(row, 0).data().toString() : u"still reading"_s;
}

} // namespace

void TestViewerWindow::pages_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QList<int>>("visits");
    QTest::addColumn<bool>("unpaged"); // a Sybase station, which reads all rows at once
    QTest::addColumn<QString>("order"); // "G" or "G DESC": sorted by column G, few values and NULLs
    QTest::addColumn<QStringList>("own"); // the columns of the rows' own order, newest first
    const QList<int> jumps{39, 0, 20, 21, 22, 23, 2, 38, 1};
    QList<int> down(40);
    std::iota(down.begin(), down.end(), 0);
    const QList<int> up(down.crbegin(), down.crend());
    for (Engine engine : quarry::test::allEngines()) {
        // Pages of 3, of which 8 are kept: each pass reads most of them anew.
        // ODBC stands for SQL Server, which pages with OFFSET ... FETCH.
        QTest::newRow(quarry::test::engineTag(engine, "down, then up").constData()) << engine << down + up << false << QString() << QStringList();
        QTest::newRow(quarry::test::engineTag(engine, "jumps").constData()) << engine << jumps << false << QString() << QStringList();
        QTest::newRow(quarry::test::engineTag(engine, "sorted, down").constData()) << engine << down << false << u"G"_s << QStringList();
        QTest::newRow(quarry::test::engineTag(engine, "newest first, down").constData()) << engine << down << false << QString() << QStringList{u"G"_s, u"N"_s};
    }
    QTest::addRow("odbc: as sybase") << Engine::MariaDbOdbc << QList<int>{39, 0, 20} << true << QString() << QStringList();
}

// Each row shown is the row of that number in the engine's own order, by
// the key or by columns and then the key (the rows' own order, newest
// first), or sorted by a column and then the key, read onwards from a page
// next to it either way or, for the last row, from the end of the key's
// index rather than walked to; a row not yet read is a placeholder until
// its page comes; the first page shows before the rows are counted; a sort and a new statement reset the model,
// a failing statement leaves the rows before it, all of it as Qt's model
// tester expects of a model. A statement that would run for hours stops on
// the database when the operator stops it; the rows before it stay, and the
// next statement runs.
void TestViewerWindow::pages()
{
    QFETCH(Engine, engine);
    QFETCH(QList<int>, visits);
    QFETCH(bool, unpaged);
    QFETCH(QString, order);
    QFETCH(QStringList, own);
    QUARRY_REQUIRE_ENGINE(engine);
    OwnStation paged(engine, pagedTable(engine), unpaged);
    SampleStation &station = paged.station;
    StationDatabase &database = paged.database; // captured below, which clang 14 refuses of a binding
    QStringList ordered;
    const QString keyOrder = order.endsWith(u"DESC"_s) ? u"K DESC"_s : u"K"_s;
    const QString ownOrder = own.isEmpty() ? u"K"_s : own.join(u" DESC, "_s) + u" DESC, K DESC"_s;
    for (const Row &row : quarry::test::sealRows(station, u"SELECT K FROM PAGED ORDER BY "_s + (order.isEmpty() ? ownOrder : order + u", "_s + keyOrder)))
        ordered.append(row[u"k"_s]);
    const RowOrder rowsOwn{own, own.isEmpty() ? Qt::AscendingOrder : Qt::DescendingOrder};

    LogRowsModel model(3);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy failed(&model, &LogRowsModel::failed);
    QList<bool> countingWhenShown;
    connect(&model, &LogRowsModel::rowsShown, this, [&] { countingWhenShown.append(model.isBusy()); });
    QCOMPARE(readRows(model, database, u"SELECT * FROM PAGED WHERE N >= 0"_s, u"k"_s, rowsOwn), QString());
    QCOMPARE(countingWhenShown, QList<bool>{!unpaged});
    QCOMPARE(model.rowCount(), 40);
    const auto sortBy = [&](int column, Qt::SortOrder direction) {
        model.sort(column, direction);
        return QTest::qWaitFor([&] { return !model.isBusy(); }, test::WaitLimit);
    };
    if (!order.isEmpty())
        QVERIFY(sortBy(2, order.endsWith(u"DESC"_s) ? Qt::DescendingOrder : Qt::AscendingOrder));
    if (engine != Engine::Sqlite && !unpaged && order.isEmpty() && own.isEmpty()) {
        // The last row is read from the end of the key's index, not walked
        // to, and each page above it from the first row of the page below.
        QSqlQuery status(database.database());
        // Read on this connection, whose counters the server tells.
        const LogRowsModel::ReadingAtOnce here(model);
        for (const int row : {39, 36, 33, 30, 27}) {
            QVERIFY(status.exec(u"FLUSH STATUS"_s));
            QCOMPARE(model.index(row, 0).data().toString(), ordered[row]);
            QVERIFY(status.exec(u"SELECT SUM(VARIABLE_VALUE) FROM information_schema.SESSION_STATUS WHERE VARIABLE_NAME IN ('HANDLER_READ_NEXT', 'HANDLER_READ_PREV', 'HANDLER_READ_RND_NEXT')"_s) && status.next());
            QVERIFY2(status.value(0).toInt() < 10, qPrintable(u"%1 rows walked to row %2"_s.arg(status.value(0).toInt()).arg(row)));
        }
    }
    QVERIFY(unpaged || !model.index(20, 0).data().isValid()); // a placeholder until its page comes
    for (int row : std::as_const(visits))
        QCOMPARE(key(model, row), ordered[row]);
    QCoreApplication::processEvents();
    QCOMPARE(failed.size(), 0);

    QVERIFY(sortBy(0, Qt::DescendingOrder));
    QCOMPARE(model.index(0, 0).data().toString(), quarry::test::sealRows(station, u"SELECT MAX(K) AS m FROM PAGED"_s).value(0).value(u"m"_s));
    if (!own.isEmpty()) { // no column: back to their own order
        QVERIFY(sortBy(-1, Qt::AscendingOrder));
        QCOMPARE(model.index(0, 0).data().toString(), ordered[0]);
        // The servers list it while it runs (the check's own text differs).
        const auto running = [&database] {
            QSqlQuery query(database.database());
            return query.exec(u"SELECT COUNT(*) FROM information_schema.PROCESSLIST WHERE INFO LIKE CONCAT('%PAGED', ' f%')"_s)
                    && query.next() ? query.value(0).toInt() : -1;
        };
        QSignalSpy cancelled(&model, &LogRowsModel::cancelled);
        model.setQuery(database, u"SELECT a.K AS K FROM PAGED a, PAGED b, PAGED c, PAGED d, PAGED e, PAGED f "
                                 "WHERE a.N + b.N + c.N + d.N + e.N + f.N < 0"_s, u"K"_s);
        if (engine == Engine::Sqlite)
            QTest::qWait(300);
        else
            QTRY_COMPARE_WITH_TIMEOUT(running(), 1, test::WaitLimit);
        model.cancel();
        QVERIFY2(cancelled.wait(test::WaitLimit), "the statement stopped");
        if (engine != Engine::Sqlite)
            QTRY_COMPARE(running(), 0);
        QCOMPARE(model.rowCount(), 40);
    }
    QCOMPARE(readRows(model, database, u"SELECT * FROM PAGED WHERE N < 3"_s, u"k"_s), QString()); // a page, counted
    QCOMPARE(model.rowCount(), 3);
    QVERIFY(!readRows(model, database, u"SELECT * FROM NOSUCH"_s, u"k"_s).isEmpty());
    QCOMPARE(model.rowCount(), 3);
}

// A page that takes the database long is read while the program goes on:
// its rows are placeholders meanwhile, the model says it is busy (the
// window offers to stop), a timer keeps its time, and a page stopped on its
// way is read again when next shown. Of pages asked for in a rush (the
// scroll bar dragged) only the last few are read, and a page on its way
// that is no longer asked for is given up.
void TestViewerWindow::slowPage()
{
    QUARRY_REQUIRE_ENGINE(Engine::Sqlite);
    OwnStation paged(Engine::Sqlite, pagedTable(Engine::Sqlite));
    auto &[station, database] = paged;
    const QList<Row> ordered = quarry::test::sealRows(station, u"SELECT K FROM PAGED ORDER BY K"_s);
    LogRowsModel model(3);
    // A column that costs a search of millions of rows, but in the first page.
    QCOMPARE(readRows(model, database, u"SELECT K, CASE WHEN K IN (SELECT K FROM PAGED ORDER BY K LIMIT 3) THEN 0 ELSE "
                                       "(SELECT COUNT(*) FROM PAGED a, PAGED b, PAGED c, PAGED d WHERE a.N + b.N + c.N + d.N = PAGED.N) END AS S FROM PAGED"_s, u"K"_s), QString());
    QSignalSpy busy(&model, &LogRowsModel::busyChanged);
    QSignalSpy cancelled(&model, &LogRowsModel::cancelled);
    QSet<int> told;
    connect(&model, &QAbstractItemModel::dataChanged, this, [&told](const QModelIndex &top) { told.insert(top.row() / 3); });
    model.index(3, 0).data();
    QCoreApplication::processEvents(); // on its way
    for (int row = 15; row < 40; row += 3)
        model.index(row, 0).data();
    QVERIFY(QTest::qWaitFor([&model] { return !model.isBusy(); }, test::WaitLimit));
    QCOMPARE(told, (QSet<int>{10, 11, 12, 13}));
    busy.clear();
    QTimer timer;
    QSignalSpy ticks(&timer, &QTimer::timeout);
    timer.start(10);
    QElapsedTimer asking;
    asking.start();
    QCOMPARE(key(model, 20), ordered[20][u"k"_s]);
    QVERIFY2(ticks.size() * 10 > asking.elapsed() / 2, qPrintable(u"%1 ticks in %2 ms"_s.arg(ticks.size()).arg(asking.elapsed())));
    QCOMPARE(busy.size(), 2); // busy, then not

    QVERIFY(!model.index(24, 0).data().isValid());
    QTest::qWait(100);
    model.cancel();
    QCOMPARE(cancelled.size(), 1);
    QVERIFY(!model.isBusy());
    QCOMPARE(key(model, 24), ordered[24][u"k"_s]);
}

void TestViewerWindow::sortedOnce_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<bool>("refused"); // the login may not create temporary tables
    QTest::addColumn<int>("copiedRows"); // the rows of an order kept sorted as copies
    QTest::addColumn<int>("n3"); // N of the row on view at 3 after the change
    QTest::newRow("sqlite: keys") << Engine::Sqlite << false << 39 << 97;
    QTest::newRow("sqlite: copies") << Engine::Sqlite << false << 40 << 3;
    QTest::newRow("mariadb: keys") << Engine::MariaDb << false << 0 << 97;
    QTest::newRow("mariadb: copies") << Engine::MariaDb << false << 40 << 3;
    QTest::newRow("mariadb: no temporary tables") << Engine::MariaDb << true << 40 << 61;
}

// Rows sorted by a column are sorted once: a change to the column after it
// leaves the pages read later in the order sorted, where a page sorted anew
// would follow the change; their values follow it too, unless the rows were
// few enough to be copied. A login that may not create the temporary table
// for that has each page sorted anew, which is told once.
void TestViewerWindow::sortedOnce()
{
    QFETCH(Engine, engine);
    QFETCH(bool, refused);
    QFETCH(int, copiedRows);
    QFETCH(int, n3);
    QUARRY_REQUIRE_ENGINE(engine);
    OwnStation paged(engine, pagedTable(engine));
    SampleStation &station = paged.station;
    StationDatabase &database = paged.database; // captured below, which clang 14 refuses of a binding
    const QList<Row> byNumber = quarry::test::sealRows(station, u"SELECT K FROM PAGED ORDER BY N"_s);
    QSqlQuery grants(database.database());
    // Connections opened from now on go without the right.
    const auto restore = qScopeGuard([&grants] { grants.exec(u"GRANT CREATE TEMPORARY TABLES ON *.* TO 'BISOL'@'%'"_s); });
    if (refused)
        QVERIFY2(grants.exec(u"REVOKE CREATE TEMPORARY TABLES ON *.* FROM 'BISOL'@'%'"_s), qPrintable(grants.lastError().text()));
    LogRowsModel model(3, LogRowsModel::MarkRows, copiedRows);
    // The keys of the rows shown from `first` on, as a file reads them.
    const auto streamed = [&](qint64 first) {
        const LogRowsModel::Part part = model.statement(first, -1);
        RowStream stream({database.opener(), part.select, database.describe(), std::nullopt, part.firstRow, part.lender});
        QStringList keys;
        for (QList<QVariantList> batch = stream.next([] { return true; }); !batch.isEmpty(); batch = stream.next([] { return true; })) {
            for (const QVariantList &row : std::as_const(batch))
                keys << row.value(0).toString();
        }
        return keys << stream.failure();
    };
    QSignalSpy eachPage(&model, &LogRowsModel::sortingEachPage);
    QCOMPARE(readRows(model, database, u"SELECT * FROM PAGED"_s, u"K"_s), QString());
    model.sort(2, Qt::AscendingOrder); // by G
    QVERIFY(QTest::qWaitFor([&model] { return !model.isBusy(); }, test::WaitLimit));
    const QStringList byGroup{key(model, 38), key(model, 39), QString()};
    model.sort(1, Qt::AscendingOrder); // by N: meanwhile a file reads the rows on view
    QCOMPARE(streamed(38), byGroup);
    QVERIFY(QTest::qWaitFor([&model] { return !model.isBusy(); }, test::WaitLimit));
    station.changeSeal(u"UPDATE PAGED SET N = 100 - N;\n"_s);
    const QStringList shown{key(model, 3), key(model, 20), key(model, 39)};
    QCOMPARE(shown == QStringList({byNumber[3][u"k"_s], byNumber[20][u"k"_s], byNumber[39][u"k"_s]}), !refused);
    QCOMPARE(model.index(3, 1).data().toInt(), n3);
    QCOMPARE(eachPage.size(), int(refused));
    QCOMPARE(eachPage.value(0).value(0).value<QSqlError>().nativeErrorCode(), refused ? u"1044"_s : QString()); // the refusal told, not a later fault
    // A file reads the order kept sorted too.
    QStringList expected;
    for (int i = 37; i < 40; ++i)
        expected << byNumber[refused ? 39 - i : i][u"k"_s];
    QCOMPARE(streamed(37), expected << QString());
}

// A sort before the rows are counted keeps their keys, however few rows have
// been read: the log may hold millions.
void TestViewerWindow::sortedBeforeTheCount()
{
    QUARRY_REQUIRE_ENGINE(Engine::Sqlite);
    OwnStation paged(Engine::Sqlite, pagedTable(Engine::Sqlite));
    LogRowsModel model(3, LogRowsModel::MarkRows, 40);
    connect(&model, &LogRowsModel::rowsShown, this, [&model] { model.cancel(); }, Qt::SingleShotConnection); // the count
    QCOMPARE(readRows(model, paged.database, u"SELECT * FROM PAGED"_s, u"K"_s), QString());
    model.sort(1, Qt::AscendingOrder); // by N
    QVERIFY(QTest::qWaitFor([&model] { return !model.isBusy(); }, test::WaitLimit));
    paged.station.changeSeal(u"UPDATE PAGED SET N = 100 - N;\n"_s);
    key(model, 3);
    QCOMPARE(model.index(3, 1).data().toInt(), 97); // looked up by its key: a copy says 3
}

// An export writes every row of a log longer than the page the model has
// read, in the order on view. The table goes while its rows
// are shown: the window says so, and an export leaves no file.
void TestViewerWindow::pageLost()
{
    QUARRY_REQUIRE_ENGINE(Engine::Sqlite);
    SampleStation station(Engine::Sqlite);
    station.changeSeal(u"CREATE TABLE GONE AS SELECT * FROM PTFHLOG;\n"_s);
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    station.writeIni(NoHint);
    QTemporaryDir dir;
    ShownWindow window(catalogue(dir, "[Catalogue]\nLogs=PTFHRZ\n[PTFHRZ]\nTitle=g\nTable=GONE\nKey=LOGID\n"));
    run(window, u"PTFHRZ"_s, {u"BtnOk!"_s});
    QVERIFY(logRows(window).rowCount() > 1000); // more than the first page
    const QAbstractItemModel &rows = logRows(window);
    table(window)->sortByColumn(1, Qt::DescendingOrder);
    QVERIFY(settle(window));
    const QString sortedBy = rows.headerData(1, Qt::Horizontal, Qt::ToolTipRole).toString();
    QStringList keys{rows.headerData(0, Qt::Horizontal).toString()};
    for (const Row &row : quarry::test::sealRows(station, u"SELECT LOGID FROM GONE ORDER BY %1 DESC, LOGID DESC"_s.arg(sortedBy)))
        keys << row[u"logid"_s];
    QVERIFY(exports(window).exportCsv(dir.filePath(u"all.csv"_s)));
    QStringList written;
    for (const QString &line : QString::fromUtf8(quarry::test::readFile(dir.filePath(u"all.csv"_s))).split(u"\r\n"_s, Qt::SkipEmptyParts))
        written << line.section(u',', 0, 0).remove(QChar(0xfeff));
    QCOMPARE(written, keys);
    QVERIFY(exports(window).exportXlsx(dir.filePath(u"all.xlsx"_s)));
    const QByteArray sheet = quarry::test::programOutput(u"unzip"_s, {u"-p"_s, dir.filePath(u"all.xlsx"_s), u"xl/worksheets/sheet2.xml"_s});
    QCOMPARE(sheet.count("<row "), keys.size());

    station.changeSeal(u"DROP TABLE GONE;\n"_s);
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));

    // By the key, read from the log: the sorted copy outlives the table.
    table(window)->sortByColumn(0, Qt::AscendingOrder);
    QVERIFY(settle(window));
    const QString csv = dir.filePath(u"gone.csv"_s);
    QVERIFY(!exports(window).exportCsv(csv));
    QVERIFY(!QFile::exists(csv));
    QTRY_VERIFY2(shown(window, u"errorLabel"_s).contains(u"上查询失败：no such table: GONE"_s), qPrintable(shown(window, u"errorLabel"_s)));

    // Back, too long to count: read in the key's order, the outer table
    // first, a page comes at once. The count stopped, the rows stay on view
    // uncounted, and an export asks for the query again.
    station.changeSeal(u"CREATE VIEW GONE AS SELECT a.* FROM PTFHLOG a CROSS JOIN PTFHLOG b CROSS JOIN PTFHLOG c;\n"_s);
    quarry::test::operate([&] { window.findChild<QPushButton *>(u"queryButton"_s)->click(); }, {u"BtnOk!"_s}); // the log still chosen
    QTRY_COMPARE_WITH_TIMEOUT(window.statusBar()->currentMessage(), QString(), test::WaitLimit); // the rows are on view
    window.findChild<QPushButton *>(u"cancelQueryButton"_s)->click();
    QTRY_COMPARE_WITH_TIMEOUT(window.statusBar()->currentMessage(), u"已停止查询。"_s, test::WaitLimit);
    QVERIFY(!exports(window).exportCsv(csv));
    QCOMPARE(window.statusBar()->currentMessage(), u"结果的计数已停止：请重新查询，计数完成后再导出。"_s);
}

void TestViewerWindow::countTold_data()
{
    quarry::test::addEngineRows(quarry::test::logEngines());
}

// Half a million counted rows reach the view in shares, each in a turn of
// the event loop of its own, and the count is told after the last share:
// the table then has every row, and its end shows the last one.
void TestViewerWindow::countTold()
{
    QFETCH(Engine, engine);
    QUARRY_REQUIRE_ENGINE(engine);
    const int rows = 450'001;
    OwnStation many(engine, (engine == Engine::Sqlite ? u"CREATE TABLE MANY AS WITH RECURSIVE n(K) AS (SELECT 1 UNION ALL SELECT K + 1 FROM n WHERE K < %1) SELECT K FROM n;\n"_s
                                                      : u"CREATE TABLE MANY AS SELECT seq AS K FROM seq_1_to_%1;\n"_s).arg(rows));
    StationDatabase &database = many.database;
    LogRowsModel model;
    QTableView view;
    view.setModel(&model);
    view.show();
    QTimer turn;
    QSignalSpy turns(&turn, &QTimer::timeout);
    turn.start(0);
    QSignalSpy counted(&model, &LogRowsModel::counted);
    QList<int> shares, turnOfShare;
    connect(&model, &QAbstractItemModel::rowsInserted, this, [&](const QModelIndex &, int first, int last) {
        QCOMPARE(counted.size(), 0);
        shares.append(last - first + 1);
        turnOfShare.append(int(turns.size()));
    });
    QCOMPARE(readRows(model, database, u"SELECT K FROM MANY"_s, u"K"_s), QString());
    QCOMPARE(model.rowCount(), rows);
    QVERIFY(model.isCounted());
    QCOMPARE(counted.size(), 1);
    QCOMPARE(std::accumulate(shares.cbegin(), shares.cend(), 0), rows - LogRowsModel::PageRows); // after the first page
    QVERIFY2(shares.size() > 1 && *std::max_element(shares.cbegin(), shares.cend()) <= 250'000, qPrintable(QString::number(shares.size())));
    QVERIFY(std::adjacent_find(turnOfShare.cbegin(), turnOfShare.cend()) == turnOfShare.cend());
    view.scrollToBottom();
    QTRY_COMPARE_WITH_TIMEOUT(view.indexAt({0, view.viewport()->height() - 1}).data().toInt(), rows, test::WaitLimit);
}

void TestViewerWindow::scrolling_data()
{
    QTest::addColumn<QStringList>("steps"); // "click" a row on view, a "key", the "wheel", the "bar" set, a row on view to the "foot"
    QTest::addColumn<int>("top");           // the log's row on top, counted from 1
    QTest::addColumn<int>("current");       // 0: none
    QTest::addColumn<int>("selected");      // the log's rows selected
    const QStringList twelveDown(12, u"key Down"_s);
    // The table's first cell is current when it takes the focus.
    QTest::newRow("bar to the end") << QStringList{u"bar 30000"_s} << 19991 << 1 << 0;
    QTest::newRow("bar, the current row on view") << QStringList{u"click 5"_s, u"bar 3"_s} << 4 << 6 << 1;
    QTest::newRow("wheel") << QStringList{u"wheel -120"_s} << 4 << 1 << 0;
    QTest::newRow("ctrl+end") << QStringList{u"click 0"_s, u"key Ctrl+End"_s} << 19991 << 20000 << 1;
    QTest::newRow("ctrl+home") << QStringList{u"click 0"_s, u"key Ctrl+End"_s, u"key Ctrl+Home"_s} << 1 << 1 << 1;
    QTest::newRow("down past the foot") << QStringList{u"click 0"_s} + twelveDown << 4 << 13 << 1;
    QTest::newRow("up past the top") << QStringList{u"bar 500"_s, u"click 0"_s, u"key Up,Up,Up"_s} << 498 << 498 << 1;
    QTest::newRow("page up") << QStringList{u"bar 100"_s, u"click 0"_s, u"key PgUp"_s} << 91 << 91 << 1;
    QTest::newRow("shift, past the foot") << QStringList{u"click 0"_s, u"key Shift+PgDown,Shift+PgDown"_s} << 12 << 21 << 21;
    QTest::newRow("ctrl+a") << QStringList{u"click 2"_s, u"key Ctrl+A"_s} << 1 << 3 << 20000;
    QTest::newRow("a row on view to the foot") << QStringList{u"bar 500"_s, u"foot 0"_s} << 492 << 1 << 0;
}

// A log of 20,000 rows in a table that holds ten: the table keeps a header
// section for each row on view only, numbered as the log's rows, and the
// bar, the wheel and the keys reach every row, the current cell and the
// selection going with the log's rows.
void TestViewerWindow::scrolling()
{
    QFETCH(QStringList, steps);
    QFETCH(int, top);
    QFETCH(int, current);
    QFETCH(int, selected);
    QUARRY_REQUIRE_ENGINE(Engine::Sqlite);
    OwnStation many(Engine::Sqlite, u"CREATE TABLE MANY AS WITH RECURSIVE n(K) AS (SELECT 1 UNION ALL SELECT K + 1 FROM n WHERE K < 20000) SELECT K FROM n;\n"_s);
    LogRowsModel model;
    QCOMPARE(readRows(model, many.database, u"SELECT K FROM MANY"_s, u"K"_s), QString());
    LogTable view(model);
    QAbstractItemModelTester tester(view.model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(!view.model()->index(0, 1).isValid() && !view.model()->index(view.model()->rowCount(), 0).isValid()); // the tester asks past both
    checkRowRanges(*view.model(), *this);
    view.verticalHeader()->setDefaultSectionSize(20);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.resize(300, view.height() + 200 - view.viewport()->height()); // ten rows
    QTRY_COMPARE(view.verticalScrollBar()->pageStep(), 10);
    for (const QString &step : std::as_const(steps)) {
        const QString what = step.section(u' ', 1);
        if (step.startsWith(u"click"_s))
            QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(view.model()->index(what.toInt(), 0)).center());
        else if (step.startsWith(u"key"_s))
            QTest::keySequence(&view, QKeySequence(what));
        else if (step.startsWith(u"bar"_s))
            view.verticalScrollBar()->setValue(what.toInt());
        else if (step.startsWith(u"foot"_s))
            view.scrollTo(view.model()->index(what.toInt(), 0), QAbstractItemView::PositionAtBottom);
        else {
            const QPoint at = view.viewport()->rect().center();
            QWheelEvent wheel(at, view.viewport()->mapToGlobal(at), {}, {0, what.toInt()}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(view.viewport(), &wheel);
        }
    }
    QVERIFY(view.verticalHeader()->count() <= 11);
    QCOMPARE(view.verticalScrollBar()->value(), top - 1);
    QCOMPARE(view.model()->headerData(0, Qt::Vertical).toInt(), top);
    QTRY_COMPARE_WITH_TIMEOUT(view.model()->index(0, 0).data().toInt(), top, test::WaitLimit);
    QCOMPARE(view.model()->index(9, 0).data().toInt(), top + 9);
    QCOMPARE(view.logSelection().currentIndex().row(), current - 1);
    QCOMPARE(view.currentIndex().row(), current >= top && current < top + 11 ? current - top : -1);
    for (int r = 0; r < view.model()->rowCount(); ++r) // the table shows the log's selection
        QCOMPARE(view.selectionModel()->isSelected(view.model()->index(r, 0)), view.logSelection().isSelected(view.logSelection().model()->index(top - 1 + r, 0)));
    int rows = 0;
    for (const QItemSelectionRange &range : view.logSelection().selection())
        rows += range.height();
    QCOMPARE(rows, selected);
}

// Columns that fit the table only without its vertical bar, and a height
// that holds one row more without the horizontal bar: the bars settle
// rather than show and hide each other for good.
void TestViewerWindow::barsSettle()
{
    QUARRY_REQUIRE_ENGINE(Engine::Sqlite);
    OwnStation many(Engine::Sqlite, u"CREATE TABLE MANY AS WITH RECURSIVE n(K) AS (SELECT 1 UNION ALL SELECT K + 1 FROM n WHERE K < 100) SELECT K, K AS L FROM n;\n"_s);
    LogRowsModel model;
    QCOMPARE(readRows(model, many.database, u"SELECT K, L FROM MANY"_s, u"K"_s), QString());
    LogTable view(model);
    view.verticalHeader()->setDefaultSectionSize(20);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.resize(300, view.height() + 11 * 20 - view.maximumViewportSize().height());
    const int columns = view.maximumViewportSize().width() - view.verticalScrollBar()->sizeHint().width() / 2;
    view.setColumnWidth(0, columns / 2);
    view.setColumnWidth(1, columns - columns / 2);
    QSignalSpy shown(view.horizontalScrollBar(), &QScrollBar::rangeChanged);
    QTest::qWait(300);
    QVERIFY2(shown.size() < 10, qPrintable(QString::number(shown.size())));
}

// A column's title changed by the log's rows reaches the table's header,
// whatever rows the window shows; the window numbers its rows itself.
void TestViewerWindow::titlesFollow()
{
    QStandardItemModel rows(100, 2);
    LogTable view(rows);
    QSignalSpy told(view.model(), &QAbstractItemModel::headerDataChanged);
    view.verticalScrollBar()->setValue(50);
    QCOMPARE(told.size(), 1); // the rows on view are others now: their numbers too
    told.clear();
    QSignalSpy changed(view.model(), &QAbstractItemModel::dataChanged);
    rows.setData(rows.index(50, 1), u"一行"_s);
    QCOMPARE(changed.size(), 1); // a single row on view
    rows.setHeaderData(1, Qt::Horizontal, u"账号"_s);
    rows.setHeaderData(3, Qt::Vertical, u"第四行"_s);
    QCOMPARE(told.size(), 1);
    QCOMPARE(told.at(0).at(0).value<Qt::Orientation>(), Qt::Horizontal);
    QCOMPARE(view.model()->headerData(1, Qt::Horizontal).toString(), u"账号"_s);
}

// The clipboard takes at most 10,000 rows; a larger selection is refused
// with a word on the exports, and the clipboard keeps its text.
void TestViewerWindow::copyAtMost()
{
    QUARRY_REQUIRE_ENGINE(Engine::Sqlite);
    quarry::test::SampleStation station(Engine::Sqlite);
    const auto addRows = [&station](int first, int last) {
        // Copies of the sample's first row, which the dialog's condition takes.
        station.changeSeal(u"INSERT INTO YYLOG WITH RECURSIVE n(i) AS (SELECT %1 UNION ALL SELECT i + 1 FROM n WHERE i < %2) "
                           "SELECT i, ACCNO, chequeno, YJKNumber, pztype, money, OPTYPE, Result, Opcode, OpName, Opdate, Optime, wdh "
                           "FROM n, (SELECT * FROM YYLOG ORDER BY LOGID LIMIT 1) f;\n"_s.arg(first).arg(last));
        QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    };
    const int sample = quarry::test::sealRows(station, u"SELECT COUNT(*) AS n FROM YYLOG"_s).value(0).value(u"n"_s).toInt();
    addRows(1'000'001, 1'000'000 + 10'000 - sample);
    station.writeIni(NoHint);
    ShownWindow window;
    for (const int rows : {10'000, 10'001}) {
        if (rows > 10'000)
            addRows(2'000'000, 2'000'000);
        run(window, u"YYRZ"_s, {u"BtnOk!"_s});
        QVERIFY2(shown(window, u"resultLabel"_s).contains(u"共 %1 行"_s.arg(rows)), qPrintable(shown(window, u"resultLabel"_s)));
        QGuiApplication::clipboard()->setText(u"before"_s);
        window.activateWindow(); // the copy's shortcut is the table's
        QVERIFY(QTest::qWaitForWindowActive(&window));
        table(window)->setFocus();
        QTest::keyClick(table(window), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(table(window), Qt::Key_C, Qt::ControlModifier);
        const qsizetype lines = QGuiApplication::clipboard()->text().count(u'\n');
        QCOMPARE(lines, rows > 10'000 ? 0 : rows);
        QVERIFY(!window.findChild<QLabel *>(u"errorLabel"_s)->isVisibleTo(&window)); // a copy is no fault
        QCOMPARE(shown(window, u"noticeLabel"_s), rows > 10'000 ? u"所选有 10001 行，复制最多 10000 行：更多的行请用“导出 CSV…”或“导出 Excel…”。"_s : QString());
    }
}

} // namespace quarry::viewer

QTEST_MAIN(quarry::viewer::TestViewerWindow)
#include "tst_viewerwindow.moc"
