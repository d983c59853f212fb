// quarry-viewer: the logs of the station for the people who read them. The
// conditions are asked by the component's own dialogs, as a host asks them.

#include "CommandArguments.h"
#include "LogCatalogue.h"
#include "ProgramHelp.h"
#include "QtChinese.h"
#include "rows/StationDatabase.h"
#include "window/ViewerWindow.h"
#include "output/FileExports.h"
#include "output/HeadlessExport.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

const QString Usage
    = u"用法：quarry-viewer [--catalogue 文件]\n"
      "      quarry-viewer [--catalogue 文件] --log 日志类型 "
      "(--where 条件 | --where-file 文件) --export 文件.pdf|.xlsx|.csv\n"
      "查看本站点的日志：选中日志后由组件的对话框输入查询条件，在站点 seal.ini "
      "所指的验印数据库上执行并显示结果。\n"
      "带 --export 时不开窗口、不需显示器：以给定的条件（组件交回的 where "
      "子句，如 quarry-ask 所印；统计为整个 SELECT）查询该日志，写成与窗口"
      "导出相同的文件，进度写在标准错误上；写成返回 0，出错返回 1，参数有误返回 2。\n\n"
      "选项：\n"
      "  --catalogue 文件   日志目录（默认为 seal.ini 旁的 logs.ini）；格式见示例 logs.ini 开头的\n"
      "                     说明（/usr/share/doc/quarry-tools/examples/，源代码中 data/sample/）\n"
      "  --log 日志类型     要导出的日志，如 YYRZ\n"
      "  --where 条件       查询条件\n"
      "  --where-file 文件  从文件读查询条件（UTF-8）\n"
      "  --export 文件      导出到的文件，按扩展名写 PDF、Excel 或 CSV\n"_s
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

int usageError(const QString &error)
{
    QTextStream(stderr) << u"quarry-viewer: "_s << error << u"\n\n"_s << Usage;
    return 2;
}

// What --export needs with it; "" when the arguments are whole.
QString exportArgumentsFault(const QCommandLineParser &parser)
{
    const bool where = parser.isSet(u"where"_s), whereFile = parser.isSet(u"where-file"_s);
    if (!parser.isSet(u"export"_s))
        return where || whereFile || parser.isSet(u"log"_s)
            ? u"--log 和 --where 只与 --export 一起用"_s
            : QString();
    if (!parser.isSet(u"log"_s))
        return u"--export 需要 --log 日志类型"_s;
    if (where == whereFile)
        return u"--export 需要 --where 或 --where-file 之一"_s;
    if (where && parser.value(u"where"_s).trimmed().isEmpty())
        return u"--where 的条件是空的"_s;
    if (!quarry::viewer::FileExport::knows(parser.value(u"export"_s)))
        return u"--export 的文件应以 .pdf、.xlsx 或 .csv 结尾"_s;
    return {};
}

// The condition of --where, or read from --where-file without its last line
// break; a null text, after saying so, when the file cannot be read.
QString exportCondition(const QCommandLineParser &parser)
{
    if (parser.isSet(u"where"_s))
        return parser.value(u"where"_s);
    QFile file(parser.value(u"where-file"_s));
    if (!file.open(QIODevice::ReadOnly)) {
        QTextStream(stderr) << u"quarry-viewer: 无法读取 %1：%2\n"_s.arg(file.fileName(),
                                                                         file.errorString());
        return {};
    }
    QString condition = QString::fromUtf8(file.readAll());
    while (condition.endsWith(u'\n') || condition.endsWith(u'\r'))
        condition.chop(1);
    return condition;
}

} // namespace

int main(int argc, char *argv[])
{
    const QStringList arguments = quarry::apps::commandArguments(argc, argv);
    if (const std::optional<int> answered = quarry::apps::answerHelpOrVersion(arguments, Usage))
        return *answered;
    QCommandLineParser parser;
    const QCommandLineOption catalogueOption(u"catalogue"_s, QString(), u"file"_s);
    parser.addOption(catalogueOption);
    for (const QString &name : {u"log"_s, u"where"_s, u"where-file"_s, u"export"_s})
        parser.addOption(QCommandLineOption(name, QString(), u"value"_s));
    if (!parser.parse(arguments) || !parser.positionalArguments().isEmpty()) {
        QString error = u"多余的参数：%1"_s.arg(parser.positionalArguments().join(u' '));
        if (!parser.unknownOptionNames().isEmpty())
            error = u"未知的选项：%1"_s.arg(parser.unknownOptionNames().join(u", "_s));
        else if (!parser.errorText().isEmpty())
            error = u"选项后面缺少它的值"_s;
        return usageError(error);
    }
    if (const QString fault = exportArgumentsFault(parser); !fault.isEmpty())
        return usageError(fault);

    const bool exporting = parser.isSet(u"export"_s);
    // No window and no display: the report is drawn off screen.
    if (exporting)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setApplicationName(u"quarry-viewer"_s);
    quarry::apps::useChinese(app);
    QString cataloguePath = parser.value(catalogueOption);
    if (cataloguePath.isEmpty()) {
        const quarry::viewer::StationDatabase station;
        cataloguePath = QFileInfo(station.iniPath()).dir().filePath(u"logs.ini"_s);
    }
    const auto catalogue = quarry::viewer::LogCatalogue::read(cataloguePath);
    if (exporting) {
        const QString condition = exportCondition(parser);
        if (condition.isNull())
            return 1;
        return quarry::viewer::exportWithoutWindow(catalogue, parser.value(u"log"_s), condition,
                                                   parser.value(u"export"_s));
    }
    quarry::viewer::ViewerWindow window(catalogue);
    window.show();
    return QApplication::exec();
}
