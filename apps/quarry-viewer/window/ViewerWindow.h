#pragma once

#include "LogCatalogue.h"
#include "rows/StationDatabase.h"

#include <QElapsedTimer>
#include <QMainWindow>

#include <optional>

class QListWidget;
class QSqlError;

namespace quarry::viewer {

class LabelledRows;
class LogRowsModel;
class ResultPane;
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

private:
    // Asks for the condition of the catalogue's entry `index` (one of the
    // log list's rows) and starts reading its rows; a cancelled dialog runs
    // nothing.
    void runLog(int index);
    QWidget *makeLogPane();
    bool readCodeLists(LogEntry &entry);
    void rowsShown();
    void showRows(const LogEntry &entry, const QString &select, const QString &condition);
    void showCount();
    void readingStopped();
    void queryFailed(const QString &what, const QSqlError &error);
    void clearResult(const QString &label);

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
    QString m_shownHead;  // the log and station of the rows on screen
    qint64 m_shownMs = 0; // how long their first rows took
    QString m_shownAt;    // and when they came
    QListWidget *m_logList = nullptr;
    StationBanner *m_banner;
    ResultPane *m_pane = nullptr;
};

} // namespace quarry::viewer
