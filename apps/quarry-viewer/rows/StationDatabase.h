#pragma once

#include "LogEntry.h"
#include "PrintSettings.h"
#include "LogSelect.h"
#include "BackgroundQuery.h"

#include <QSqlDatabase>
#include <QString>

#include <memory>

namespace quarry {
class CSysCfg;
class DbConnection;
enum class SqlDialect;
} // namespace quarry

namespace quarry::viewer {

// The seal database of the station's seal.ini (the embedded files beside it
// or the server it names), opened as the teller data opens it. Only the
// keys that reach the database are read, so that a station whose other
// settings need a database that is down says nothing but the one fault.
// A failed open is retried by the next open(), which reads seal.ini anew.
class StationDatabase
{
public:
    StationDatabase();
    ~StationDatabase();
    StationDatabase(const StationDatabase &) = delete;
    StationDatabase &operator=(const StationDatabase &) = delete;

    // "" when seal.ini is there, else where it was looked for.
    QString findStation() const;
    // "" when the database is open, else why not: which file or server, and
    // the reason.
    QString open();
    // Drops the connection; run no query on it after this.
    void close();
    QSqlDatabase database() const;
    // Opens another connection as open() opens this one, with the settings
    // of the last open(): a copy of them, so that the thread where that
    // connection belongs may call it. "" when it opened, else why not.
    BackgroundQuery::Opener opener() const;

    // Reads the codes and descriptions of a list with a SELECT; "" when it
    // worked, else the fault.
    QString fill(CodeListSource &list);

    // How the engine of seal.ini's BASEMODE takes a page of rows.
    Paging paging() const;
    // The embedded database (BASEMODE ACCESS), where only the dialects'
    // common SQL runs.
    bool isEmbedded() const;
    // The dialect CQuarry writes its conditions in on this station.
    SqlDialect dialect() const;
    QString iniPath() const;
    // seal.ini [BANKPARAM] PRINTLINES and PRINTFONT.
    PrintSettings printSettings() const;
    // Which database, in the operator's words: the embedded file's name, or
    // the server with its port and the database.
    QString describe() const;

private:
    void readSettings();

    std::unique_ptr<CSysCfg> m_config;
    std::unique_ptr<DbConnection> m_db;
};

} // namespace quarry::viewer
