// quarry-config: shows and changes the station's seal.ini as the component
// reads it, for administrators and without a display.
//
//   quarry-config [--ini PATH] dump
//   quarry-config [--ini PATH] get SECTION KEY [DEFAULT]
//   quarry-config [--ini PATH] set SECTION KEY VALUE

#include <quarry/CSysCfg.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QTextStream>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

const QString SealIni = u"SEAL.INI"_s;

int fail(const QString &message)
{
    QTextStream(stderr) << "quarry-config: " << message << Qt::endl;
    return 2;
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
        QTextStream(stderr) << "quarry-config: " << cfg.IniPath
                            << " does not exist; every value is its default" << Qt::endl;
    const bool complete = cfg.GetParameter();
    out << "; " << cfg.IniPath << '\n';
    for (const quarry::IniRead &read : cfg.parameterLog()) {
        out << '[' << read.section << "] " << read.key << " = " << read.value
            << (read.defaulted ? "  (default)" : "") << '\n';
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
    cfg.SetIniData(section, key, value, SealIni);
    // Writing does not report failure; reading back does.
    if (cfg.GetINIData(section, key, QString(), SealIni) != value.trimmed().left(255))
        return fail(u"could not write [%1] %2 to %3"_s.arg(section, key, cfg.IniPath));
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"quarry-config"_s);

    QCommandLineParser parser;
    parser.setApplicationDescription(u"Shows and changes the station's seal.ini."_s);
    parser.addHelpOption();
    const QCommandLineOption iniOption(u"ini"_s, u"Use this seal.ini instead of the one found."_s,
                                       u"PATH"_s);
    parser.addOption(iniOption);
    parser.addPositionalArgument(
        u"command"_s,
        u"dump | get SECTION KEY [DEFAULT] | set SECTION KEY VALUE"_s);
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(parser.errorText());
    if (parser.isSet(u"help"_s)) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return 0;
    }

    const QStringList args = parser.positionalArguments();
    const QString command = args.value(0);
    const qsizetype count = args.size();
    const bool usable = (command == u"dump"_s && count == 1)
        || (command == u"get"_s && (count == 3 || count == 4))
        || (command == u"set"_s && count == 4);
    if (!usable) {
        return fail(args.isEmpty() ? u"no command; see --help"_s
                                   : u"unknown command or wrong arguments: %1; see --help"_s.arg(
                                         args.join(u' ')));
    }

    quarry::CSysCfg cfg;
    if (parser.isSet(iniOption)) {
        const QFileInfo ini(parser.value(iniOption));
        if (!ini.isFile())
            return fail(u"no such file: %1"_s.arg(parser.value(iniOption)));
        cfg.IniPath = ini.absoluteFilePath();
    }

    if (command == u"dump"_s)
        return dump(cfg);
    if (command == u"set"_s)
        return set(cfg, args);
    QTextStream(stdout) << cfg.GetINIData(args.at(1), args.at(2), args.value(3), SealIni) << '\n';
    return 0;
}
