// quarry-service: the CQuarry operations on the session bus, for hosts in
// any language (org.quarry.Quarry1.xml). The bus starts it on the first
// call; it ends after a minute without requests.

#include "QtChinese.h"
#include "QuarryService.h"

#include <QApplication>
#include <QDBusError>
#include <QTextStream>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    quarry::apps::useChinese(app);
    // The host may end; the service goes on until it is idle.
    app.setQuitOnLastWindowClosed(false);

    QDBusConnection bus = QDBusConnection::sessionBus();
    quarry::service::QuarryService service(bus, 1min);
    if (!bus.isConnected() || !service.start()) {
        QTextStream(stderr) << u"quarry-service: cannot take the name %1 on the session bus: %2\n"_s
                                   .arg(QLatin1StringView(quarry::service::QuarryService::BusName),
                                        bus.lastError().message());
        return 1;
    }
    // The name is given up before the program ends, so that a call that
    // comes meanwhile starts a new one instead of going unanswered.
    QObject::connect(&service, &quarry::service::QuarryService::idle, &app, [&bus] {
        bus.unregisterService(QLatin1StringView(quarry::service::QuarryService::BusName));
        QCoreApplication::quit();
    });
    // Nor does it outlive its bus. QtDBus connects bus signals by the slot's
    // name only.
    bus.connect(QString(), u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                u"Disconnected"_s, &app, SLOT(quit()));
    return app.exec();
}
