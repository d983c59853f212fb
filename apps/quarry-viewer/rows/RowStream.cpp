#include "RowStream.h"

#include "MariaDbRows.h"
#include "QueryInterrupt.h"
#include "SqliteRows.h"

#include "platform/DbConnection.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QThread>

#include <chrono>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

constexpr qsizetype BatchRows = 500;
constexpr qsizetype BatchesHeld = 4;
constexpr quint64 Ticket = 1;
// Often enough for a window waiting on the rows (a report painted on the GUI
// thread) to answer at once.
constexpr auto GoOnEvery = std::chrono::milliseconds(25);

} // namespace

RowStream::RowStream(const RowSource &source)
    : m_station(source.station)
    , m_interrupt(std::make_shared<QueryInterrupt>())
    , m_opener(source.opener)
    , m_selected(source.selected)
    , m_firstRow(source.firstRow)
    , m_thread(QThread::create([this, source] { read(source); }))
{
    m_thread->setObjectName(u"quarry-export"_s);
    m_thread->start();
}

RowStream::~RowStream()
{
    stop();
    m_thread->wait();
}

QList<QVariantList> RowStream::next(const std::function<bool()> &goOn)
{
    std::unique_lock lock(m_mutex);
    while (m_batches.isEmpty() && !m_ended && !m_stopped) {
        if (m_changed.wait_for(lock, GoOnEvery) == std::cv_status::no_timeout)
            continue;
        lock.unlock();
        const bool more = goOn();
        lock.lock();
        if (!more) {
            lock.unlock();
            stop();
            return {};
        }
    }
    if (m_batches.isEmpty())
        return {};
    QList<QVariantList> batch = m_batches.takeFirst();
    m_changed.notify_all();
    return batch;
}

QString RowStream::failure() const
{
    std::lock_guard lock(m_mutex);
    if (!m_error.isValid())
        return {};
    return u"在%1上查询失败：%2"_s.arg(m_station,
                                       m_error.databaseText().isEmpty() ? m_error.text()
                                                                        : m_error.databaseText());
}

void RowStream::stop()
{
    {
        std::lock_guard lock(m_mutex);
        if (m_stopped || m_ended)
            return;
        m_stopped = true;
        m_batches.clear();
    }
    m_changed.notify_all();
    if (!m_interrupt->interrupt(Ticket))
        return;
    // MySQL stops a statement from a second connection, opened here; without
    // it the thread still stops at its next row.
    DbConnection killer;
    if (m_opener(killer).isEmpty())
        m_interrupt->kill(Ticket, killer.database());
}

// On the thread: the connection opens and closes there.
void RowStream::read(const RowSource &source)
{
    QSqlError error;
    {
        DbConnection connection;
        if (const QString fault = source.opener(connection); !fault.isEmpty())
            error = QSqlError(fault, QString(), QSqlError::ConnectionError);
        else
            error = readOn(connection.database(), source.select);
    }
    std::lock_guard lock(m_mutex);
    if (!m_stopped)
        m_error = error;
    m_ended = true;
    m_changed.notify_all();
}

// Through SqliteRows or MariaDbRows, made once the statement may start.
template<typename Rows>
QSqlError RowStream::readThrough(const QSqlDatabase &database, const QString &select)
{
    if (!m_interrupt->started(QSqlQuery(database), Ticket))
        return {};
    Rows rows(database, select);
    handOver([&rows](QVariantList &row) { return rows.next(row); });
    return rows.error();
}

// SQLite and MySQL are read through their own libraries, which neither
// keep a copy of each row nor (MySQL) the whole result in memory.
QSqlError RowStream::readOn(const QSqlDatabase &database, const QString &select)
{
    m_interrupt->watch(database);
    QSqlError error;
    if (database.driverName() == "QSQLITE"_L1) {
        error = readThrough<SqliteRows>(database, select);
    } else if (database.driverName() == "QMYSQL"_L1) {
        error = readThrough<MariaDbRows>(database, select);
    } else {
        QSqlQuery query(database);
        query.setForwardOnly(true);
        // ODBC's statement handle, which its cancel needs, comes with prepare().
        if (query.prepare(select) && m_interrupt->started(query, Ticket) && query.exec()) {
            const int columns = query.record().count();
            handOver([&query, columns](QVariantList &row) {
                if (!query.next())
                    return false;
                row.reserve(columns);
                for (int c = 0; c < columns; ++c)
                    row.append(query.value(c));
                return true;
            });
        }
        error = query.lastError();
    }
    m_interrupt->finished();
    return error;
}

void RowStream::handOver(const std::function<bool(QVariantList &)> &fetch)
{
    QList<QVariantList> batch;
    qint64 at = m_firstRow; // the table's row that fetch gives next
    QVariantList cells;
    bool more = true;
    while (more) {
        QVariantList row;
        more = fetch(row);
        if (more && m_selected) {
            more = at <= m_selected->lastRow();
            if (more && m_selected->take(int(at), row, cells))
                batch.append(std::exchange(cells, {}));
            ++at;
        } else if (more) {
            batch.append(std::move(row));
        }
        if (batch.size() < BatchRows && more)
            continue;
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_stopped || m_batches.size() < BatchesHeld; });
        if (m_stopped)
            return;
        if (!batch.isEmpty())
            m_batches.append(std::exchange(batch, {}));
        m_changed.notify_all();
    }
}

} // namespace quarry::viewer
