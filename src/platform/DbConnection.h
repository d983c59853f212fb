#pragma once

#include <quarry/quarry_export.h>

#include <QSqlDatabase>
#include <QString>

namespace quarry {

// The database access library's connection: a dialect, an open with
// "Server=...;Database=..." plus user and password, a failed flag and an
// error text. Dialects (the seal.ini BASEMODE, without regard to case):
//  - "ACCESS" (default, also an empty type): the embedded database, an
//    SQLite file named by Database (".db" added when it has no extension);
//    a relative name is looked up in the file folder without regard to case,
//    a Windows path is mapped to a local one. Opened read-only; a missing,
//    unreadable, corrupt or locked file is a failed open whose error text
//    names the file, never a new database. concat() works as on MySQL;
//  - "MYSQL": Server is host or host:port; the driver sets the session to
//    utf8mb4;
//  - "SQLSERVER" and "SYBASE...": ODBC through the driver set with
//    setOdbcDriver(), Server host or host:port.
// Any other type is a failed open.
// Each object owns its own QtSql connection name and removes it when closed
// or destroyed.
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

    // The open QtSql connection; an invalid one while closed. Do not keep
    // copies beyond the call that uses them: close() removes the connection.
    QSqlDatabase database() const;

private:
    enum class Dialect { Embedded, MySql, Odbc, Unknown };

    Dialect dialect() const;
    void openEmbedded(const QString &databaseName);
    QSqlDatabase addMySql(const QString &server, const QString &databaseName);
    QSqlDatabase addOdbc(const QString &server, const QString &databaseName);
    QString embeddedFilePath(const QString &databaseName) const;
    void fail(const QString &text);

    QString m_connectionName;
    QString m_type = QStringLiteral("ACCESS");
    QString m_fileFolder;
    QString m_odbcDriver = QStringLiteral("FreeTDS");
    bool m_failed = false;
    QString m_errorText;
};

} // namespace quarry
