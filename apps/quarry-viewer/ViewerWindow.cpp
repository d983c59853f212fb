#include "ViewerWindow.h"

#include "ConditionRequest.h"
#include "CsvWriter.h"
#include "LogRowsModel.h"
#include "LogSelect.h"
#include "PassRateChart.h"

#include <quarry/QuarryError.h>

#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QSplitter>
#include <QSqlError>
#include <QTableView>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

ViewerWindow::ViewerWindow(const LogCatalogue &catalogue, QWidget *parent)
    : QMainWindow(parent)
    , m_entries(catalogue.entries())
    , m_model(new LogRowsModel(1000, this))
{
    setWindowTitle(u"Quarry 日志查看 — %1"_s.arg(m_database.describe()));
    auto *splitter = new QSplitter(Qt::Horizontal, this);
    splitter->addWidget(makeLogPane());
    splitter->addWidget(makeResultPane());
    splitter->setStretchFactor(1, 1);
    setCentralWidget(splitter);
    connect(m_model, &LogRowsModel::readFailed, this,
            [this](const QSqlError &error) { queryFailed(u"读取结果失败"_s, error); });
    resize(1100, 700);
    if (!catalogue.problems().isEmpty())
        showError(u"日志目录有误，以下条目未列出：\n"_s + catalogue.problems().join(u'\n'));
}

ViewerWindow::~ViewerWindow()
{
    clearResult();
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
    m_errorLabel = new QLabel(pane);
    m_errorLabel->setObjectName(u"errorLabel"_s);
    m_errorLabel->setWordWrap(true);
    m_errorLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_errorLabel->setStyleSheet(u"QLabel { color: #a40000; background: #fde8e8; padding: 6px; }"_s);
    m_errorLabel->hide();
    layout->addWidget(m_errorLabel);

    m_sqlText = new QPlainTextEdit(pane);
    m_sqlText->setObjectName(u"sqlText"_s);
    m_sqlText->setReadOnly(true);
    m_sqlText->setPlaceholderText(u"执行的 SQL"_s);
    m_sqlText->setMaximumHeight(90);
    layout->addWidget(m_sqlText);

    auto *bar = new QHBoxLayout;
    m_statusLabel = new QLabel(u"请选择日志，点“查询…”输入条件。"_s, pane);
    m_statusLabel->setObjectName(u"statusLabel"_s);
    bar->addWidget(m_statusLabel, 1);
    auto *copy = new QPushButton(u"复制 SQL"_s, pane);
    copy->setObjectName(u"copySqlButton"_s);
    auto *csv = new QPushButton(u"导出 CSV…"_s, pane);
    csv->setObjectName(u"exportCsvButton"_s);
    m_exportPngButton = new QPushButton(u"导出图表 PNG…"_s, pane);
    m_exportPngButton->setObjectName(u"exportPngButton"_s);
    m_exportPngButton->hide();
    bar->addWidget(copy);
    bar->addWidget(csv);
    bar->addWidget(m_exportPngButton);
    layout->addLayout(bar);
    connect(copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_sqlText->toPlainText()); });
    connect(csv, &QPushButton::clicked, this, &ViewerWindow::chooseCsvFile);
    connect(m_exportPngButton, &QPushButton::clicked, this, &ViewerWindow::choosePngFile);

    auto *results = new QSplitter(Qt::Vertical, pane);
    m_table = new QTableView(results);
    m_table->setObjectName(u"resultTable"_s);
    m_table->setModel(m_model);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
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
    LogEntry entry = m_entries.value(index);
    m_errorLabel->hide();
    if (index < 0 || index >= m_entries.size() || !readCodeLists(entry))
        return;
    QString condition;
    try {
        condition = askCondition(entry);
    } catch (const QuarryError &error) {
        showError(u"查询条件组件出错（%1）：%2"_s.arg(error.source(), error.description()));
        return;
    }
    if (condition.isEmpty()) {
        m_statusLabel->setText(u"已取消：未执行查询。"_s);
        return;
    }
    runSelect(entry, logSelect(entry, condition));
}

bool ViewerWindow::readCodeLists(LogEntry &entry)
{
    for (CodeListSource *list : {&entry.listA, &entry.listB}) {
        if (const QString fault = m_database.fill(*list); !fault.isEmpty()) {
            showError(fault);
            return false;
        }
    }
    return true;
}

void ViewerWindow::runSelect(const LogEntry &entry, const QString &select)
{
    clearResult();
    m_sqlText->setPlainText(select);
    if (const QString fault = m_database.open(); !fault.isEmpty()) {
        showError(fault);
        return;
    }
    QElapsedTimer timer;
    timer.start();
    const QSqlError error
        = m_model->setQuery(m_database.database(), select, entry.key, m_database.paging());
    if (error.isValid()) {
        queryFailed(u"查询失败"_s, error);
        return;
    }
    m_statusLabel->setText(u"%1：共 %2 行，用时 %3 毫秒"_s.arg(entry.title)
                               .arg(m_model->rowCount())
                               .arg(timer.elapsed()));
    if (entry.result == LogEntry::Result::Select) {
        m_chart->showRates(*m_model);
        m_chart->show();
        m_exportPngButton->show();
    }
}

// The connection is dropped as well: after a lost server the next query
// connects anew.
void ViewerWindow::queryFailed(const QString &what, const QSqlError &error)
{
    clearResult();
    m_database.close();
    const QString text = error.databaseText().isEmpty() ? error.text() : error.databaseText();
    showError(u"%1：%2"_s.arg(what, text));
    m_statusLabel->setText(u"查询未完成。"_s);
}

void ViewerWindow::showError(const QString &text)
{
    m_errorLabel->setText(text);
    m_errorLabel->show();
}

// The model lets go of the connection, which may be closed after this.
void ViewerWindow::clearResult()
{
    m_model->clear();
    m_chart->hide();
    m_exportPngButton->hide();
}

bool ViewerWindow::exportCsv(const QString &path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        showError(u"无法写入 %1：%2"_s.arg(path, file.errorString()));
        return false;
    }
    CsvWriter csv(file);
    QStringList header;
    for (int c = 0; c < m_model->columnCount(); ++c)
        header.append(m_model->headerData(c, Qt::Horizontal).toString());
    csv.writeRow(header);
    for (int row = 0; row < m_model->rowCount() && !m_model->lastError().isValid(); ++row) {
        QStringList fields;
        for (int c = 0; c < m_model->columnCount(); ++c)
            fields.append(m_model->index(row, c).data().toString());
        csv.writeRow(fields);
    }
    // A page that could not be read leaves no half file behind.
    if (m_model->lastError().isValid()) {
        file.cancelWriting();
        return false;
    }
    if (!csv.ok() || !file.commit()) {
        showError(u"无法写入 %1：%2"_s.arg(path, file.errorString()));
        return false;
    }
    m_statusLabel->setText(u"已导出 %1 行到 %2"_s.arg(m_model->rowCount()).arg(path));
    return true;
}

bool ViewerWindow::exportChartPng(const QString &path)
{
    if (!m_chart->savePng(path)) {
        showError(u"无法写入 %1"_s.arg(path));
        return false;
    }
    return true;
}

void ViewerWindow::chooseCsvFile()
{
    const QString path = QFileDialog::getSaveFileName(this, u"导出 CSV"_s, {}, u"CSV (*.csv)"_s);
    if (!path.isEmpty())
        exportCsv(path);
}

void ViewerWindow::choosePngFile()
{
    const QString path = QFileDialog::getSaveFileName(this, u"导出图表"_s, {}, u"PNG (*.png)"_s);
    if (!path.isEmpty())
        exportChartPng(path);
}

} // namespace quarry::viewer
