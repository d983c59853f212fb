#pragma once

#include "DialogAnswer.h"
#include "ServiceContract.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusVirtualObject>
#include <QHash>
#include <QProcess>
#include <QTimer>

#include <chrono>

namespace quarry::service {

// The CQuarry operations on the session bus, as org.quarry.Quarry1.xml
// describes them. Each caller has one request at a time, and the condition
// of its last dialog (SQLStr) for as long as it is connected.
//
// Each request's dialog is shown by a process of its own, the dialog
// program started with DialogOption (runRequestDialog). Modal dialogs of
// one process nest their event loops: a dialog opened over another holds
// back the other's end until it closes itself. In processes of their own,
// callers' dialogs are open side by side and end in any order, and a
// dialog process that dies fails its own request only.
class QuarryService : public QDBusVirtualObject
{
    Q_OBJECT

public:
    static constexpr auto BusName = "org.quarry.Quarry1";
    // The dialog program's first argument, which makes it a dialog process.
    static constexpr auto DialogOption = "--dialog";

    // How many dialog processes run at once at most: each holds a Qt
    // application (some 5 MB), and a caller that loops must not exhaust the
    // machine.
    static constexpr qsizetype MaxDialogs = 16;

    QuarryService(const QDBusConnection &connection, std::chrono::milliseconds idleTime,
                  const QString &dialogProgram, qsizetype maxDialogs = MaxDialogs,
                  QObject *parent = nullptr);
    ~QuarryService() override;

    // Exports the object and takes the bus name; false when the name is taken.
    bool start();

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

Q_SIGNALS:
    // No dialog process has run for the idle time.
    void idle();

private:
    struct Request
    {
        QString path;
        QString caller;
        QProcess *process = nullptr; // showing the dialog, until it ends
        bool closed = false;         // no Response is sent then
    };

    void ask(const QDBusMessage &message, const ServiceContract::Method &method);
    void startDialog(const QString &caller, const QString &path, const QByteArray &request);
    QList<Request>::iterator openRequest(const QString &caller);
    void close(const QDBusMessage &message);
    void closeRequest(Request &request);
    void callerGone(const QString &caller);
    void processEnded(QProcess *process);
    DialogAnswer answerOf(QProcess &process) const;
    DialogAnswer failure(const QString &description) const;
    void respond(const Request &request, const DialogAnswer &answer);

    QDBusConnection m_connection;
    QString m_dialogProgram;
    qsizetype m_maxDialogs;
    ServiceContract m_contract;
    QDBusServiceWatcher m_callers;
    QTimer m_idle;
    QHash<QString, QString> m_conditions; // caller, its SQLStr
    QList<Request> m_requests;            // whose process runs
    quint64 m_requestCount = 0;
};

} // namespace quarry::service
