#include "QueryInterrupt.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlResult>

#include <sql.h>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

// The driver's handle as the pointer it holds.
void *pointer(const QVariant &handle)
{
    return handle.isValid() ? *static_cast<void *const *>(handle.constData()) : nullptr;
}

} // namespace

void QueryInterrupt::watch(const QSqlDatabase &database)
{
    void *sqlite = nullptr;
    qint64 mySqlThread = 0;
    m_odbc = database.driverName() == "QODBC"_L1;
    if (database.driver()->dbmsType() == QSqlDriver::SQLite) {
        sqlite = pointer(database.driver()->handle());
    } else if (!m_odbc && database.driver()->dbmsType() == QSqlDriver::MySqlServer) {
        QSqlQuery id(database);
        if (id.exec(u"SELECT CONNECTION_ID()"_s) && id.next())
            mySqlThread = id.value(0).toLongLong();
    }
    std::lock_guard lock(m_mutex);
    m_sqlite = sqlite;
    m_mySqlThread = mySqlThread;
}

bool QueryInterrupt::started(const QSqlQuery &query, quint64 ticket)
{
    // The ODBC driver's result handle is the statement's.
    void *statement = m_odbc ? pointer(query.result()->handle()) : nullptr;
    std::lock_guard killing(m_killing);
    std::lock_guard lock(m_mutex);
    if (ticket <= m_stoppedUpTo)
        return false;
    m_running = ticket;
    m_odbcStatement = statement;
    return true;
}

void QueryInterrupt::finished()
{
    {
        std::lock_guard lock(m_mutex);
        m_running = 0;
        m_odbcStatement = nullptr;
    }
    m_finished.notify_all();
}

// Under the lock, so that nothing reaches a statement that started later.
bool QueryInterrupt::interrupt(quint64 ticket)
{
    std::lock_guard lock(m_mutex);
    m_stoppedUpTo = std::max(m_stoppedUpTo, ticket);
    if (m_running == 0 || m_running > ticket)
        return false;
    if (m_sqlite)
        sqlite3_interrupt(static_cast<sqlite3 *>(m_sqlite));
    else if (m_odbcStatement)
        SQLCancel(static_cast<SQLHSTMT>(m_odbcStatement));
    return m_mySqlThread != 0;
}

// The server forgets a kill that finds the connection idle, which it is
// until the statement, started here, has reached the server: the kill goes
// again until the statement has ended. No other statement starts meanwhile.
QString QueryInterrupt::kill(quint64 ticket, const QSqlDatabase &killer)
{
    using namespace std::chrono_literals;
    std::lock_guard killing(m_killing);
    std::unique_lock lock(m_mutex);
    while (m_running != 0 && m_running <= ticket) {
        const qint64 thread = m_mySqlThread;
        lock.unlock();
        QSqlQuery kill(killer);
        if (!kill.exec(u"KILL QUERY %1"_s.arg(thread)))
            return kill.lastError().text();
        lock.lock();
        m_finished.wait_for(lock, 100ms, [this] { return m_running == 0; });
    }
    return {};
}

} // namespace quarry::viewer
