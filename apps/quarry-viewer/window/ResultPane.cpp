#include "ResultPane.h"

#include "LogEntry.h"
#include "LogTable.h"
#include "StationBanner.h"
#include "catalogue/LabelledRows.h"
#include "output/ExportActions.h"
#include "output/PassRateChart.h"
#include "rows/SelectedCells.h"
#include "rows/LogRowsModel.h"

#include "support/ErrorLog.h"

#include <quarry/QuarryError.h>

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSplitter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

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

ResultPane::ResultPane(StationBanner *banner, const StationDatabase &database, LogRowsModel &model,
                       LabelledRows *rows, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
    , m_rows(rows)
    , m_errorLabel(messageLabel(u"errorLabel"_s, u"color: #a40000; background: #fde8e8;"_s, this))
    , m_noticeLabel(messageLabel(u"noticeLabel"_s, u"background: #fff6d5;"_s, this))
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(banner);
    layout->addWidget(m_errorLabel);
    layout->addWidget(m_noticeLabel);

    auto *bar = new QHBoxLayout;
    m_resultLabel = new QLabel(u"请选择日志，点“查询…”输入条件。"_s, this);
    m_resultLabel->setObjectName(u"resultLabel"_s);
    m_resultLabel->setWordWrap(true);
    bar->addWidget(m_resultLabel, 1);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(u"queryProgress"_s);
    m_progress->setRange(0, 0); // busy: a statement says nothing of its progress
    m_progress->setMaximumWidth(120);
    m_progress->hide();
    bar->addWidget(m_progress);
    m_cancelButton = new QPushButton(u"停止查询"_s, this);
    m_cancelButton->setObjectName(u"cancelQueryButton"_s);
    m_cancelButton->hide();
    bar->addWidget(m_cancelButton);
    connect(m_cancelButton, &QPushButton::clicked, &m_model, &LogRowsModel::cancel);
    connect(&m_model, &LogRowsModel::stopFailed, this,
            [this](const QString &why) { fault(u"无法停止查询：%1"_s.arg(why)); });
    addButtons(bar);
    layout->addLayout(bar);

    m_sqlText = new QPlainTextEdit(this);
    m_sqlText->setObjectName(u"sqlText"_s);
    m_sqlText->setReadOnly(true);
    m_sqlText->setPlaceholderText(u"执行的 SQL"_s);
    m_sqlText->setMaximumHeight(90);
    layout->addWidget(m_sqlText);

    auto *results = new QSplitter(Qt::Vertical, this);
    m_table = new LogTable(*m_rows, results);
    m_table->setObjectName(u"resultTable"_s);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    // Columns fit the rows on screen: measuring the text of a thousand rows
    // holds the window for a tenth of a second.
    m_table->horizontalHeader()->setResizeContentsPrecision(0);
    // A click on a column's title sorts on the database (see LogRowsModel),
    // a second reverses the order, a third returns to the log's own.
    m_table->setSortingEnabled(true);
    m_table->horizontalHeader()->setSortIndicatorClearable(true);
    connect(m_table->horizontalHeader(), &QHeaderView::sortIndicatorChanged, this,
            &ResultPane::showBusy);
    addCopyActions();
    m_chart = new PassRateChart(results);
    m_chart->setObjectName(u"passRateChart"_s);
    m_chart->setMinimumHeight(260);
    m_chart->hide();
    results->addWidget(m_table);
    results->addWidget(m_chart);
    layout->addWidget(results, 1);
    m_exports = new ExportActions(database, m_model, *m_rows,
                                  {m_table->logSelection(), *m_sqlText, *m_chart}, this);
    connect(m_exports, &ExportActions::failed, this, &ResultPane::fault);
}

// The export actions are made last, over the widgets they read: the buttons
// reach them only when clicked.
void ResultPane::addButtons(QHBoxLayout *bar)
{
    auto *copy = new QPushButton(u"复制 SQL"_s, this);
    copy->setObjectName(u"copySqlButton"_s);
    bar->addWidget(copy);
    connect(copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_sqlText->toPlainText()); });
    const auto button
        = [&](const QString &name, const QString &text, void (ExportActions::*act)()) {
              auto *added = new QPushButton(text, this);
              added->setObjectName(name);
              bar->addWidget(added);
              connect(added, &QPushButton::clicked, this, [this, act] { (m_exports->*act)(); });
              return added;
          };
    button(u"exportCsvButton"_s, u"导出 CSV…"_s, &ExportActions::chooseCsv);
    button(u"exportXlsxButton"_s, u"导出 Excel…"_s, &ExportActions::chooseXlsx);
    button(u"exportPdfButton"_s, u"导出 PDF…"_s, &ExportActions::choosePdf);
    button(u"printButton"_s, u"打印预览…"_s, &ExportActions::printPreview);
    m_exportPngButton = button(u"exportPngButton"_s, u"导出图表 PNG…"_s, &ExportActions::choosePng);
    m_exportPngButton->hide();
}

// Ctrl+C and the table's menu copy the selected cells as a table, read in
// the background like an export: a clipboard takes a few thousand rows, a
// file any number.
void ResultPane::addCopyActions()
{
    constexpr qint64 CopiedRowsAtMost = 10'000;
    const auto add = [this](const QString &text, bool titles) {
        auto *action = new QAction(text, m_table);
        m_table->addAction(action);
        connect(action, &QAction::triggered, this, [this, titles] {
            const SelectedCells cells(m_table->logSelection().selection());
            if (cells.rowCount() > CopiedRowsAtMost) {
                showNotice(
                    u"所选有 %1 行，复制最多 %2 行：更多的行请用“导出 CSV…”或“导出 Excel…”。"_s
                        .arg(cells.rowCount())
                        .arg(CopiedRowsAtMost));
                return;
            }
            m_exports->copy(cells, titles);
        });
        return action;
    };
    QAction *copy = add(u"复制"_s, false);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    add(u"复制（含标题）"_s, true);
    auto *exportSelection = new QAction(u"导出所选到 Excel…"_s, m_table);
    m_table->addAction(exportSelection);
    connect(exportSelection, &QAction::triggered, this,
            [this] { m_exports->chooseSelectionXlsx(); });
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void ResultPane::fault(const QString &text)
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

void ResultPane::showNotice(const QString &text)
{
    m_noticeLabel->setText(text);
    m_noticeLabel->show();
}

void ResultPane::clearMessages()
{
    m_errorLabel->hide();
    m_noticeLabel->hide();
}

QString ResultPane::result() const
{
    return m_resultLabel->text();
}

void ResultPane::setResult(const QString &text)
{
    m_resultLabel->setText(text);
}

void ResultPane::setStatement(const QString &select)
{
    m_sqlText->setPlainText(select);
}

void ResultPane::showBusy()
{
    m_progress->setVisible(m_model.isBusy());
    m_cancelButton->setVisible(m_model.isBusy());
}

void ResultPane::scrollToTop()
{
    m_table->scrollToTop();
    m_table->horizontalScrollBar()->setValue(0);
}

void ResultPane::showColumns(const LogEntry &entry)
{
    for (int c = 0; c < m_rows->columnCount(); ++c) {
        const QString name = m_model.headerData(c, Qt::Horizontal).toString().toUpper();
        m_table->setColumnHidden(c, entry.hiddenColumns.contains(name));
    }
    m_table->resizeColumnsToContents();
    // New rows come in the log's own order.
    m_table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
}

void ResultPane::showChart()
{
    const LogRowsModel::ReadingAtOnce allRows(m_model);
    m_chart->showRates(m_model);
    m_chart->show();
    m_exportPngButton->show();
}

void ResultPane::updateChart()
{
    if (m_chart->isVisible()) {
        const LogRowsModel::ReadingAtOnce allRows(m_model);
        m_chart->showRates(m_model);
    }
}

void ResultPane::hideChart()
{
    m_chart->hide();
    m_exportPngButton->hide();
}

} // namespace quarry::viewer
