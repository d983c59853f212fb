#include "QuarryService.h"

#include "ComponentCall.h"

#include "support/ErrorLog.h"

#include <quarry/QuarryError.h>

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QJsonDocument>
#include <QRegularExpression>

#include <csignal>

#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace quarry::service {

namespace {

const QString ServicePath = u"/org/quarry/Quarry1"_s;
const QString ServiceInterface = u"org.quarry.Quarry1"_s;
const QString RequestPrefix = u"/org/quarry/Quarry1/request/"_s;
const QString RequestInterface = u"org.quarry.Quarry1.Request"_s;
const QString InvalidArgs = u"org.freedesktop.DBus.Error.InvalidArgs"_s;

// "x11:" and the XID in hex, as the portals write it, or "" for no window.
// Anything else is refused: a host that passes a window wants the dialog
// over it, and one that is ignored leaves the dialog behind the host.
std::optional<quint64> parentWindow(const QString &text)
{
    if (text.isEmpty())
        return 0;
    static const QRegularExpression x11Form(u"^x11:[0-9a-fA-F]{1,8}$"_s);
    if (!x11Form.match(text).hasMatch())
        return std::nullopt;
    const quint64 window = text.mid(4).toULongLong(nullptr, 16);
    if (window == 0)
        return std::nullopt;
    return window;
}

// A caller's value in an error message, cut short: the message goes back
// over the bus and into logs.
QString quoted(const QString &value)
{
    constexpr qsizetype Shown = 40;
    if (value.size() <= Shown)
        return u'"' + value + u'"';
    return u"\"%1…\" (%2 characters)"_s.arg(value.left(Shown)).arg(value.size());
}

} // namespace

QuarryService::QuarryService(const QDBusConnection &connection, std::chrono::milliseconds idleTime,
                             const QString &dialogProgram, qsizetype maxDialogs, QObject *parent)
    : QDBusVirtualObject(parent)
    , m_connection(connection)
    , m_dialogProgram(dialogProgram)
    , m_maxDialogs(maxDialogs)
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

QuarryService::~QuarryService()
{
    for (const Request &request : std::as_const(m_requests)) {
        request.process->disconnect(this);
        request.process->kill();
        request.process->waitForFinished();
    }
}

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
        m_connection.send(message.createReply(m_conditions.value(message.service())));
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
    if (const auto open = openRequest(caller); open != m_requests.end())
        return refuse(u"org.quarry.Quarry1.Error.Busy"_s,
                      u"this caller's request %1 is still open; wait for its Response or "
                      "Close it"_s.arg(open->path));
    if (m_requests.size() >= m_maxDialogs)
        return refuse(u"org.quarry.Quarry1.Error.TooManyDialogs"_s,
                      u"%1 dialogs are open, the most this service shows at once; call again "
                      "when one has closed"_s.arg(m_requests.size()));

    QVariantList values = message.arguments();
    const QString parentText = values.takeFirst().toString();
    const QVariantMap options = qdbus_cast<QVariantMap>(values.takeLast());
    const std::optional<quint64> parent = parentWindow(parentText);
    if (!parent)
        return refuse(InvalidArgs,
                      u"parent_window %1 is neither \"\" nor x11: and a window "
                      "id in hex"_s.arg(quoted(parentText)));
    const QVariant tokenValue
        = options.value(u"handle_token"_s, u"quarry%1"_s.arg(++m_requestCount));
    if (tokenValue.metaType() != QMetaType::fromType<QString>())
        return refuse(InvalidArgs,
                      u"handle_token is a string (s), not %1"_s.arg(
                          QLatin1StringView(tokenValue.metaType().name())));
    static const QRegularExpression tokenForm(u"^[A-Za-z0-9_]+$"_s);
    const QString token = tokenValue.toString();
    if (!tokenForm.match(token).hasMatch())
        return refuse(InvalidArgs, u"handle_token %1 is not [A-Za-z0-9_]+"_s.arg(quoted(token)));
    QString error;
    const auto call = ComponentCall::make(message.member(), method.in.mid(1, method.in.size() - 2),
                                          values, &error);
    if (!call)
        return refuse(InvalidArgs, error);

    if (!m_conditions.contains(caller)) {
        m_conditions.insert(caller, QString());
        m_callers.addWatchedService(caller);
    }
    QJsonObject request = call->toJson();
    request.insert("parent_window"_L1, qint64(*parent));
    const QString path = RequestPrefix + caller.mid(1).replace(u'.', u'_') + u'/' + token;
    m_connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
    startDialog(caller, path, QJsonDocument(request).toJson(QJsonDocument::Compact));
}

void QuarryService::startDialog(const QString &caller, const QString &path,
                                const QByteArray &request)
{
    auto *process = new QProcess(this);
    // What it says on standard error goes where the service's own goes.
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(process, &QProcess::started, process, [process, request] {
        process->write(request);
        process->closeWriteChannel();
    });
    connect(process, &QProcess::finished, this, [this, process] { processEnded(process); });
    connect(process, &QProcess::errorOccurred, this, [this, process](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            processEnded(process);
    });
    // The dialog ends with the service, however the service ends: an
    // orphaned dialog would answer nobody.
    process->setChildProcessModifier([service = getpid()] {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != service)
            ::_exit(1);
    });
    m_requests.append({path, caller, process});
    m_idle.stop();
    process->start(m_dialogProgram, {QLatin1StringView(DialogOption)});
}

QList<QuarryService::Request>::iterator QuarryService::openRequest(const QString &caller)
{
    return std::find_if(m_requests.begin(), m_requests.end(), [&](const Request &request) {
        return request.caller == caller && !request.closed;
    });
}

void QuarryService::close(const QDBusMessage &message)
{
    const auto request = openRequest(message.service());
    if (request == m_requests.end() || request->path != message.path()) {
        m_connection.send(message.createErrorReply(
            u"org.freedesktop.DBus.Error.UnknownObject"_s,
            u"Close: %1 is no open request of this caller"_s.arg(message.path())));
        return;
    }
    closeRequest(*request);
    m_connection.send(message.createReply());
}

void QuarryService::closeRequest(Request &request)
{
    request.closed = true;
    request.process->kill();
}

void QuarryService::callerGone(const QString &caller)
{
    m_callers.removeWatchedService(caller);
    m_conditions.remove(caller);
    if (const auto request = openRequest(caller); request != m_requests.end())
        closeRequest(*request);
}

void QuarryService::processEnded(QProcess *process)
{
    const auto ended
        = std::find_if(m_requests.cbegin(), m_requests.cend(),
                       [&](const Request &request) { return request.process == process; });
    if (ended == m_requests.cend())
        return;
    const Request request = *ended;
    m_requests.erase(ended);
    if (!request.closed)
        respond(request, answerOf(*process));
    process->deleteLater();
    if (m_requests.isEmpty())
        m_idle.start();
}

DialogAnswer QuarryService::answerOf(QProcess &process) const
{
    if (process.error() == QProcess::FailedToStart)
        return failure(u"无法启动对话框程序 %1"_s.arg(m_dialogProgram));
    if (process.exitStatus() == QProcess::CrashExit)
        return failure(u"对话框程序 %1 意外终止，没有给出结果"_s.arg(m_dialogProgram));
    if (process.exitCode() != 0)
        return failure(u"对话框程序 %1 以退出码 %2 结束，没有给出结果"_s.arg(m_dialogProgram)
                           .arg(process.exitCode()));
    const QByteArray output = process.readAllStandardOutput();
    if (const std::optional<DialogAnswer> answer = DialogAnswer::fromJson(output))
        return *answer;
    return failure(
        u"对话框程序 %1 的结果无法识别：“%2”"_s.arg(m_dialogProgram,
                                                    QString::fromUtf8(output.left(200)).trimmed()));
}

// Said in the Response and written to the error log.
DialogAnswer QuarryService::failure(const QString &description) const
{
    QString said = description;
    try {
        writeErrorLog(u"quarry-service"_s, QuarryError::DataError, description);
    } catch (const QuarryError &error) {
        said += u"（未能写入错误日志：%1）"_s.arg(error.description());
    }
    return DialogAnswer::failed(QuarryError::DataError, u"quarry-service"_s, said);
}

void QuarryService::respond(const Request &request, const DialogAnswer &answer)
{
    // As CQuarry::SQLStr: what a dialog handed back, accepted or cancelled
    // (mostly empty then); a call that shows no dialog, or fails, leaves it
    // as it was.
    if (answer.outcome == DialogAnswer::Outcome::Condition
        || answer.outcome == DialogAnswer::Outcome::Cancelled)
        m_conditions[request.caller] = answer.condition;
    QDBusMessage signal = QDBusMessage::createTargetedSignal(request.caller, request.path,
                                                             RequestInterface, u"Response"_s);
    signal << answer.response() << answer.results();
    m_connection.send(signal);
}

} // namespace quarry::service
