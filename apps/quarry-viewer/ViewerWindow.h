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

class LogRowsModel;
class PassRateChart;

// The logs of the station in a list; choosing one asks the operator for the
// condition through CQuarry's own dialog, runs the log's SELECT on the
// station's seal database and shows the rows (read a page at a time as they
// scroll into view), their count, the time taken and the statement that
// ran. The seal result statistics get a bar chart of the pass rates too.
class ViewerWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit ViewerWindow(const LogCatalogue &catalogue, QWidget *parent = nullptr);
    ~ViewerWindow() override;

    // Asks for the condition of the catalogue's entry `index` and shows its
    // rows; a cancelled dialog runs nothing.
    void runLog(int index);
    // Every row of the result as CSV.
    bool exportCsv(const QString &path);
    bool exportChartPng(const QString &path);

private:
    QWidget *makeLogPane();
    QWidget *makeResultPane();
    bool readCodeLists(LogEntry &entry);
    void runSelect(const LogEntry &entry, const QString &select);
    void queryFailed(const QString &what, const QSqlError &error);
    void showError(const QString &text);
    void clearResult();
    void chooseCsvFile();
    void choosePngFile();

    QList<LogEntry> m_entries;
    StationDatabase m_database;
    LogRowsModel *m_model;
    QListWidget *m_logList = nullptr;
    QLabel *m_errorLabel = nullptr;
    QPlainTextEdit *m_sqlText = nullptr;
    QLabel *m_statusLabel = nullptr;
    QTableView *m_table = nullptr;
    PassRateChart *m_chart = nullptr;
    QPushButton *m_exportPngButton = nullptr;
};

} // namespace quarry::viewer
