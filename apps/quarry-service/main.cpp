// quarry-service: the CQuarry operations on the session bus, for hosts in
// any language (org.quarry.Quarry1.xml). The bus starts it on the first
// call; it ends after a minute without requests. Each request's dialog is
// shown by a process of its own, this program started with --dialog.

#include "CommandArguments.h"
#include "ProgramHelp.h"
#include "QtChinese.h"
#include "QuarryService.h"
#include "RequestDialog.h"

#include <QApplication>
#include <QDBusError>
#include <QTextStream>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using quarry::service::QuarryService;

namespace {

QString usage()
{
    return u"用法：quarry-service\n"
           "在会话总线上以 org.quarry.Quarry1 提供 CQuarry 的各项操作，供任何语言的宿主程序"
           "调用（接口见 org.quarry.Quarry1.xml，用法见宿主开发指南 host-guide.md）。通常由总线"
           "在第一次调用时启动，没有打开的对话框一分钟后退出。每个请求的对话框由本程序的一个"
           "进程显示（内部选项 --dialog），同时最多 %1 个；服务退出时它们随之关闭。\n\n"
           "选项：\n"_s.arg(QuarryService::MaxDialogs)
        + quarry::apps::standardOptionLines();
}

} // namespace

int main(int argc, char *argv[])
{
    const QStringList arguments = quarry::apps::commandArguments(argc, argv);
    if (arguments.value(1) == QLatin1StringView(QuarryService::DialogOption)) {
        QApplication app(argc, argv);
        quarry::apps::useChinese(app);
        return quarry::service::runRequestDialog();
    }
    if (const std::optional<int> answered = quarry::apps::answerHelpOrVersion(arguments, usage()))
        return *answered;
    if (arguments.size() > 1) {
        QTextStream(stderr) << u"quarry-service: 未知的参数：%1\n\n"_s.arg(arguments.mid(1).join(
            u' ')) << usage();
        return 2;
    }
    // The service itself shows nothing.
    QCoreApplication app(argc, argv);

    QDBusConnection bus = QDBusConnection::sessionBus();
    QuarryService service(bus, 1min, QCoreApplication::applicationFilePath());
    if (!bus.isConnected() || !service.start()) {
        QTextStream(stderr) << u"quarry-service: 无法在会话总线上取得名称 %1：%2\n"_s.arg(
            QLatin1StringView(QuarryService::BusName), bus.lastError().message());
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
