#include "RowStream.h"

#include "MariaDbRows.h"
#include "QueryInterrupt.h"
#include "SqliteRows.h"

#include "platform/DbConnection.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QThread>

#include <chrono>
#include <condition_variable>
#include <mutex>

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

// What the stream and its reading share, and the reading, on the thread
// that owns the connection.
struct RowStream::Channel
{
    Channel(const std::optional<SelectedCells> &selected, qint64 firstRow)
        : selected(selected)
        , firstRow(firstRow)
    {
    }

    // Reads select on database (invalid when it could not be opened, for
    // the fault) to its end.
    void read(const QSqlDatabase &database, const QString &fault, const QString &select);
    QSqlError readOn(const QSqlDatabase &database, const QString &select);
    template<typename Rows>
    QSqlError readThrough(const QSqlDatabase &database, const QString &select);
    // Hands the rows that fetch gives over in batches (of the selected
    // cells alone, where the source has a selection), until it gives no
    // more, the selection's last row is passed or the stream is stopped.
    void handOver(const std::function<bool(QVariantList &)> &fetch);

    QueryInterrupt interrupt;
    const std::optional<SelectedCells> selected;
    const qint64 firstRow;
    std::mutex mutex;
    std::condition_variable changed;
    QList<QList<QVariantList>> batches;
    // Batches the stream is done with, freed by the reading that made them:
    // freed on the stream's thread, each row waited for the lock of the
    // reading's heap (glibc gives each thread its own), which the reading
    // takes for every value it reads: exports ran about a third slower.
    QList<QList<QVariantList>> spent;
    QSqlError error;
    bool ended = false;
    bool stopped = false;
};

RowStream::RowStream(const RowSource &source)
    : m_station(source.station)
    , m_opener(source.opener)
    , m_channel(std::make_shared<Channel>(source.selected, source.firstRow))
{
    BackgroundQuery::Loan read
        = [channel = m_channel, select = source.select](const QSqlDatabase &database,
                                                        const QString &fault) {
              channel->read(database, fault, select);
          };
    if (source.lender) {
        source.lender(std::move(read));
        return;
    }
    // The connection opens and closes on the thread.
    m_thread.reset(QThread::create([read = std::move(read), opener = source.opener] {
        DbConnection connection;
        const QString fault = opener(connection);
        read(fault.isEmpty() ? connection.database() : QSqlDatabase(), fault);
    }));
    m_thread->setObjectName(u"quarry-export"_s);
    m_thread->start();
}

RowStream::~RowStream()
{
    stop();
    if (m_thread)
        m_thread->wait();
}

QList<QVariantList> &RowStream::next(const std::function<bool()> &goOn)
{
    Channel &channel = *m_channel;
    std::unique_lock lock(channel.mutex);
    if (!m_given.isEmpty())
        channel.spent.append(std::exchange(m_given, {}));
    while (channel.batches.isEmpty() && !channel.ended && !channel.stopped) {
        if (channel.changed.wait_for(lock, GoOnEvery) == std::cv_status::no_timeout)
            continue;
        lock.unlock();
        const bool more = goOn();
        lock.lock();
        if (!more) {
            lock.unlock();
            stop();
            return m_given;
        }
    }
    if (!channel.batches.isEmpty()) {
        m_given = channel.batches.takeFirst();
        channel.changed.notify_all();
    }
    return m_given;
}

QString RowStream::failure() const
{
    std::lock_guard lock(m_channel->mutex);
    const QSqlError &error = m_channel->error;
    if (!error.isValid())
        return {};
    return u"在%1上查询失败：%2"_s.arg(m_station,
                                       error.databaseText().isEmpty() ? error.text()
                                                                      : error.databaseText());
}

void RowStream::stop()
{
    {
        std::lock_guard lock(m_channel->mutex);
        if (m_channel->stopped || m_channel->ended)
            return;
        m_channel->stopped = true;
        m_channel->batches.clear();
    }
    m_channel->changed.notify_all();
    if (!m_channel->interrupt.interrupt(Ticket))
        return;
    // MySQL stops a statement from a second connection, opened here; without
    // it the reading still stops at its next row.
    DbConnection killer;
    if (m_opener(killer).isEmpty())
        m_channel->interrupt.kill(Ticket, killer.database());
}

void RowStream::Channel::read(const QSqlDatabase &database, const QString &fault,
                              const QString &select)
{
    const QSqlError failed = fault.isEmpty()
        ? readOn(database, select)
        : QSqlError(fault, QString(), QSqlError::ConnectionError);
    std::lock_guard lock(mutex);
    if (!stopped)
        error = failed;
    ended = true;
    changed.notify_all();
}

// Through SqliteRows or MariaDbRows, made once the statement may start.
template<typename Rows>
QSqlError RowStream::Channel::readThrough(const QSqlDatabase &database, const QString &select)
{
    if (!interrupt.started(QSqlQuery(database), Ticket))
        return {};
    Rows rows(database, select);
    handOver([&rows](QVariantList &row) { return rows.next(row); });
    return rows.error();
}

// SQLite and MySQL are read through their own libraries, which neither
// keep a copy of each row nor (MySQL) the whole result in memory.
QSqlError RowStream::Channel::readOn(const QSqlDatabase &database, const QString &select)
{
    interrupt.watch(database);
    QSqlError failed;
    if (database.driverName() == "QSQLITE"_L1) {
        failed = readThrough<SqliteRows>(database, select);
    } else if (database.driverName() == "QMYSQL"_L1) {
        failed = readThrough<MariaDbRows>(database, select);
    } else {
        QSqlQuery query(database);
        query.setForwardOnly(true);
        // ODBC's statement handle, which its cancel needs, comes with prepare().
        if (query.prepare(select) && interrupt.started(query, Ticket) && query.exec()) {
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
        failed = query.lastError();
    }
    interrupt.finished();
    return failed;
}

void RowStream::Channel::handOver(const std::function<bool(QVariantList &)> &fetch)
{
    QList<QVariantList> batch;
    QList<QList<QVariantList>> freed;
    qint64 at = firstRow; // the table's row that fetch gives next
    QVariantList cells;
    bool more = true;
    while (more) {
        QVariantList row;
        more = fetch(row);
        if (more && selected) {
            more = at <= selected->lastRow();
            if (more && selected->take(int(at), row, cells))
                batch.append(std::exchange(cells, {}));
            ++at;
        } else if (more) {
            batch.append(std::move(row));
        }
        if (batch.size() < BatchRows && more)
            continue;
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return stopped || batches.size() < BatchesHeld; });
        if (stopped)
            return;
        if (!batch.isEmpty())
            batches.append(std::exchange(batch, {}));
        freed.swap(spent);
        changed.notify_all();
        lock.unlock();
        freed.clear();
    }
}

} // namespace quarry::viewer
