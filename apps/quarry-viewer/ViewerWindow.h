#pragma once

#include "LogCatalogue.h"
#include "StationDatabase.h"

#include <QMainWindow>

class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QSqlError;
class QTableView;

namespace quarry::viewer {

class LabelledRows;
class LogRowsModel;
class PassRateChart;

// The logs of the station in a list; choosing one asks the operator for the
// condition through CQuarry's own dialog, runs the log's SELECT on the
// station's seal database and shows the rows (read a page at a time as they
// scroll into view). The labels above the rows always name the log, the
// station, the count and the time of the rows on screen, and the statement
// that ran; a cancelled dialog changes none of them. The seal result
// statistics get a bar chart of the pass rates too.
//
// A fault (no station, a database that cannot be opened or read, an error
// of the component) is said once above the rows and appended to the
// station's error log; the next query tries again.
class ViewerWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit ViewerWindow(const LogCatalogue &catalogue, QWidget *parent = nullptr);
    ~ViewerWindow() override;

    // Asks for the condition of the catalogue's entry `index` and shows its
    // rows; a cancelled dialog runs nothing.
    void runLog(int index);
    // Every row on screen as CSV, as the table labels it, hidden columns
    // included.
    bool exportCsv(const QString &path);
    bool exportChartPng(const QString &path);

private:
    QWidget *makeLogPane();
    QWidget *makeResultPane();
    bool readCodeLists(LogEntry &entry);
    void runSelect(const LogEntry &entry, const QString &select);
    void showRows(const LogEntry &entry, qint64 milliseconds);
    void queryFailed(const QString &what, const QSqlError &error);
    void fault(const QString &text);
    void clearResult(const QString &label);
    void chooseCsvFile();
    void choosePngFile();

    QList<LogEntry> m_entries;
    StationDatabase m_database;
    LogRowsModel *m_model;
    LabelledRows *m_rows;
    QString m_shownTitle; // the log of the rows on screen, "" when none
    QListWidget *m_logList = nullptr;
    QLabel *m_errorLabel = nullptr;
    QLabel *m_noticeLabel = nullptr;
    QLabel *m_resultLabel = nullptr;
    QPlainTextEdit *m_sqlText = nullptr;
    QTableView *m_table = nullptr;
    PassRateChart *m_chart = nullptr;
    QPushButton *m_exportPngButton = nullptr;
};

} // namespace quarry::viewer
