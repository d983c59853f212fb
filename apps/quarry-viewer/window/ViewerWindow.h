#pragma once

#include "LogCatalogue.h"
#include "rows/StationDatabase.h"
#include "output/XlsxExport.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QStandardPaths>

#include <optional>

class QLabel;
class QListWidget;
class QPlainTextEdit;
class QProgressDialog;
class QProgressBar;
class QPushButton;
class QSqlError;
class QTableView;

namespace quarry::viewer {

class LabelledRows;
class LogRowsModel;
class PassRateChart;
class StationBanner;

// The logs of the station in a list; choosing one asks the operator for the
// condition through CQuarry's own dialog, runs the log's SELECT on the
// station's seal database and shows the rows (read a page at a time as they
// scroll into view). The statement runs in the background, with a busy bar
// and a button that stops it on the database: the rows on screen stay until
// the new ones are read, and stay when the operator stops the reading. The
// labels above the rows always name the log, the station, the count and the
// time of the rows on screen, and the statement that ran; a cancelled
// dialog changes none of them. The seal result statistics get a bar chart
// of the pass rates too.
//
// What is wrong with the station is found by the station check, at start
// and before each query, and said in a banner above the rows; no query is
// asked for on a station the component cannot use. A fault of a query (a
// database that cannot be read, an error of the component) is said once
// above the rows and appended to the station's error log; the next query
// tries again.
class ViewerWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit ViewerWindow(const LogCatalogue &catalogue, QWidget *parent = nullptr);
    ~ViewerWindow() override;

    // Asks for the condition of the catalogue's entry `index` and starts
    // reading its rows; a cancelled dialog runs nothing.
    void runLog(int index);
    // Every row on screen as CSV, as the table labels it, hidden columns
    // included.
    bool exportCsv(const QString &path);
    // The rows on screen as an Excel workbook, and as the printed report.
    bool exportXlsx(const QString &path);
    // The selected cells of the table as a workbook, in their rows and
    // columns.
    bool exportSelectionXlsx(const QString &path);
    bool exportPdf(const QString &path);
    bool exportChartPng(const QString &path);

private:
    QWidget *makeLogPane();
    QWidget *makeResultPane();
    bool readCodeLists(LogEntry &entry);
    void rowsShown();
    void showRows(const LogEntry &entry, const QString &select);
    void showCount();
    void readingStopped();
    void showBusy();
    void queryFailed(const QString &what, const QSqlError &error);
    void fault(const QString &text);
    // Says how an export ended: done, stopped under progress, or failed (a
    // fault); false when it did not write, also when a page of the rows
    // could not be read.
    bool exported(const QString &failed, const QString &done, const QProgressDialog &progress);
    void clearResult(const QString &label);
    void chooseCsvFile();
    void choosePngFile();
    // A file to write, in the folder of the last one; suffix is added to a
    // name without one.
    QString chooseFile(const QString &caption, const QString &suffix, const QString &filter);
    // False, after saying so, when no rows are shown or they are still
    // being counted.
    bool hasRows();
    bool writeWorkbook(const QString &path, const QAbstractItemModel &rows);
    using Progress = std::function<bool(qint64)>;
    using RowWriter = std::function<QString(const RowSource &, const Progress &)>;
    // The rows on view to path by write, which reads them from the source
    // and tells the progress dialog how far it has come.
    bool exportRows(const QString &path, const RowWriter &write);
    ExportHeading heading() const;
    LogReport report() const;
    void printPreview();
    void addCopyActions();

    QList<LogEntry> m_entries;
    StationDatabase m_database;
    LogRowsModel *m_model;
    LabelledRows *m_rows;
    // A statement whose first rows are still to come.
    struct Asked
    {
        LogEntry entry;
        QString condition;
        QString select;
        QElapsedTimer timer;
    };
    std::optional<Asked> m_asked;
    QString m_shownTitle; // the log of the rows on screen, "" when none
    QString m_condition;  // and its condition
    QString m_shownHead;  // the log and station of the rows on screen
    qint64 m_shownMs = 0; // how long their first rows took
    QString m_shownAt;    // and when they came
    // Where the save dialogs open: the user's documents, then the folder of
    // the last file written.
    QString m_lastFolder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QListWidget *m_logList = nullptr;
    QLabel *m_errorLabel = nullptr;
    QLabel *m_noticeLabel = nullptr;
    QLabel *m_resultLabel = nullptr;
    QPlainTextEdit *m_sqlText = nullptr;
    QTableView *m_table = nullptr;
    QProgressBar *m_progress = nullptr;
    QPushButton *m_cancelButton = nullptr;
    PassRateChart *m_chart = nullptr;
    StationBanner *m_banner;
    QPushButton *m_exportPngButton = nullptr;
};

} // namespace quarry::viewer
