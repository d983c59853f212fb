#include "ViewerWindow.h"

#include "catalogue/ConditionRequest.h"
#include "catalogue/ConditionWords.h"
#include "catalogue/LabelledRows.h"
#include "rows/LogRowsModel.h"
#include "rows/LogSelect.h"
#include "output/PassRateChart.h"
#include "output/SelectedCells.h"
#include "StationBanner.h"
#include "output/ExportProgress.h"
#include "output/FileExports.h"
#include "output/ReportPreview.h"

#include "support/ErrorLog.h"

#include <quarry/QuarryError.h>

#include <QAction>
#include <QClipboard>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QScrollBar>
#include <QSplitter>
#include <QSqlError>
#include <QStatusBar>
#include <QTableView>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

const QString AppTitle = u"Quarry 日志查看"_s;

// The statistics dialog writes its SELECT for SQL Server and MySQL only.
const QString StatisticsNotice
    = u"此统计语句是为 SQL Server 和 MySQL 站点写的，嵌入式数据库运行不了；"
      u"请在 SQL Server 或 MySQL（MariaDB）站点上查看统计，例如用 "
      u"bash scripts/run.sh --mariadb 打开示例的 MariaDB 站点（见管理员手册）。"_s;

// The statement joins each operator's total to his passed bills: one with
// none has no row to join.
const QString MissingOperators
    = u"只列出区间内至少有一张票据通过的操作员：没有通过票据的操作员不在统计结果中。"_s;

QString exporting(qint64 rows)
{
    return u"正在导出 %1 行…"_s.arg(rows);
}

QLabel *messageLabel(const QString &name, const QString &style, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setStyleSheet(u"QLabel { %1 padding: 6px; }"_s.arg(style));
    label->hide();
    return label;
}

} // namespace

ViewerWindow::ViewerWindow(const LogCatalogue &catalogue, QWidget *parent)
    : QMainWindow(parent)
    , m_entries(catalogue.entries())
    , m_model(new LogRowsModel(1000, this))
    , m_rows(new LabelledRows(this))
    , m_banner(new StationBanner(catalogue.tables(), this))
{
    m_rows->setSourceModel(m_model);
    setWindowTitle(u"%1 — %2"_s.arg(AppTitle, m_database.describe()));
    auto *splitter = new QSplitter(Qt::Horizontal, this);
    splitter->addWidget(makeLogPane());
    splitter->addWidget(makeResultPane());
    splitter->setStretchFactor(1, 1);
    setCentralWidget(splitter);
    connect(m_model, &LogRowsModel::rowsShown, this, &ViewerWindow::rowsShown);
    connect(m_model, &LogRowsModel::counted, this, &ViewerWindow::showCount);
    connect(m_model, &LogRowsModel::cancelled, this, &ViewerWindow::readingStopped);
    connect(m_model, &LogRowsModel::failed, this, [this](const QSqlError &error) {
        queryFailed(u"在%1上查询失败"_s.arg(m_database.describe()), error);
    });
    resize(1100, 700);
    m_banner->start();
    // Without a station the catalogue beside its seal.ini is missing too:
    // the station is the one fault to tell, and the banner tells it.
    if (m_database.findStation().isEmpty() && !catalogue.problems().isEmpty())
        fault(u"日志目录有误，以下条目未列出：\n"_s + catalogue.problems().join(u'\n'));
}

ViewerWindow::~ViewerWindow()
{
    m_model->clear();
}

QWidget *ViewerWindow::makeLogPane()
{
    auto *pane = new QWidget(this);
    auto *layout = new QVBoxLayout(pane);
    layout->addWidget(new QLabel(u"日志"_s, pane));
    m_logList = new QListWidget(pane);
    m_logList->setObjectName(u"logList"_s);
    for (const LogEntry &entry : std::as_const(m_entries))
        m_logList->addItem(u"%1  %2"_s.arg(entry.title, entry.logType));
    layout->addWidget(m_logList);
    auto *query = new QPushButton(u"查询…"_s, pane);
    query->setObjectName(u"queryButton"_s);
    layout->addWidget(query);
    connect(m_logList, &QListWidget::itemActivated, this,
            [this](QListWidgetItem *item) { runLog(m_logList->row(item)); });
    connect(query, &QPushButton::clicked, this, [this] {
        if (m_logList->currentRow() >= 0)
            runLog(m_logList->currentRow());
    });
    return pane;
}

QWidget *ViewerWindow::makeResultPane()
{
    auto *pane = new QWidget(this);
    auto *layout = new QVBoxLayout(pane);
    layout->addWidget(m_banner);
    m_errorLabel = messageLabel(u"errorLabel"_s, u"color: #a40000; background: #fde8e8;"_s, pane);
    layout->addWidget(m_errorLabel);
    m_noticeLabel = messageLabel(u"noticeLabel"_s, u"background: #fff6d5;"_s, pane);
    layout->addWidget(m_noticeLabel);

    auto *bar = new QHBoxLayout;
    m_resultLabel = new QLabel(u"请选择日志，点“查询…”输入条件。"_s, pane);
    m_resultLabel->setObjectName(u"resultLabel"_s);
    m_resultLabel->setWordWrap(true);
    bar->addWidget(m_resultLabel, 1);
    m_progress = new QProgressBar(pane);
    m_progress->setObjectName(u"queryProgress"_s);
    m_progress->setRange(0, 0); // busy: a statement says nothing of its progress
    m_progress->setMaximumWidth(120);
    m_progress->hide();
    bar->addWidget(m_progress);
    m_cancelButton = new QPushButton(u"停止查询"_s, pane);
    m_cancelButton->setObjectName(u"cancelQueryButton"_s);
    m_cancelButton->hide();
    bar->addWidget(m_cancelButton);
    connect(m_cancelButton, &QPushButton::clicked, this, [this] {
        if (const QString fault = m_model->cancel(); !fault.isEmpty())
            this->fault(u"无法停止查询：%1"_s.arg(fault));
    });
    auto *copy = new QPushButton(u"复制 SQL"_s, pane);
    copy->setObjectName(u"copySqlButton"_s);
    bar->addWidget(copy);
    connect(copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_sqlText->toPlainText()); });
    const auto button = [&](const QString &name, const QString &text, auto act) {
        auto *added = new QPushButton(text, pane);
        added->setObjectName(name);
        bar->addWidget(added);
        connect(added, &QPushButton::clicked, this, act);
        return added;
    };
    button(u"exportCsvButton"_s, u"导出 CSV…"_s, [this] { chooseCsvFile(); });
    button(u"exportXlsxButton"_s, u"导出 Excel…"_s, [this] {
        if (const QString path = chooseFile(u"导出 Excel"_s, u"xlsx"_s, u"Excel (*.xlsx)"_s);
            !path.isEmpty())
            exportXlsx(path);
    });
    button(u"exportPdfButton"_s, u"导出 PDF…"_s, [this] {
        if (const QString path = chooseFile(u"导出 PDF"_s, u"pdf"_s, u"PDF (*.pdf)"_s);
            !path.isEmpty())
            exportPdf(path);
    });
    button(u"printButton"_s, u"打印预览…"_s, [this] { printPreview(); });
    m_exportPngButton
        = button(u"exportPngButton"_s, u"导出图表 PNG…"_s, [this] { choosePngFile(); });
    m_exportPngButton->hide();
    layout->addLayout(bar);

    m_sqlText = new QPlainTextEdit(pane);
    m_sqlText->setObjectName(u"sqlText"_s);
    m_sqlText->setReadOnly(true);
    m_sqlText->setPlaceholderText(u"执行的 SQL"_s);
    m_sqlText->setMaximumHeight(90);
    layout->addWidget(m_sqlText);

    auto *results = new QSplitter(Qt::Vertical, pane);
    m_table = new QTableView(results);
    m_table->setObjectName(u"resultTable"_s);
    m_table->setModel(m_rows);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    // A click on a column's title sorts on the database (see LogRowsModel),
    // a second reverses the order, a third returns to the log's own.
    m_table->setSortingEnabled(true);
    m_table->horizontalHeader()->setSortIndicatorClearable(true);
    connect(m_table->horizontalHeader(), &QHeaderView::sortIndicatorChanged, this,
            &ViewerWindow::showBusy);
    addCopyActions();
    m_chart = new PassRateChart(results);
    m_chart->setObjectName(u"passRateChart"_s);
    m_chart->setMinimumHeight(260);
    m_chart->hide();
    results->addWidget(m_table);
    results->addWidget(m_chart);
    layout->addWidget(results, 1);
    return pane;
}

void ViewerWindow::runLog(int index)
{
    if (index < 0 || index >= m_entries.size())
        return;
    LogEntry entry = m_entries[index];
    m_errorLabel->hide();
    m_noticeLabel->hide();
    // A station the component cannot use is said by the banner, before a
    // dialog meets it and says it in boxes of its own.
    if (!m_banner->usable())
        return;
    if (const QString fault = m_database.open(); !fault.isEmpty()) {
        this->fault(fault);
        return;
    }
    if (!readCodeLists(entry))
        return;
    statusBar()->showMessage(u"请输入%1的查询条件。"_s.arg(entry.title));
    QString condition;
    try {
        condition = askCondition(entry);
    } catch (const QuarryError &error) {
        statusBar()->clearMessage();
        fault(u"查询条件组件出错（%1）：%2"_s.arg(error.source(), error.description()));
        return;
    }
    if (condition.isEmpty()) {
        statusBar()->showMessage(u"已取消%1的查询：下面仍是原来的结果。"_s.arg(entry.title));
        return;
    }
    statusBar()->clearMessage();
    const QString select = logSelect(entry, condition);
    if (entry.result == LogEntry::Result::Select && m_database.isEmbedded()) {
        clearResult(u"%1：未执行。"_s.arg(entry.title));
        m_sqlText->setPlainText(select);
        m_noticeLabel->setText(StatisticsNotice);
        m_noticeLabel->show();
        return;
    }
    m_asked = Asked{entry, condition, select, {}};
    m_asked->timer.start();
    m_model->setQuery(m_database, select, entry.key, newestFirst(entry));
    statusBar()->showMessage(u"正在查询%1…"_s.arg(entry.title));
    showBusy();
}

bool ViewerWindow::readCodeLists(LogEntry &entry)
{
    for (CodeListSource *list : {&entry.listA, &entry.listB}) {
        if (const QString fault = m_database.fill(*list); !fault.isEmpty()) {
            this->fault(fault);
            return false;
        }
    }
    return true;
}

void ViewerWindow::rowsShown()
{
    m_table->scrollToTop();
    m_table->horizontalScrollBar()->setValue(0);
    if (!m_asked) { // another order of the rows on screen
        m_sqlText->setPlainText(m_model->statement());
        showBusy();
        return;
    }
    const Asked asked = *std::exchange(m_asked, std::nullopt);
    statusBar()->clearMessage();
    m_condition = asked.condition;
    m_shownMs = asked.timer.elapsed();
    showRows(asked.entry, asked.select);
}

void ViewerWindow::showRows(const LogEntry &entry, const QString &select)
{
    m_rows->setEntry(entry);
    m_sqlText->setPlainText(select);
    m_shownTitle = entry.title;
    m_shownHead = u"%1（%2）　%3"_s.arg(entry.title, entry.logType, m_database.describe());
    m_shownAt = QTime::currentTime().toString(u"HH:mm:ss"_s);
    showCount();
    setWindowTitle(u"%1 — %2 — %3"_s.arg(entry.title, AppTitle, m_database.describe()));
    for (int c = 0; c < m_rows->columnCount(); ++c) {
        const QString name = m_model->headerData(c, Qt::Horizontal).toString().toUpper();
        m_table->setColumnHidden(c, entry.hiddenColumns.contains(name));
    }
    m_table->resizeColumnsToContents();
    // New rows come in the log's own order.
    m_table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    if (entry.result == LogEntry::Result::Select) {
        m_chart->showRates(*m_model);
        m_chart->show();
        m_exportPngButton->show();
        m_noticeLabel->setText(MissingOperators);
        m_noticeLabel->show();
    }
}

// The first rows are on screen at once; their count follows.
void ViewerWindow::showCount()
{
    const QString rows = m_model->isCounted()
        ? u"共 %1 行"_s.arg(m_model->rowCount())
        : u"已读 %1 行，%2"_s.arg(m_model->rowCount())
              .arg(m_model->isBusy() ? u"正在计数…"_s : u"未计数"_s);
    m_resultLabel->setText(u"%1　%2，用时 %3 毫秒，%4 查询"_s.arg(m_shownHead, rows,
                                                                  QString::number(m_shownMs),
                                                                  m_shownAt));
    if (m_model->isCounted() && m_chart->isVisible())
        m_chart->showRates(*m_model);
    showBusy();
}

// The rows on screen stay as they were, uncounted if the count stopped.
void ViewerWindow::readingStopped()
{
    if (m_asked) {
        const QString title = m_asked->entry.title;
        m_asked.reset();
        statusBar()->showMessage(u"已停止%1的查询：下面仍是原来的结果。"_s.arg(title));
    } else if (!m_shownTitle.isEmpty()) {
        statusBar()->showMessage(u"已停止查询。"_s);
        showCount();
    }
    showBusy();
}

void ViewerWindow::showBusy()
{
    m_progress->setVisible(m_model->isBusy());
    m_cancelButton->setVisible(m_model->isBusy());
}

// The connection is dropped as well: after a lost server the next query
// connects anew.
void ViewerWindow::queryFailed(const QString &what, const QSqlError &error)
{
    const QString title = m_asked ? m_asked->entry.title : m_shownTitle;
    m_asked.reset();
    statusBar()->clearMessage();
    clearResult(title.isEmpty() ? m_resultLabel->text() : u"%1：查询未完成。"_s.arg(title));
    m_database.close();
    const QString text = error.databaseText().isEmpty() ? error.text() : error.databaseText();
    fault(u"%1：%2"_s.arg(what, text));
}

void ViewerWindow::fault(const QString &text)
{
    QString shown = text;
    try {
        writeErrorLog(u"quarry-viewer"_s, QuarryError::DataError,
                      QString(text).replace(u'\n', u' '));
    } catch (const QuarryError &error) {
        shown += u"\n（未能写入错误日志：%1）"_s.arg(error.description());
    }
    m_errorLabel->setText(shown);
    m_errorLabel->show();
}

// The model lets go of the connection, which may be closed after this.
void ViewerWindow::clearResult(const QString &label)
{
    m_model->clear();
    m_shownTitle.clear();
    m_resultLabel->setText(label);
    setWindowTitle(u"%1 — %2"_s.arg(AppTitle, m_database.describe()));
    m_chart->hide();
    m_exportPngButton->hide();
    showBusy();
}

bool ViewerWindow::exportCsv(const QString &path)
{
    return hasRows() && exportRows(path, [&](const RowSource &source, const Progress &progress) {
               return writeCsv(path, *m_rows, source, progress);
           });
}

bool ViewerWindow::exportRows(const QString &path, const RowWriter &write)
{
    QProgressDialog progress(this);
    // Until the rows are counted the dialog shows the rows written.
    const QString failed = write({m_database.opener(), m_model->statement(), m_database.describe()},
                                 showProgress(progress, exporting(m_rows->rowCount()),
                                              m_model->isCounted() ? m_rows->rowCount() : 0));
    return exported(failed,
                    u"已导出%1的 %2 行到 %3"_s.arg(m_shownTitle).arg(m_rows->rowCount()).arg(path),
                    progress);
}

bool ViewerWindow::exported(const QString &failed, const QString &done,
                            const QProgressDialog &progress)
{
    if (m_model->lastError().isValid())
        return false;
    if (failed.isEmpty())
        statusBar()->showMessage(done);
    else if (progress.wasCanceled())
        statusBar()->showMessage(failed);
    else
        fault(failed);
    return failed.isEmpty();
}

bool ViewerWindow::exportChartPng(const QString &path)
{
    if (!m_chart->savePng(path)) {
        fault(u"无法写入 %1"_s.arg(path));
        return false;
    }
    return true;
}

void ViewerWindow::chooseCsvFile()
{
    if (const QString path = chooseFile(u"导出 CSV"_s, u"csv"_s, u"CSV (*.csv)"_s); !path.isEmpty())
        exportCsv(path);
}

void ViewerWindow::choosePngFile()
{
    const QString path = chooseFile(u"导出图表"_s, u"png"_s, u"PNG (*.png)"_s);
    if (!path.isEmpty() && exportChartPng(path))
        statusBar()->showMessage(u"已把图表写到 %1"_s.arg(path));
}

QString ViewerWindow::chooseFile(const QString &caption, const QString &suffix,
                                 const QString &filter)
{
    if (!hasRows())
        return {};
    const QString name
        = u"%1-%2.%3"_s.arg(m_shownTitle,
                            QDateTime::currentDateTime().toString(u"yyyyMMdd-HHmmss"_s), suffix);
    QString path
        = QFileDialog::getSaveFileName(this, caption, QDir(m_lastFolder).filePath(name), filter);
    if (path.isEmpty())
        return {};
    if (QFileInfo(path).suffix().isEmpty())
        path += u'.' + suffix;
    m_lastFolder = QFileInfo(path).absolutePath();
    return path;
}

bool ViewerWindow::hasRows()
{
    if (m_shownTitle.isEmpty())
        statusBar()->showMessage(u"没有可导出的结果：请先查询。"_s);
    else if (!m_model->isCounted())
        statusBar()->showMessage(u"结果还在计数，请计数完成后再导出。"_s);
    return !m_shownTitle.isEmpty() && m_model->isCounted();
}

ExportHeading ViewerWindow::heading() const
{
    return {m_shownTitle, m_condition, m_database.describe(), m_sqlText->toPlainText(),
            conditionWords(m_condition, m_rows->entry(), m_database.dialect())};
}

LogReport ViewerWindow::report() const
{
    return logReport(*m_rows, heading(), m_database.printSettings());
}

bool ViewerWindow::exportXlsx(const QString &path)
{
    return hasRows() && exportRows(path, [&](const RowSource &source, const Progress &progress) {
               return writeXlsx(path, *m_rows, source, heading(), progress);
           });
}

bool ViewerWindow::exportSelectionXlsx(const QString &path)
{
    if (!hasRows())
        return false;
    const SelectedCells cells(*m_rows, m_table->selectionModel()->selection());
    if (cells.rowCount() == 0) {
        statusBar()->showMessage(u"没有选中的单元格：请先在表格中选择要导出的行或单元格。"_s);
        return false;
    }
    return writeWorkbook(path, cells);
}

bool ViewerWindow::writeWorkbook(const QString &path, const QAbstractItemModel &rows)
{
    QProgressDialog progress(this);
    const QString failed
        = writeXlsx(path, rows, heading(),
                    showProgress(progress, exporting(rows.rowCount()), rows.rowCount()));
    return exported(failed,
                    u"已导出%1的 %2 行到 %3"_s.arg(m_shownTitle).arg(rows.rowCount()).arg(path),
                    progress);
}

bool ViewerWindow::exportPdf(const QString &path)
{
    if (!hasRows())
        return false;
    QProgressDialog progress(this);
    const LogReport pages = report();
    const QString failed
        = writePdf(path, pages, m_shownTitle,
                   showProgress(progress, exporting(m_rows->rowCount()), pages.progressSteps()));
    return exported(failed, u"已把%1的报表写到 %2"_s.arg(m_shownTitle, path), progress);
}

void ViewerWindow::printPreview()
{
    if (hasRows())
        previewReport(report(), m_shownTitle, this);
}

// Ctrl+C and the table's menu copy the selected cells as a table.
void ViewerWindow::addCopyActions()
{
    const auto add = [this](const QString &text, bool titles) {
        auto *action = new QAction(text, m_table);
        m_table->addAction(action);
        connect(action, &QAction::triggered, this, [this, titles] {
            const SelectedCells cells(*m_rows, m_table->selectionModel()->selection());
            QGuiApplication::clipboard()->setText(tabSeparated(cells, titles));
        });
        return action;
    };
    QAction *copy = add(u"复制"_s, false);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    add(u"复制（含标题）"_s, true);
    auto *exportSelection = new QAction(u"导出所选到 Excel…"_s, m_table);
    m_table->addAction(exportSelection);
    connect(exportSelection, &QAction::triggered, this, [this] {
        if (const QString path = chooseFile(u"导出所选到 Excel"_s, u"xlsx"_s, u"Excel (*.xlsx)"_s);
            !path.isEmpty())
            exportSelectionXlsx(path);
    });
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
}

} // namespace quarry::viewer
