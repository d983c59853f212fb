#include "ExportActions.h"

#include "CopiedCells.h"
#include "ExportProgress.h"
#include "FileExports.h"
#include "LogReport.h"
#include "PassRateChart.h"
#include "ReportPreview.h"
#include "XlsxExport.h"
#include "catalogue/ConditionWords.h"
#include "catalogue/LabelledRows.h"
#include "rows/LogRowsModel.h"
#include "rows/RowStream.h"
#include "rows/SelectedCells.h"
#include "rows/StationDatabase.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QClipboard>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QItemSelectionModel>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

QString exporting(qint64 rows)
{
    return u"正在导出 %1 行…"_s.arg(rows);
}

// The model's rows, read from the station, only those cells of them where
// given.
RowSource stationRows(const StationDatabase &station, const LogRowsModel::Part &rows,
                      const std::optional<SelectedCells> &cells = std::nullopt)
{
    return {station.opener(), rows.select, station.describe(), cells, rows.firstRow, rows.lender};
}

} // namespace

ExportActions::ExportActions(const StationDatabase &database, const LogRowsModel &model,
                             const LabelledRows &rows, const ResultWidgets &widgets,
                             QWidget *parent)
    : QObject(parent)
    , m_database(database)
    , m_model(model)
    , m_rows(rows)
    , m_widgets(widgets)
    , m_parent(parent)
{
}

void ExportActions::setShown(const QString &title, const QString &condition)
{
    m_title = title;
    m_condition = condition;
}

void ExportActions::chooseCsv()
{
    if (const QString path = chooseFile(u"导出 CSV"_s, u"csv"_s, u"CSV (*.csv)"_s); !path.isEmpty())
        exportCsv(path);
}

void ExportActions::chooseXlsx()
{
    if (const QString path = chooseFile(u"导出 Excel"_s, u"xlsx"_s, u"Excel (*.xlsx)"_s);
        !path.isEmpty())
        exportXlsx(path);
}

void ExportActions::chooseSelectionXlsx()
{
    if (const QString path = chooseFile(u"导出所选到 Excel"_s, u"xlsx"_s, u"Excel (*.xlsx)"_s);
        !path.isEmpty())
        exportSelectionXlsx(path);
}

void ExportActions::choosePdf()
{
    if (const QString path = chooseFile(u"导出 PDF"_s, u"pdf"_s, u"PDF (*.pdf)"_s); !path.isEmpty())
        exportPdf(path);
}

void ExportActions::choosePng()
{
    const QString path = chooseFile(u"导出图表"_s, u"png"_s, u"PNG (*.png)"_s);
    if (!path.isEmpty() && exportChartPng(path))
        Q_EMIT said(u"已把图表写到 %1"_s.arg(path));
}

void ExportActions::printPreview()
{
    if (hasRows())
        previewReport(report(), m_title, m_parent);
}

bool ExportActions::exportCsv(const QString &path)
{
    return hasRows()
        && exportRows(path, shownRows(), m_rows.rowCount(),
                      [&](const RowSource &source, const Progress &progress) {
                          return writeCsv(path, m_rows, source, progress);
                      });
}

bool ExportActions::exportXlsx(const QString &path)
{
    return hasRows() && exportRows(path, shownRows(), m_rows.rowCount(), workbook(path));
}

bool ExportActions::exportSelectionXlsx(const QString &path)
{
    if (!hasRows())
        return false;
    const SelectedCells cells(m_widgets.selection.selection());
    if (cells.isEmpty()) {
        Q_EMIT said(u"没有选中的单元格：请先在表格中选择要导出的行或单元格。"_s);
        return false;
    }
    return exportRows(path, selectionSource(cells), cells.rowCount(), workbook(path));
}

void ExportActions::copy(const SelectedCells &cells, bool withTitles)
{
    if (cells.isEmpty())
        return;
    QProgressDialog progress(m_parent);
    QString text;
    const QString fault
        = copyCells(m_rows, selectionSource(cells), withTitles, text,
                    showProgress(progress, u"正在复制 %1 行…"_s.arg(cells.rowCount()),
                                 cells.rowCount()));
    if (exported(fault, {}, progress))
        QGuiApplication::clipboard()->setText(text);
}

bool ExportActions::exportPdf(const QString &path)
{
    if (!hasRows())
        return false;
    QProgressDialog progress(m_parent);
    const LogReport pages = report();
    const QString fault
        = writePdf(path, pages, m_title,
                   showProgress(progress, exporting(m_rows.rowCount()), pages.progressSteps()));
    return exported(fault, u"已把%1的报表写到 %2"_s.arg(m_title, path), progress);
}

bool ExportActions::exportChartPng(const QString &path)
{
    if (!m_widgets.chart.savePng(path)) {
        Q_EMIT failed(u"无法写入 %1"_s.arg(path));
        return false;
    }
    return true;
}

QString ExportActions::chooseFile(const QString &caption, const QString &suffix,
                                  const QString &filter)
{
    if (!hasRows())
        return {};
    const QString name
        = u"%1-%2.%3"_s.arg(m_title, QDateTime::currentDateTime().toString(u"yyyyMMdd-HHmmss"_s),
                            suffix);
    QString path = QFileDialog::getSaveFileName(m_parent, caption,
                                                QDir(m_lastFolder).filePath(name), filter);
    if (path.isEmpty())
        return {};
    if (QFileInfo(path).suffix().isEmpty())
        path += u'.' + suffix;
    m_lastFolder = QFileInfo(path).absolutePath();
    return path;
}

bool ExportActions::hasRows()
{
    if (m_title.isEmpty())
        Q_EMIT said(u"没有可导出的结果：请先查询。"_s);
    else if (!m_model.isCounted())
        Q_EMIT said(m_model.isBusy() ? u"结果还在计数，请计数完成后再导出。"_s
                                     : u"结果的计数已停止：请重新查询，计数完成后再导出。"_s);
    return !m_title.isEmpty() && m_model.isCounted();
}

bool ExportActions::exportRows(const QString &path, const RowSource &source, qint64 rows,
                               const RowWriter &write)
{
    QProgressDialog progress(m_parent);
    const QString fault = write(source, showProgress(progress, exporting(rows), rows));
    return exported(fault, u"已导出%1的 %2 行到 %3"_s.arg(m_title).arg(rows).arg(path), progress);
}

ExportActions::RowWriter ExportActions::workbook(const QString &path) const
{
    return [this, path](const RowSource &source, const Progress &progress) {
        return writeXlsx(path, m_rows, source, heading(), progress);
    };
}

RowSource ExportActions::shownRows() const
{
    return stationRows(m_database, m_model.statement(0, -1));
}

RowSource ExportActions::selectionSource(const SelectedCells &cells) const
{
    return stationRows(m_database,
                       m_model.statement(cells.firstRow(), cells.lastRow() - cells.firstRow() + 1),
                       cells);
}

bool ExportActions::exported(const QString &fault, const QString &done,
                             const QProgressDialog &progress)
{
    if (m_model.lastError().isValid())
        return false;
    if (fault.isEmpty()) {
        if (!done.isEmpty())
            Q_EMIT said(done);
    } else if (progress.wasCanceled()) {
        Q_EMIT said(fault);
    } else {
        Q_EMIT failed(fault);
    }
    return fault.isEmpty();
}

ExportHeading ExportActions::heading() const
{
    return {m_title, m_condition, m_database.describe(), m_widgets.statement.toPlainText(),
            conditionWords(m_condition, m_rows.entry(), m_database.dialect())};
}

LogReport ExportActions::report() const
{
    return logReport(m_rows, shownRows(), heading(), m_database.printSettings());
}

} // namespace quarry::viewer
