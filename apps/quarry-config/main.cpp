// quarry-config: shows and changes the station's seal.ini as the component
// reads it, for administrators and without a display.
//
//   quarry-config [--ini PATH] dump
//   quarry-config [--ini PATH] get SECTION KEY [DEFAULT]
//   quarry-config [--ini PATH] set SECTION KEY VALUE
//   quarry-config [--ini PATH] check [--json]

#include "CommandArguments.h"
#include "LogCatalogue.h"
#include "MissingStation.h"
#include "ProgramHelp.h"
#include "QtChinese.h"
#include "StationCheck.h"

#include "platform/IniFile.h"
#include "platform/Paths.h"

#include <quarry/CSysCfg.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QString SealIni = u"SEAL.INI"_s;

const QString Usage
    = u"用法：quarry-config [--ini 文件] 命令\n"
      "显示和修改本站点的 seal.ini（按组件读取的方式），供管理员使用，不需要显示器。\n\n"
      "命令：\n"
      "  dump                      列出组件读到的每个值（缺省的值注明）\n"
      "  get 节 键 [缺省值]        显示一个值\n"
      "  set 节 键 值              写入一个值，文件的其余部分不变\n"
      "  check [--json]            检查站点：seal.ini、数据库、表和文件夹，\n"
      "                            一次列出全部问题（--json 以 JSON 给出）；\n"
      "                            没有问题时退出状态为 0，有问题时为 1\n\n"
      "选项：\n"
      "  --ini 文件         使用这个 seal.ini，而不是找到的那个\n"_s
    + quarry::apps::standardOptionLines();

void tell(const QString &message)
{
    QTextStream(stderr) << "quarry-config: " << message << Qt::endl;
}

int fail(const QString &message)
{
    tell(message);
    return 2;
}

// Why an existing file cannot be read; empty when it can or does not exist.
// The component reads such a file as all defaults, without a word.
QString readError(const QString &path)
{
    QFile file(path);
    if (!file.exists() || file.open(QIODevice::ReadOnly))
        return {};
    return file.errorString();
}

template<typename T>
void printList(QTextStream &out, const QString &name, const QList<T> &values)
{
    for (qsizetype i = 0; i < values.size(); ++i)
        out << name << '(' << i << ") = " << values.at(i) << '\n';
}

int dump(quarry::CSysCfg &cfg)
{
    QTextStream out(stdout);
    out.setRealNumberPrecision(15);
    if (!QFileInfo::exists(cfg.IniPath))
        tell(cfg.IniPath + u" 不存在，每个值都取缺省值"_s);
    // Reading writes TOTALACCNO=1 over a 0, as the component always has: a
    // station has at least one account pattern.
    const auto accountPatterns
        = [&cfg] { return cfg.GetINIData(u"BANKPARAM"_s, u"TOTALACCNO"_s, QString(), SealIni); };
    const QString patternsBefore = accountPatterns();
    const bool complete = cfg.GetParameter();
    if (const QString patterns = accountPatterns(); patterns != patternsBefore) {
        tell(u"%1：[BANKPARAM] TOTALACCNO 原为 %2，读取时已把 TOTALACCNO=%3 写入文件"
             u"（组件对没有账号模式的站点一向如此）"_s.arg(cfg.IniPath, patternsBefore, patterns));
    }
    out << "; " << cfg.IniPath << '\n';
    for (const quarry::IniRead &read : cfg.parameterLog()) {
        out << '[' << read.section << "] " << read.key << " = " << read.value
            << (read.defaulted ? u"  （缺省值）"_s : QString()) << '\n';
    }
    out << "ProfileCode = " << cfg.ProfileCode << '\n'
        << "UpperModeCode = " << cfg.UpperModeCode << '\n'
        << "SubModeCode = " << cfg.SubModeCode << '\n'
        << "QueryHintMode = " << cfg.QueryHintMode << '\n'
        << "AccNoMaxLen = " << cfg.AccNoMaxLen << '\n'
        << "DoubleSealQuota = " << cfg.DoubleSealQuota << '\n';
    printList(out, u"ACCNOTYPE"_s, cfg.ACCNOTYPE);
    printList(out, u"ACCNOLEN"_s, cfg.ACCNOLEN);
    printList(out, u"BANKACCNOTYPE"_s, cfg.BANKACCNOTYPE);
    printList(out, u"ACCTYPE"_s, cfg.ACCTYPE);
    printList(out, u"AccUse"_s, cfg.AccUse);
    printList(out, u"AccState"_s, cfg.AccState);
    printList(out, u"CurrencyId"_s, cfg.CurrencyId);
    printList(out, u"CheckUsefulLifeKind"_s, cfg.CheckUsefulLifeKind);
    printList(out, u"SpecialDoubleSealPztype"_s, cfg.SpecialDoubleSealPztype);
    printList(out, u"SpecialDoubleSealQuota"_s, cfg.SpecialDoubleSealQuota);
    out.flush();
    return complete ? 0 : 1;
}

int set(const quarry::CSysCfg &cfg, const QStringList &args)
{
    const QString &section = args.at(1);
    const QString &key = args.at(2);
    const QString &value = args.at(3);
    // SetIniData writes the same way, but does not say why it did not.
    QString error;
    if (!quarry::IniFile::write(quarry::paths::resolveIniFile(cfg.IniPath), section, key, value,
                                &error))
        return fail(u"[%1] %2 未写入 %3：%4"_s.arg(section, key, cfg.IniPath, error));
    tell(u"已写入 %1：[%2] %3=%4"_s.arg(cfg.IniPath, section, key, value));
    return 0;
}

QJsonObject findingObject(const quarry::apps::Finding &finding)
{
    static const QString levels[] = {u"ok"_s, u"note"_s, u"fault"_s};
    return {{u"level"_s, levels[int(finding.level)]},
            {u"blocksQuery"_s, finding.blocksQuery},
            {u"subject"_s, finding.subject},
            {u"text"_s, finding.text},
            {u"nextStep"_s, finding.nextStep}};
}

// Every finding on a line of its own, or all of them as one JSON object;
// 1 when one of them is a fault. The station's logs are those of the
// catalogue beside its seal.ini, as the viewer reads them.
int check(const QString &iniPath, bool given, bool json)
{
    const QString catalogue = QFileInfo(iniPath).dir().filePath(u"logs.ini"_s);
    const QStringList tables = QFileInfo::exists(catalogue)
        ? quarry::viewer::LogCatalogue::read(catalogue).tables()
        : QStringList();
    const QList<quarry::apps::Finding> findings
        = quarry::apps::StationCheck(given ? iniPath : QString(), tables).run();
    const bool faulty = quarry::apps::StationCheck::hasFault(findings);
    QTextStream out(stdout);
    if (json) {
        QJsonArray list;
        for (const quarry::apps::Finding &finding : findings)
            list.append(findingObject(finding));
        out << QJsonDocument(QJsonObject{{u"ok"_s, !faulty}, {u"findings"_s, list}}).toJson();
    } else {
        for (const quarry::apps::Finding &finding : findings)
            out << finding.line() << '\n';
    }
    return faulty ? 1 : 0;
}

} // namespace

int main(int argc, char *argv[])
{
    if (const std::optional<int> answered
        = quarry::apps::answerHelpOrVersion(quarry::apps::commandArguments(argc, argv), Usage))
        return *answered;
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"quarry-config"_s);
    // The parser's own complaints, too.
    quarry::apps::useChinese(app);

    QCommandLineParser parser;
    parser.setApplicationDescription(u"显示和修改本站点的 seal.ini。"_s);
    const QCommandLineOption iniOption(u"ini"_s, u"使用这个 seal.ini，而不是找到的那个。"_s,
                                       u"PATH"_s);
    parser.addOption(iniOption);
    const QCommandLineOption jsonOption(u"json"_s, u"check：以 JSON 给出检查结果。"_s);
    parser.addOption(jsonOption);
    parser.addPositionalArgument(u"command"_s,
                                 u"dump | get 节 键 [缺省值] | set 节 键 值 | check [--json]"_s);
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(parser.errorText());

    const QStringList args = parser.positionalArguments();
    const QString command = args.value(0);
    const qsizetype count = args.size();
    const bool usable = (command == u"dump"_s && count == 1)
        || (command == u"get"_s && (count == 3 || count == 4))
        || (command == u"set"_s && count == 4) || (command == u"check"_s && count == 1);
    if (!usable || (parser.isSet(jsonOption) && command != u"check"_s)) {
        return fail(args.isEmpty() ? u"没有给出命令；见 --help"_s
                                   : u"命令未知或参数不对：%1；见 --help"_s.arg(args.join(u' ')));
    }

    quarry::CSysCfg cfg;
    if (parser.isSet(iniOption)) {
        const QFileInfo ini(parser.value(iniOption));
        if (!ini.exists())
            return fail(u"没有这个文件：%1"_s.arg(parser.value(iniOption)));
        if (ini.isDir())
            return fail(u"%1 是文件夹，不是 INI 文件"_s.arg(parser.value(iniOption)));
        cfg.IniPath = ini.absoluteFilePath();
    }
    // The check says itself what is wrong with the file, among the rest.
    if (command == u"check"_s)
        return check(cfg.IniPath, parser.isSet(iniOption), parser.isSet(jsonOption));
    if (const QString error = readError(cfg.IniPath); !error.isEmpty())
        return fail(u"无法读取 %1：%2"_s.arg(cfg.IniPath, error));

    if (command == u"dump"_s)
        return dump(cfg);
    if (command == u"set"_s)
        return set(cfg, args);
    if (const QString missing = quarry::apps::missingStation(cfg.IniPath); !missing.isEmpty()) {
        tell(missing);
        return 1;
    }
    QTextStream(stdout) << cfg.GetINIData(args.at(1), args.at(2), args.value(3), SealIni) << '\n';
    return 0;
}
