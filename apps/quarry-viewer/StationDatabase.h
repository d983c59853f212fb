#pragma once

#include "LogEntry.h"
#include "LogSelect.h"

#include <QSqlDatabase>
#include <QString>

#include <memory>

namespace quarry {
class CSysCfg;
class DbConnection;
} // namespace quarry

namespace quarry::viewer {

// The seal database of the station's seal.ini (the embedded files beside it
// or the server it names), opened as the teller data opens it. A failed
// open is retried by the next open().
class StationDatabase
{
public:
    StationDatabase();
    ~StationDatabase();
    StationDatabase(const StationDatabase &) = delete;
    StationDatabase &operator=(const StationDatabase &) = delete;

    // "" when the database is open, else why not (with the database's text).
    QString open();
    // Drops the connection; run no query on it after this.
    void close();
    QSqlDatabase database() const;

    // Reads the codes and descriptions of a list with a SELECT; "" when it
    // worked, else the fault.
    QString fill(CodeListSource &list);

    // How the engine of seal.ini's BASEMODE takes a page of rows.
    Paging paging() const;
    QString iniPath() const;
    // The dialect and the database, for the window's title.
    QString describe() const;

private:
    std::unique_ptr<CSysCfg> m_config;
    std::unique_ptr<DbConnection> m_db;
};

} // namespace quarry::viewer
