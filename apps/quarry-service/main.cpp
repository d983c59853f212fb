// quarry-service: the CQuarry operations on the session bus, for hosts in
// any language (org.quarry.Quarry1.xml). The bus starts it on the first
// call; it ends after a minute without requests. Each request's dialog is
// shown by a process of its own, this program started with --dialog.

#include "CommandArguments.h"
#include "QtChinese.h"
#include "QuarryService.h"
#include "RequestDialog.h"

#include <QApplication>
#include <QDBusError>
#include <QTextStream>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using quarry::service::QuarryService;

int main(int argc, char *argv[])
{
    if (quarry::apps::commandArguments(argc, argv).value(1)
        == QLatin1StringView(QuarryService::DialogOption)) {
        QApplication app(argc, argv);
        quarry::apps::useChinese(app);
        return quarry::service::runRequestDialog();
    }
    // The service itself shows nothing.
    QCoreApplication app(argc, argv);

    QDBusConnection bus = QDBusConnection::sessionBus();
    QuarryService service(bus, 1min, QCoreApplication::applicationFilePath());
    if (!bus.isConnected() || !service.start()) {
        QTextStream(stderr) << u"quarry-service: cannot take the name %1 on the session bus: %2\n"_s
                                   .arg(QLatin1StringView(QuarryService::BusName),
                                        bus.lastError().message());
        return 1;
    }
    // The name is given up before the program ends, so that a call that
    // comes meanwhile starts a new one instead of going unanswered.
    QObject::connect(&service, &QuarryService::idle, &app, [&bus] {
        bus.unregisterService(QLatin1StringView(QuarryService::BusName));
        QCoreApplication::quit();
    });
    // Nor does it outlive its bus. QtDBus connects bus signals by the slot's
    // name only.
    bus.connect(QString(), u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                u"Disconnected"_s, &app, SLOT(quit()));
    return app.exec();
}
