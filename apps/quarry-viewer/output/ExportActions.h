#pragma once

#include <QObject>
#include <QStandardPaths>
#include <QString>

#include <functional>

class QItemSelectionModel;
class QPlainTextEdit;
class QProgressDialog;
class QWidget;

namespace quarry::viewer {

class LabelledRows;
class LogReport;
class LogRowsModel;
class PassRateChart;
class SelectedCells;
class StationDatabase;
struct ExportHeading;
struct RowSource;

// What the exports take from the window's widgets: the table's selection
// (over the labelled rows, by the log's own rows), the statement shown above
// it and the pass-rate chart.
struct ResultWidgets
{
    const QItemSelectionModel &selection;
    const QPlainTextEdit &statement;
    PassRateChart &chart;
};

// What the operator can do with the rows on view: write them to a file
// chosen in a save dialog (CSV, Excel, the selected cells, the report as a
// PDF, the chart as a PNG), under a progress dialog that stops the writing,
// or see the report in a print preview. How each ended is told once:
// said() for the status bar, failed() for a fault.
class ExportActions : public QObject
{
    Q_OBJECT

public:
    // The rows of model as rows labels them; the dialogs open over parent.
    ExportActions(const StationDatabase &database, const LogRowsModel &model,
                  const LabelledRows &rows, const ResultWidgets &widgets, QWidget *parent);

    // The log whose rows are on view ("" when none) and the condition they
    // were read for.
    void setShown(const QString &title, const QString &condition);

    // Each asks for the file first; a cancelled save dialog writes nothing.
    void chooseCsv();
    void chooseXlsx();
    void chooseSelectionXlsx();
    void choosePdf();
    void choosePng();
    void printPreview();

    // Every row on view as CSV, as the table labels it, hidden columns
    // included.
    bool exportCsv(const QString &path);
    // The rows on view as an Excel workbook, and as the printed report.
    bool exportXlsx(const QString &path);
    // The selected cells of the table as a workbook, in their rows and
    // columns.
    bool exportSelectionXlsx(const QString &path);
    // cells to the clipboard as a table (copyCells); the clipboard keeps
    // its text when none is selected, the copy is stopped or fails.
    void copy(const SelectedCells &cells, bool withTitles);
    bool exportPdf(const QString &path);
    bool exportChartPng(const QString &path);

Q_SIGNALS:
    void said(const QString &message);
    void failed(const QString &fault);

private:
    using Progress = std::function<bool(qint64)>;
    using RowWriter = std::function<QString(const RowSource &, const Progress &)>;

    // A file to write, in the folder of the last one; suffix is added to a
    // name without one.
    QString chooseFile(const QString &caption, const QString &suffix, const QString &filter);
    // False, after saying so, when no rows are shown or they are still
    // being counted.
    bool hasRows();
    // The `rows` rows of source to path by write, which reads them and
    // tells the progress dialog how far it has come.
    bool exportRows(const QString &path, const RowSource &source, qint64 rows,
                    const RowWriter &write);
    // Every row on view, in the order on view.
    RowSource shownRows() const;
    // Writes the rows of a source to path as an Excel workbook.
    RowWriter workbook(const QString &path) const;
    // The rows that hold the selected cells, read from the first of them.
    RowSource selectionSource(const SelectedCells &cells) const;
    // Says how an export ended: done (when done says something), stopped
    // under progress, or failed (a fault); false when it did not write,
    // also when a page of the rows could not be read.
    bool exported(const QString &fault, const QString &done, const QProgressDialog &progress);
    ExportHeading heading() const;
    LogReport report() const;

    const StationDatabase &m_database;
    const LogRowsModel &m_model;
    const LabelledRows &m_rows;
    const ResultWidgets m_widgets;
    QWidget *m_parent;
    QString m_title;
    QString m_condition;
    // Where the save dialogs open: the user's documents, then the folder of
    // the last file written.
    QString m_lastFolder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
};

} // namespace quarry::viewer
