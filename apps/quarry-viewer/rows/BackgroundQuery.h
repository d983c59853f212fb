#pragma once

#include "QueryInterrupt.h"

#include <QList>
#include <QObject>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlRecord>
#include <QThread>
#include <QVariant>

#include <functional>
#include <memory>

namespace quarry {
class DbConnection;
}

namespace quarry::viewer {

// What a statement run in the background gave.
struct QueryResult
{
    QSqlRecord columns;
    QList<QVariantList> rows;
    QSqlError error;        // a connection that could not be opened too
    bool cancelled = false; // stopped before it ended: the rest means nothing
};

// Runs statements one at a time on a thread and a connection of its own,
// so that the window stays usable while the database works, and stops them
// on the database when asked.
class BackgroundQuery : public QObject
{
    Q_OBJECT

public:
    // Opens a connection to the station's database on the calling thread;
    // "" when it opened, else why not.
    using Opener = std::function<QString(DbConnection &)>;
    // Work on the thread with its connection, or told why the connection
    // could not be opened (and given an invalid one).
    using Loan = std::function<void(const QSqlDatabase &database, const QString &fault)>;
    // Hands a loan to the thread of a BackgroundQuery.
    using Lender = std::function<void(Loan loan)>;

    explicit BackgroundQuery(QObject *parent = nullptr);
    // Stops the running statement and waits for the thread.
    ~BackgroundQuery() override;

    // The statements from now on run on a connection that opener opens (on
    // the thread); the one running is stopped and tells nothing.
    void setOpener(Opener opener);
    // Runs the statements before (their rows unread; the first fault ends
    // them), then select, and keeps at most maxRows of its rows (all for
    // -1); finished() tells. A statement still running is stopped and tells
    // nothing.
    void run(const QString &select, int maxRows, const QStringList &before = {});
    // Runs loan on the thread after the statement running, with the
    // connection that keeps what the statements before made (such as a
    // temporary table); the statements asked for meanwhile wait for it.
    void lend(Loan loan) const;
    // Stops the running statement, which tells nothing.
    void stop();
    // Stops the running statement, or one that has ended but not yet told,
    // which then tells finished() with cancelled set; stopFailed() tells
    // when it could not be told to stop.
    void cancel();
    bool isRunning() const { return m_running != 0; }

Q_SIGNALS:
    void finished(const quarry::viewer::QueryResult &result);
    // Why a statement that cancel() stops runs on (MySQL's kill failed).
    void stopFailed(const QString &why);

private:
    struct Connection;

    QString open(const std::shared_ptr<QueryInterrupt> &interrupt, const Opener &opener) const;
    QueryResult read(const std::shared_ptr<QueryInterrupt> &interrupt, const Opener &opener,
                     const QStringList &statements, int maxRows, quint64 ticket);
    // On the GUI thread: finished() for the statement of ticket.
    void tell(quint64 ticket, QueryResult result);
    void interrupt(quint64 ticket, bool tellFailure);
    QString kill(const std::shared_ptr<QueryInterrupt> &interrupt, const Opener &opener,
                 quint64 ticket);
    void stopRunning();

    QThread m_thread;
    QObject *m_onThread;                      // the context of the calls that run there
    std::unique_ptr<Connection> m_connection; // used on the thread alone
    // MySQL's second connection, which kills a statement, on a thread of its
    // own: opening it waits for the network.
    QThread m_killThread;
    QObject *m_onKillThread;
    std::unique_ptr<DbConnection> m_killer; // used on the kill thread alone
    Opener m_opener;
    std::shared_ptr<QueryInterrupt> m_interrupt;
    quint64 m_ticket = 0;    // of the last statement asked for
    quint64 m_running = 0;   // its ticket until it has told
    quint64 m_cancelled = 0; // the last ticket cancel() stopped
};

} // namespace quarry::viewer
