#include "BackgroundQuery.h"

#include "platform/DbConnection.h"

#include <QSqlQuery>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

// Runs statement and keeps at most maxRows of its rows (all for -1).
QueryResult execute(const QSqlDatabase &database, const QString &statement,
                    QueryInterrupt &interrupt, quint64 ticket, int maxRows)
{
    QueryResult result;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    // ODBC's statement handle, which its cancel needs, comes with prepare().
    const bool prepared = database.driverName() == "QODBC"_L1;
    if (prepared && !query.prepare(statement)) {
        result.error = query.lastError();
        return result;
    }
    if (!interrupt.started(query, ticket)) {
        result.cancelled = true;
        return result;
    }
    if (prepared ? query.exec() : query.exec(statement)) {
        result.columns = query.record();
        while ((maxRows < 0 || result.rows.size() < maxRows) && query.next()) {
            QVariantList row;
            row.reserve(result.columns.count());
            for (int c = 0; c < result.columns.count(); ++c)
                row.append(query.value(c));
            result.rows.append(row);
        }
    }
    result.error = query.lastError();
    interrupt.finished();
    return result;
}

} // namespace

// The connection and the interrupt that watches it.
struct BackgroundQuery::Connection
{
    std::unique_ptr<DbConnection> database;
    std::shared_ptr<QueryInterrupt> interrupt;
};

BackgroundQuery::BackgroundQuery(QObject *parent)
    : QObject(parent)
    , m_onThread(new QObject)
    , m_connection(std::make_unique<Connection>())
    , m_onKillThread(new QObject)
{
    m_thread.setObjectName(u"quarry-query"_s);
    m_onThread->moveToThread(&m_thread);
    m_thread.start();
    m_killThread.setObjectName(u"quarry-kill"_s);
    m_onKillThread->moveToThread(&m_killThread);
    m_killThread.start();
}

BackgroundQuery::~BackgroundQuery()
{
    stopRunning();
    // Each connection belongs to its thread and is closed there; the
    // statement running ends once the kill asked for above has reached it.
    QMetaObject::invokeMethod(
        m_onThread, [this] { *m_connection = {}; }, Qt::BlockingQueuedConnection);
    QMetaObject::invokeMethod(
        m_onKillThread, [this] { m_killer.reset(); }, Qt::BlockingQueuedConnection);
    for (QThread *thread : {&m_thread, &m_killThread}) {
        thread->quit();
        thread->wait();
    }
    delete m_onThread;
    delete m_onKillThread;
}

void BackgroundQuery::setOpener(Opener opener)
{
    stop();
    m_opener = std::move(opener);
    m_interrupt = std::make_shared<QueryInterrupt>();
    // The station before's killer closes once its last kill has gone.
    QMetaObject::invokeMethod(m_onKillThread, [this] { m_killer.reset(); });
}

void BackgroundQuery::run(const QString &select, int maxRows, const QStringList &before)
{
    stop();
    const quint64 ticket = m_ticket;
    m_running = ticket;
    QMetaObject::invokeMethod(m_onThread,
                              [this, interrupt = m_interrupt, opener = m_opener,
                               statements = before + QStringList{select}, maxRows, ticket] {
                                  QueryResult result
                                      = read(interrupt, opener, statements, maxRows, ticket);
                                  QMetaObject::invokeMethod(
                                      this,
                                      [this, ticket, result = std::move(result)]() mutable {
                                          tell(ticket, std::move(result));
                                      },
                                      Qt::QueuedConnection);
                              });
}

void BackgroundQuery::tell(quint64 ticket, QueryResult result)
{
    // A statement asked for later has taken this one's place.
    if (ticket != m_ticket)
        return;
    m_running = 0;
    // Whether it ended before the cancel reached it or not, what was
    // cancelled is not shown.
    result.cancelled = result.cancelled || ticket == m_cancelled;
    Q_EMIT finished(result);
}

void BackgroundQuery::lend(Loan loan) const
{
    QMetaObject::invokeMethod(
        m_onThread, [this, interrupt = m_interrupt, opener = m_opener, loan = std::move(loan)] {
            const QString fault = open(interrupt, opener);
            loan(fault.isEmpty() ? m_connection->database->database() : QSqlDatabase(), fault);
        });
}

void BackgroundQuery::stop()
{
    stopRunning();
    ++m_ticket;
}

void BackgroundQuery::cancel()
{
    if (m_running) {
        interrupt(m_running, true);
        m_cancelled = m_running;
    }
}

void BackgroundQuery::stopRunning()
{
    if (m_running)
        interrupt(m_running, false);
    m_running = 0;
}

void BackgroundQuery::interrupt(quint64 ticket, bool tellFailure)
{
    if (!m_interrupt->interrupt(ticket))
        return;
    QMetaObject::invokeMethod(
        m_onKillThread, [this, interrupt = m_interrupt, opener = m_opener, ticket, tellFailure] {
            const QString fault = kill(interrupt, opener, ticket);
            if (!fault.isEmpty() && tellFailure)
                QMetaObject::invokeMethod(
                    this, [this, fault] { Q_EMIT stopFailed(fault); }, Qt::QueuedConnection);
        });
}

// On the kill thread.
QString BackgroundQuery::kill(const std::shared_ptr<QueryInterrupt> &interrupt,
                              const Opener &opener, quint64 ticket)
{
    if (!m_killer) {
        auto killer = std::make_unique<DbConnection>();
        if (QString fault = opener(*killer); !fault.isEmpty())
            return fault;
        m_killer = std::move(killer);
    }
    const QString fault = interrupt->kill(ticket, m_killer->database());
    // A killer that lost its server is opened anew next time.
    if (!fault.isEmpty())
        m_killer.reset();
    return fault;
}

// On the thread: the connection for interrupt's statements, opened if need
// be; "" when it is open, else why not.
QString BackgroundQuery::open(const std::shared_ptr<QueryInterrupt> &interrupt,
                              const Opener &opener) const
{
    if (m_connection->interrupt == interrupt)
        return {};
    *m_connection = {std::make_unique<DbConnection>(), interrupt};
    if (QString fault = opener(*m_connection->database); !fault.isEmpty()) {
        *m_connection = {};
        return fault;
    }
    interrupt->watch(m_connection->database->database());
    return {};
}

// On the thread.
QueryResult BackgroundQuery::read(const std::shared_ptr<QueryInterrupt> &interrupt,
                                  const Opener &opener, const QStringList &statements, int maxRows,
                                  quint64 ticket)
{
    QueryResult result;
    if (const QString fault = open(interrupt, opener); !fault.isEmpty()) {
        result.error = QSqlError(fault, QString(), QSqlError::ConnectionError);
        return result;
    }
    const QSqlDatabase database = m_connection->database->database();
    for (qsizetype i = 0; i < statements.size(); ++i) {
        result = execute(database, statements[i], *interrupt, ticket,
                         i + 1 == statements.size() ? maxRows : 0);
        if (result.error.isValid() || result.cancelled)
            break;
    }
    return result;
}

} // namespace quarry::viewer
