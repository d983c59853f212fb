#pragma once

#include <QSqlDatabase>
#include <QString>

#include <mutex>

class QSqlQuery;

namespace quarry::viewer {

// Stops, from another thread, the statements that run on a connection, the
// way each engine allows it: SQLite interrupts the connection, MySQL and
// MariaDB kill the query from a connection of their own (the client library
// cannot interrupt its own call), ODBC cancels the statement handle.
//
// Statements are numbered by the caller, in the order they are asked for.
// The thread that owns the connection calls watch() once it is open, and
// started() and finished() around each statement; interrupt() comes from
// another thread.
class QueryInterrupt
{
public:
    void watch(const QSqlDatabase &database);
    // Statement number `ticket`, prepared (ODBC has its handle then), is
    // about to run; false when it was stopped already: do not run it.
    bool started(const QSqlQuery &query, quint64 ticket);
    void finished();
    // Whether interrupt() needs a second connection to the server (MySQL).
    bool needsKiller();
    // Stops the statements up to number `ticket`: the one running and any
    // that has yet to start. killer: the second connection, on the calling
    // thread, when needed. "" when that worked, else why not.
    QString interrupt(quint64 ticket, const QSqlDatabase &killer = {});
    bool isStopped(quint64 ticket);

private:
    std::mutex m_mutex;
    quint64 m_stoppedUpTo = 0;
    quint64 m_running = 0;           // the ticket of the running statement, 0 for none
    void *m_sqlite = nullptr;        // sqlite3*
    qint64 m_mySqlThread = 0;        // the server's id of the watched connection
    void *m_odbcStatement = nullptr; // SQLHSTMT of the running statement
    bool m_odbc = false;             // of the watching thread alone
};

} // namespace quarry::viewer
