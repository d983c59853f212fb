#include "QuarryService.h"

#include <quarry/CQuarry.h>
#include <quarry/QuarryError.h>

#include <QApplication>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDialog>
#include <QRegularExpression>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace quarry::service {

namespace {

const QString ServicePath = u"/org/quarry/Quarry1"_s;
const QString ServiceInterface = u"org.quarry.Quarry1"_s;
const QString RequestPrefix = u"/org/quarry/Quarry1/request/"_s;
const QString RequestInterface = u"org.quarry.Quarry1.Request"_s;
const QString InvalidArgs = u"org.freedesktop.DBus.Error.InvalidArgs"_s;

// "x11:XID" in hex, or 0 for no window: "" and the forms of other window
// systems, which cannot be a Qt window's transient parent here.
std::optional<WId> parentWindow(const QString &text)
{
    if (!text.startsWith(u"x11:"_s))
        return WId(0);
    bool ok = false;
    const WId window = text.mid(4).toULongLong(&ok, 16);
    if (!ok || window == 0)
        return std::nullopt;
    return window;
}

} // namespace

QuarryService::QuarryService(const QDBusConnection &connection, std::chrono::milliseconds idleTime,
                             QObject *parent)
    : QDBusVirtualObject(parent)
    , m_connection(connection)
{
    m_callers.setConnection(connection);
    m_callers.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_callers, &QDBusServiceWatcher::serviceUnregistered, this,
            &QuarryService::callerGone);
    m_idle.setSingleShot(true);
    m_idle.setInterval(idleTime);
    connect(&m_idle, &QTimer::timeout, this, &QuarryService::idle);
    m_idle.start();
}

QuarryService::~QuarryService() = default;

bool QuarryService::start()
{
    return m_connection.registerVirtualObject(ServicePath, this, QDBusConnection::SubPath)
        && m_connection.registerService(QLatin1StringView(BusName));
}

QString QuarryService::introspect(const QString &path) const
{
    if (path == ServicePath)
        return m_contract.interfaceXml(ServiceInterface);
    if (path.startsWith(RequestPrefix))
        return m_contract.interfaceXml(RequestInterface);
    return {};
}

bool QuarryService::handleMessage(const QDBusMessage &message, const QDBusConnection &)
{
    const QString interface = message.path() == ServicePath ? ServiceInterface : RequestInterface;
    // Introspection and the other standard interfaces are Qt's.
    if (!message.interface().isEmpty() && message.interface() != interface)
        return false;
    const ServiceContract::Method *method = m_contract.method(interface, message.member());
    if (!method) {
        m_connection.send(
            message.createErrorReply(u"org.freedesktop.DBus.Error.UnknownMethod"_s,
                                     u"%1 has no method %2"_s.arg(interface, message.member())));
    } else if (message.signature() != method->inSignature()) {
        m_connection.send(
            message.createErrorReply(InvalidArgs,
                                     u"%1 takes %2, not (%3)"_s.arg(message.member(),
                                                                    method->inDescription(),
                                                                    message.signature())));
    } else if (interface == RequestInterface) {
        close(message);
    } else if (message.member() == u"SQLStr"_s) {
        const std::shared_ptr<CQuarry> quarry = m_quarries.value(message.service());
        m_connection.send(message.createReply(quarry ? quarry->SQLStr() : QString()));
    } else {
        ask(message, *method);
    }
    return true;
}

void QuarryService::ask(const QDBusMessage &message, const ServiceContract::Method &method)
{
    const auto refuse = [&](const QString &error, const QString &text) {
        m_connection.send(message.createErrorReply(error, message.member() + u": "_s + text));
    };
    const QString caller = message.service();
    if (m_openRequests.contains(caller))
        return refuse(u"org.quarry.Quarry1.Error.Busy"_s,
                      u"this caller's request %1 is still open; wait for its Response or "
                      "Close it"_s.arg(m_openRequests.value(caller)));

    QVariantList values = message.arguments();
    const QString parentText = values.takeFirst().toString();
    const QVariantMap options = qdbus_cast<QVariantMap>(values.takeLast());
    const std::optional<WId> parent = parentWindow(parentText);
    if (!parent)
        return refuse(InvalidArgs, u"parent_window \"%1\" is not x11:XID"_s.arg(parentText));
    static const QRegularExpression tokenForm(u"^[A-Za-z0-9_]+$"_s);
    const QString token
        = options.value(u"handle_token"_s, u"quarry%1"_s.arg(++m_requestCount)).toString();
    if (!tokenForm.match(token).hasMatch())
        return refuse(InvalidArgs, u"handle_token \"%1\" is not [A-Za-z0-9_]+"_s.arg(token));
    QString error;
    auto call = ComponentCall::make(message.member(), method.in.mid(1, method.in.size() - 2),
                                    values, &error);
    if (!call)
        return refuse(InvalidArgs, error);

    auto request = std::make_shared<Request>();
    request->path = RequestPrefix + caller.mid(1).replace(u'.', u'_') + u'/' + token;
    request->caller = caller;
    request->parentWindow = *parent;
    request->call = std::move(call);
    request->quarry = quarryOf(caller);
    m_openRequests.insert(caller, request->path);
    m_waiting.append(request);
    m_idle.stop();
    m_connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request->path))));
    QMetaObject::invokeMethod(this, &QuarryService::showNext, Qt::QueuedConnection);
}

std::shared_ptr<CQuarry> QuarryService::quarryOf(const QString &caller)
{
    std::shared_ptr<CQuarry> &quarry = m_quarries[caller];
    if (!quarry) {
        quarry = std::make_shared<CQuarry>();
        m_callers.addWatchedService(caller);
    }
    return quarry;
}

void QuarryService::showNext()
{
    // Called again from the dialog's own event loop, while it is open.
    if (m_shown || m_waiting.isEmpty())
        return;
    m_shown = m_waiting.takeFirst();
    const std::unique_ptr<QWindow> host(
        m_shown->parentWindow ? QWindow::fromWinId(m_shown->parentWindow) : nullptr);
    m_dialogs.setHostWindow(host.get());
    respond(*m_shown);
    m_dialogs.setHostWindow(nullptr);
    m_shown.reset();
    if (m_waiting.isEmpty())
        m_idle.start();
    else
        QMetaObject::invokeMethod(this, &QuarryService::showNext, Qt::QueuedConnection);
}

void QuarryService::respond(Request &request)
{
    const int shownBefore = m_dialogs.shownCount();
    uint response = 1;
    QVariantMap results;
    try {
        request.call->invoke(*request.quarry);
        // A log type that asks for nothing leaves SQLStr as it was.
        const QString condition = request.quarry->SQLStr();
        if (m_dialogs.shownCount() != shownBefore && !condition.isEmpty()) {
            response = 0;
            results.insert(u"condition"_s, condition);
        }
    } catch (const QuarryError &error) {
        response = 2;
        results.insert(u"error_number"_s, error.number());
        results.insert(u"error_source"_s, error.source());
        results.insert(u"error_description"_s, error.description());
    }
    if (request.closed)
        return;
    m_openRequests.remove(request.caller);
    QDBusMessage signal = QDBusMessage::createTargetedSignal(request.caller, request.path,
                                                             RequestInterface, u"Response"_s);
    signal << response << results;
    m_connection.send(signal);
}

std::shared_ptr<QuarryService::Request> QuarryService::openRequest(const QString &path) const
{
    if (m_shown && m_shown->path == path && !m_shown->closed)
        return m_shown;
    for (const std::shared_ptr<Request> &waiting : m_waiting)
        if (waiting->path == path)
            return waiting;
    return nullptr;
}

void QuarryService::close(const QDBusMessage &message)
{
    const std::shared_ptr<Request> request = openRequest(message.path());
    if (!request || request->caller != message.service()) {
        m_connection.send(message.createErrorReply(
            u"org.freedesktop.DBus.Error.UnknownObject"_s,
            u"Close: %1 is no open request of this caller"_s.arg(message.path())));
        return;
    }
    closeRequest(request);
    m_connection.send(message.createReply());
}

void QuarryService::closeRequest(const std::shared_ptr<Request> &request)
{
    request->closed = true;
    m_openRequests.remove(request->caller);
    m_waiting.removeOne(request);
    if (request == m_shown)
        closeDialog();
    else if (!m_shown && m_waiting.isEmpty())
        m_idle.start();
}

void QuarryService::closeDialog()
{
    // From the top down: a message box over the dialog holds the dialog's
    // event loop until it is closed itself.
    const QPointer<QDialog> dialog = m_dialogs.lastShown();
    while (dialog && dialog->isVisible()) {
        auto *top = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!top)
            return;
        top->reject();
        if (top->isVisible())
            return;
    }
}

void QuarryService::callerGone(const QString &caller)
{
    m_callers.removeWatchedService(caller);
    m_quarries.remove(caller);
    if (const std::shared_ptr<Request> request = openRequest(m_openRequests.value(caller)))
        closeRequest(request);
}

} // namespace quarry::service
