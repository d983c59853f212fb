#pragma once

#include "ComponentCall.h"
#include "OwnerlessDialogs.h"
#include "ServiceContract.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusVirtualObject>
#include <QHash>
#include <QTimer>

#include <chrono>
#include <memory>

namespace quarry {

class CQuarry;

namespace service {

// The CQuarry operations on the session bus, as org.quarry.Quarry1.xml
// describes them. Each caller has a CQuarry of its own, for as long as it
// is connected, and one request at a time.
//
// The dialogs are modal and run in nested event loops, which go on serving
// the bus. A second dialog started in such a loop would hold back the
// first one's Response until it closed, and being modal itself it would
// block the first dialog's window. So the dialogs open one after another:
// other callers' calls are answered at once with their request, whose
// dialog opens when the one before it has closed.
class QuarryService : public QDBusVirtualObject
{
    Q_OBJECT

public:
    static constexpr auto BusName = "org.quarry.Quarry1";

    QuarryService(const QDBusConnection &connection, std::chrono::milliseconds idleTime,
                  QObject *parent = nullptr);
    ~QuarryService() override;

    // Exports the object and takes the bus name; false when the name is taken.
    bool start();

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

Q_SIGNALS:
    // No request has been open for the idle time.
    void idle();

private:
    struct Request
    {
        QString path;
        QString caller;
        WId parentWindow = 0;
        std::optional<ComponentCall> call;
        std::shared_ptr<CQuarry> quarry;
        bool closed = false;
    };

    void ask(const QDBusMessage &message, const ServiceContract::Method &method);
    std::shared_ptr<Request> openRequest(const QString &path) const;
    void close(const QDBusMessage &message);
    void closeRequest(const std::shared_ptr<Request> &request);
    void callerGone(const QString &caller);
    void showNext();
    void respond(Request &request);
    void closeDialog();
    std::shared_ptr<CQuarry> quarryOf(const QString &caller);

    QDBusConnection m_connection;
    ServiceContract m_contract;
    QDBusServiceWatcher m_callers;
    apps::OwnerlessDialogs m_dialogs;
    QTimer m_idle;
    QHash<QString, std::shared_ptr<CQuarry>> m_quarries;
    QHash<QString, QString> m_openRequests; // caller, request path
    QList<std::shared_ptr<Request>> m_waiting;
    std::shared_ptr<Request> m_shown;
    quint64 m_requestCount = 0;
};

} // namespace service
} // namespace quarry
