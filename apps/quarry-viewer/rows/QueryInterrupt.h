#pragma once

#include <QSqlDatabase>
#include <QString>

#include <condition_variable>
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
// started() and finished() around each statement; interrupt() and kill()
// come from other threads.
class QueryInterrupt
{
public:
    void watch(const QSqlDatabase &database);
    // Statement number `ticket`, prepared (ODBC has its handle then), is
    // about to run; false when it was stopped already: do not run it.
    bool started(const QSqlQuery &query, quint64 ticket);
    void finished();
    // Stops the statements up to number `ticket`: any that has yet to start,
    // and the one running where the engine allows it from here. True when
    // the one running is MySQL's, which kill() stops.
    bool interrupt(quint64 ticket);
    // MySQL's statement up to number `ticket`, if it still runs, killed from
    // killer, a second connection to the server on the calling thread, until
    // it has ended; "" when that worked, else why not.
    QString kill(quint64 ticket, const QSqlDatabase &killer);

private:
    // Held while a kill goes to the server, which kills whatever statement
    // then runs on the connection: one that starts meanwhile waits for it.
    // Interrupts (from the GUI thread) do not, nor does the end of the
    // statement.
    std::mutex m_killing;
    std::mutex m_mutex;
    std::condition_variable m_finished;
    quint64 m_stoppedUpTo = 0;
    quint64 m_running = 0;           // the ticket of the running statement, 0 for none
    void *m_sqlite = nullptr;        // sqlite3*
    qint64 m_mySqlThread = 0;        // the server's id of the watched connection
    void *m_odbcStatement = nullptr; // SQLHSTMT of the running statement
    bool m_odbc = false;             // of the watching thread alone
};

} // namespace quarry::viewer
