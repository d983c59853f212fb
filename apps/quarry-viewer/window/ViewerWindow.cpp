#include "ViewerWindow.h"

#include "ResultPane.h"
#include "StationBanner.h"
#include "catalogue/ConditionRequest.h"
#include "catalogue/LabelledRows.h"
#include "output/ExportActions.h"
#include "rows/LogRowsModel.h"
#include "rows/LogSelect.h"

#include <quarry/QuarryError.h>

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSplitter>
#include <QSqlError>
#include <QStatusBar>
#include <QTime>
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

} // namespace

ViewerWindow::ViewerWindow(const LogCatalogue &catalogue, QWidget *parent)
    : QMainWindow(parent)
    , m_entries(catalogue.entries())
    , m_model(new LogRowsModel(LogRowsModel::PageRows, LogRowsModel::MarkRows,
                               LogRowsModel::CopiedRows, this))
    , m_rows(new LabelledRows(this))
    , m_banner(new StationBanner(catalogue.tables(), this))
{
    m_rows->setSourceModel(m_model);
    setWindowTitle(u"%1 — %2"_s.arg(AppTitle, m_database.describe()));
    auto *splitter = new QSplitter(Qt::Horizontal, this);
    splitter->addWidget(makeLogPane());
    m_pane = new ResultPane(m_banner, m_database, *m_model, m_rows, this);
    splitter->addWidget(m_pane);
    splitter->setStretchFactor(1, 1);
    setCentralWidget(splitter);
    connect(&m_pane->exports(), &ExportActions::said, this,
            [this](const QString &message) { statusBar()->showMessage(message); });
    connect(m_model, &LogRowsModel::rowsShown, this, &ViewerWindow::rowsShown);
    connect(m_model, &LogRowsModel::counted, this, &ViewerWindow::showCount);
    connect(m_model, &LogRowsModel::cancelled, this, &ViewerWindow::readingStopped);
    // Counted rows stay busy while bookmarked, which the count's line says.
    connect(m_model, &LogRowsModel::busyChanged, this, [this] {
        if (m_model->isCounted())
            showCount();
        else
            m_pane->showBusy();
    });
    connect(m_model, &LogRowsModel::sortingEachPage, this, [this](const QSqlError &why) {
        statusBar()->showMessage(
            u"%1 上不能建立临时表，按列排序后每一页都要重新排序，翻页较慢：%2"_s.arg(
                m_database.describe(),
                why.databaseText().isEmpty() ? why.text() : why.databaseText()));
    });
    connect(m_model, &LogRowsModel::failed, this, [this](const QSqlError &error) {
        queryFailed(u"在%1上查询失败"_s.arg(m_database.describe()), error);
    });
    resize(1100, 700);
    m_banner->start();
    // Without a station the catalogue beside its seal.ini is missing too:
    // the station is the one fault to tell, and the banner tells it.
    if (m_database.findStation().isEmpty() && !catalogue.problems().isEmpty())
        m_pane->fault(u"日志目录有误，以下条目未列出：\n"_s + catalogue.problems().join(u'\n'));
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

void ViewerWindow::runLog(int index)
{
    LogEntry entry = m_entries[index];
    m_pane->clearMessages();
    // A station the component cannot use is said by the banner, before a
    // dialog meets it and says it in boxes of its own.
    if (!m_banner->usable())
        return;
    if (const QString fault = m_database.open(); !fault.isEmpty()) {
        m_pane->fault(fault);
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
        m_pane->fault(u"查询条件组件出错（%1）：%2"_s.arg(error.source(), error.description()));
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
        m_pane->setStatement(select);
        m_pane->showNotice(StatisticsNotice);
        return;
    }
    m_asked = Asked{entry, condition, select, {}};
    m_asked->timer.start();
    m_model->setQuery(m_database, select, entry.key, newestFirst(entry));
    statusBar()->showMessage(u"正在查询%1…"_s.arg(entry.title));
    m_pane->showBusy();
}

bool ViewerWindow::readCodeLists(LogEntry &entry)
{
    for (CodeListSource *list : {&entry.listA, &entry.listB}) {
        if (const QString fault = m_database.fill(*list); !fault.isEmpty()) {
            m_pane->fault(fault);
            return false;
        }
    }
    return true;
}

void ViewerWindow::rowsShown()
{
    m_pane->scrollToTop();
    if (!m_asked) { // another order of the rows on screen
        m_pane->setStatement(m_model->statement());
        m_pane->showBusy();
        return;
    }
    const Asked asked = *std::exchange(m_asked, std::nullopt);
    statusBar()->clearMessage();
    m_shownMs = asked.timer.elapsed();
    showRows(asked.entry, asked.select, asked.condition);
}

void ViewerWindow::showRows(const LogEntry &entry, const QString &select, const QString &condition)
{
    m_rows->setEntry(entry);
    m_pane->setStatement(select);
    m_shownTitle = entry.title;
    m_pane->exports().setShown(entry.title, condition);
    m_shownHead = u"%1（%2）　%3"_s.arg(entry.title, entry.logType, m_database.describe());
    m_shownAt = QTime::currentTime().toString(u"HH:mm:ss"_s);
    showCount();
    setWindowTitle(u"%1 — %2 — %3"_s.arg(entry.title, AppTitle, m_database.describe()));
    m_pane->showColumns(entry);
    if (entry.result == LogEntry::Result::Select) {
        m_pane->showChart();
        m_pane->showNotice(MissingOperators);
    }
}

// The first rows are on screen at once; their count follows.
void ViewerWindow::showCount()
{
    const QString rows = m_model->isCounted()
        ? u"共 %1 行%2"_s.arg(QString::number(m_model->rowCount()),
                              m_model->isBookmarking() ? u"，正在标记跳转位置…"_s : QString())
        : u"已读 %1 行，%2"_s.arg(m_model->rowCount())
              .arg(m_model->isBusy() ? u"正在计数…"_s : u"未计数"_s);
    m_pane->setResult(u"%1　%2，用时 %3 毫秒，%4 查询"_s.arg(m_shownHead, rows,
                                                             QString::number(m_shownMs),
                                                             m_shownAt));
    if (m_model->isCounted())
        m_pane->updateChart();
    m_pane->showBusy();
}

// The rows on screen stay as they were, uncounted if the count stopped.
void ViewerWindow::readingStopped()
{
    if (m_asked) {
        const QString title = m_asked->entry.title;
        m_asked.reset();
        statusBar()->showMessage(u"已停止%1的查询：下面仍是原来的结果。"_s.arg(title));
    } else { // the count, or another order, of the rows on screen
        statusBar()->showMessage(u"已停止查询。"_s);
        showCount();
    }
    m_pane->showBusy();
}

// The connection is dropped as well: after a lost server the next query
// connects anew.
void ViewerWindow::queryFailed(const QString &what, const QSqlError &error)
{
    const QString title = m_asked ? m_asked->entry.title : m_shownTitle;
    m_asked.reset();
    statusBar()->clearMessage();
    clearResult(title.isEmpty() ? m_pane->result() : u"%1：查询未完成。"_s.arg(title));
    m_database.close();
    const QString text = error.databaseText().isEmpty() ? error.text() : error.databaseText();
    m_pane->fault(u"%1：%2"_s.arg(what, text));
}

// The model lets go of the connection, which may be closed after this.
void ViewerWindow::clearResult(const QString &label)
{
    m_model->clear();
    m_shownTitle.clear();
    m_pane->exports().setShown({}, {});
    m_pane->setResult(label);
    setWindowTitle(u"%1 — %2"_s.arg(AppTitle, m_database.describe()));
    m_pane->hideChart();
    m_pane->showBusy();
}

} // namespace quarry::viewer
