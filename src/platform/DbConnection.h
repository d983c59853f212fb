#pragma once

#include <quarry/quarry_export.h>

#include <QSqlDatabase>
#include <QString>

namespace quarry {

// The database access library's connection: a dialect, an open with
// "Server=...;Database=..." plus user and password, a failed flag and an
// error text. Dialects (the seal.ini BASEMODE):
//  - "ACCESS" (default): the embedded database, an SQLite file named by
//    Database (".db" added when it has no extension), relative names in the
//    file folder; opened read-only, a missing file is a failed open;
//  - "MYSQL": Server is host or host:port;
//  - "SQLSERVER" and "SYBASE...": ODBC through the driver set with
//    setOdbcDriver().
// Each object owns its own QtSql connection name and removes it when destroyed.
class QUARRY_EXPORT DbConnection
{
public:
    DbConnection();
    ~DbConnection();
    DbConnection(const DbConnection &) = delete;
    DbConnection &operator=(const DbConnection &) = delete;

    void setDatabaseType(const QString &type);
    QString databaseType() const { return m_type; }
    // Folder in which a relative embedded database file is looked for.
    void setFileFolder(const QString &folder);
    // ODBC driver name for the SQLSERVER and SYBASE dialects.
    void setOdbcDriver(const QString &driver);

    // Opens (re-opens) the connection. The flag is accepted as the library
    // took it and has no effect here. Never throws: see failed().
    void open(const QString &connectionString, const QString &user, const QString &password,
              bool flag);
    void close();

    bool isOpen() const;
    // Whether the last open or close failed.
    bool failed() const { return m_failed; }
    QString errorText() const { return m_errorText; }

    QSqlDatabase database() const;

private:
    QString m_connectionName;
    QString m_type = QStringLiteral("ACCESS");
    QString m_fileFolder;
    QString m_odbcDriver = QStringLiteral("FreeTDS");
    bool m_failed = false;
    QString m_errorText;
};

} // namespace quarry
