// quarry-viewer: the logs of the station for the people who read them. The
// conditions are asked by the component's own dialogs, as a host asks them.

#include "CommandArguments.h"
#include "LogCatalogue.h"
#include "ProgramHelp.h"
#include "QtChinese.h"
#include "StationDatabase.h"
#include "ViewerWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

const QString Usage = u"用法：quarry-viewer [--catalogue 文件]\n"
                      "查看本站点的日志：选中日志后由组件的对话框输入查询条件，在站点 seal.ini "
                      "所指的验印数据库上执行并显示结果。\n\n"
                      "选项：\n"
                      "  --catalogue 文件   日志目录（默认为 seal.ini 旁的 logs.ini，"
                      "格式见示例 data/sample/logs.ini 开头的说明）\n"_s
    + quarry::apps::standardOptionLines()
    + u"\n站点配置：先找程序库旁的 seal.ini，否则找系统配置文件夹中 CONVERT.INI 的 "
      "[SYSTEM] INITCFG 所指的文件；系统配置文件夹由环境变量 QUARRY_SYSTEM_DIR "
      "指定，默认 /etc/quarry。\n"
      "示例站点：bash scripts/run.sh（嵌入式数据库）；bash scripts/run.sh "
      "--mariadb（临时的 MariaDB 服务器，统计图只在这样的站点上有）。\n"
      "验印结果统计只列出区间内至少有一张票据通过的操作员，没有通过票据的操作员"
      "不在结果中。\n"
      "站点有问题时，窗口上方会说明问题和处理办法；管理员可用 quarry-config check "
      "一次查看全部检查结果。\n"
      "出错时的记录写在 seal.ini [ERROR] ERRORFILE 文件夹中的 error.txt。\n"_s;

} // namespace

int main(int argc, char *argv[])
{
    const QStringList arguments = quarry::apps::commandArguments(argc, argv);
    if (const std::optional<int> answered = quarry::apps::answerHelpOrVersion(arguments, Usage))
        return *answered;
    QCommandLineParser parser;
    const QCommandLineOption catalogueOption(u"catalogue"_s, QString(), u"file"_s);
    parser.addOption(catalogueOption);
    if (!parser.parse(arguments) || !parser.positionalArguments().isEmpty()) {
        QString error = u"多余的参数：%1"_s.arg(parser.positionalArguments().join(u' '));
        if (!parser.unknownOptionNames().isEmpty())
            error = u"未知的选项：%1"_s.arg(parser.unknownOptionNames().join(u", "_s));
        else if (!parser.errorText().isEmpty())
            error = u"--catalogue 后面应是日志目录文件"_s;
        QTextStream(stderr) << u"quarry-viewer: "_s << error << u"\n\n"_s << Usage;
        return 2;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(u"quarry-viewer"_s);
    quarry::apps::useChinese(app);
    QString cataloguePath = parser.value(catalogueOption);
    if (cataloguePath.isEmpty()) {
        const quarry::viewer::StationDatabase station;
        cataloguePath = QFileInfo(station.iniPath()).dir().filePath(u"logs.ini"_s);
    }
    quarry::viewer::ViewerWindow window(quarry::viewer::LogCatalogue::read(cataloguePath));
    window.show();
    return QApplication::exec();
}
