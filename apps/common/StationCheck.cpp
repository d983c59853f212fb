#include "StationCheck.h"

#include "MissingStation.h"
#include "ServerAddress.h"
#include "platform/DbConnection.h"
#include "platform/Paths.h"
#include "platform/SqlLiteral.h"
#include "support/ErrorLog.h"
#include "support/NumberText.h"

#include <quarry/CSysCfg.h>
#include <quarry/QuarryError.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quarry::apps {

namespace {

using Level = Finding::Level;

const QString SealIni = u"SEAL.INI"_s;

Finding ok(const QString &subject, const QString &text)
{
    return {Level::Ok, false, subject, text, {}};
}

QString native(const QString &path)
{
    return QDir::toNativeSeparators(QDir::cleanPath(path));
}

QString keyName(const IniRead &read)
{
    return u"[%1] %2"_s.arg(read.section, read.key);
}

QString setting(const IniRead &read)
{
    return keyName(read) + u'=' + read.value;
}

// --- seal.ini ----------------------------------------------------------------

QString howFound(const QString &iniPath, bool given)
{
    if (given)
        return u"指定的文件"_s;
    if (QFileInfo(iniPath).absolutePath() == QDir(paths::componentDir()).absolutePath())
        return u"在程序库旁"_s;
    const QString convert = paths::resolveIniFile(u"CONVERT.INI"_s);
    return QFileInfo::exists(convert)
        ? u"由 %1 的 [SYSTEM] INITCFG 指定"_s.arg(native(convert))
        : u"在系统配置文件夹 %1 中"_s.arg(native(paths::systemIniDir()));
}

// Where seal.ini is; a fault when there is none the component can read,
// which then reads every value as its default without a word.
Finding stationFinding(const QString &iniPath, bool given)
{
    if (const QString missing = missingStation(iniPath); !missing.isEmpty()) {
        return {Level::Fault, true, u"seal.ini"_s, missing,
                u"把站点的 seal.ini 放到上面所说的位置之一"_s};
    }
    if (QFile file(iniPath); !file.open(QIODevice::ReadOnly)) {
        return {Level::Fault, true, u"seal.ini"_s,
                u"站点配置 %1 无法读取：%2；组件会把每个键都当作默认值"_s.arg(native(iniPath),
                                                                              file.errorString()),
                u"让运行程序的用户可以读取这个文件"_s};
    }
    return ok(u"seal.ini"_s,
              u"站点配置：%1（%2）"_s.arg(native(iniPath), howFound(iniPath, given)));
}

// --- Values the component cannot take ----------------------------------------

QString faultReason(const IniFault &fault)
{
    switch (fault.number) {
    case QuarryError::TypeMismatch:
        return u"不是数字"_s;
    case QuarryError::Overflow:
        return u"超出了它的取值范围"_s;
    case QuarryError::SubscriptOutOfRange:
        return u"应至少为 1"_s;
    default:
        return u"要从本地数据库的 parameter 表取值，但读取失败：%1"_s.arg(fault.description);
    }
}

QString faultStep(const IniFault &fault, const IniRead &read, const QString &iniPath)
{
    if (fault.number == QuarryError::DataError)
        return u"让本地数据库可用（见关于它的一行），或在 %1 写上数值"_s.arg(keyName(read));
    return u"在 %1 中改正 %2 的值"_s.arg(native(iniPath), keyName(read));
}

// The keys read after the one where the component stops, and among them
// those seal.ini sets, by section.
QString unreadAfter(const QList<IniRead> &log, qsizetype stop)
{
    QStringList sections;
    QString section;
    QStringList keys;
    const auto endSection = [&] {
        if (!keys.isEmpty())
            sections.append(u"[%1] %2"_s.arg(section, keys.join(u'、')));
        keys.clear();
    };
    for (qsizetype i = stop + 1; i < log.size(); ++i) {
        const IniRead &read = log.at(i);
        if (read.defaulted)
            continue;
        if (read.section != section) {
            endSection();
            section = read.section;
        }
        if (!keys.contains(read.key))
            keys.append(read.key);
    }
    endSection();
    QString text = u"组件读到这里就停止（提示“初始化系统参数错误！”），其后的 %1 个键不再读取，"
                   u"取 0 或空值，而不是 seal.ini 的值或默认值"_s.arg(log.size() - stop - 1);
    if (!sections.isEmpty())
        text += u"；seal.ini 为其中这些键设的值不起作用：%1"_s.arg(sections.join(u"；"_s));
    return text;
}

QList<Finding> readFindings(const QList<IniFault> &faults, const QList<IniRead> &log,
                            const QString &iniPath)
{
    QList<Finding> findings;
    for (const IniFault &fault : faults) {
        const IniRead &read = log.at(fault.read);
        QString text = u"%1 %2"_s.arg(setting(read), faultReason(fault));
        if (findings.isEmpty())
            text += u"。"_s + unreadAfter(log, fault.read);
        findings.append({Level::Fault, true, keyName(read), text, faultStep(fault, read, iniPath)});
    }
    return findings;
}

// --- Profile and database type -----------------------------------------------

QString profileMeaning(qint16 code)
{
    switch (code) {
    case 2:
        return u"票据识别日志的查询条件为空时先询问"_s;
    case 38:
        return u"票据识别日志按支票序列号查询"_s;
    case 39:
        return u"查询也对照操作员姓名，票据识别日志不显示时间"_s;
    case 54:
        return u"不允许不带条件的查询"_s;
    case 58:
        return u"参考列表取自本地数据库的 ref_ImportAcc 表"_s;
    case 61:
        return u"代码表取自本地数据库的 P_FIELD_VAL_DEF 表"_s;
    case 65:
        return u"输入网点号的查询对话框可选“包含子机构”"_s;
    default:
        return u"查询对话框没有这个类型特有的做法"_s;
    }
}

qsizetype logIndex(const QList<IniRead> &log, const QString &section, const QString &key)
{
    const auto found = std::find_if(log.cbegin(), log.cend(), [&](const IniRead &read) {
        return read.section == section && read.key == key;
    });
    return found - log.cbegin();
}

// stop: where the component stops reading, past the end when it does not;
// a profile read after it is lost, but for the usual one, which it keeps.
Finding profileFinding(const CSysCfg &cfg, const QList<IniRead> &log, qsizetype stop)
{
    const QString subject = u"[USER] MODE"_s;
    const QString mode = u"[USER] MODE=%1"_s.arg(cfg.MODE);
    const QString usual = u"“普通银行”（代码 0）"_s;
    if (stop < logIndex(log, u"USER"_s, u"MODE"_s) && cfg.ProfileCode != 0) {
        return {Level::Fault, false, subject,
                u"银行类型 %1 不起作用：组件在 %2 处停止读取，按%3处理"_s.arg(mode,
                                                                              keyName(log.at(stop)),
                                                                              usual),
                u"改正 %1 后即生效"_s.arg(keyName(log.at(stop)))};
    }
    if (cfg.ProfileCode == 0 && cfg.MODE != u"普通银行"_s) {
        return {Level::Fault, false, subject,
                u"%1 不是已知的银行类型（名称区分大小写），组件按%2处理"_s.arg(mode, usual),
                u"写上正确的银行类型名称（见管理员手册），或删除这个键"_s};
    }
    return ok(subject,
              u"银行类型 %1（代码 %2）：%3"_s.arg(mode)
                  .arg(cfg.ProfileCode)
                  .arg(profileMeaning(cfg.ProfileCode)));
}

bool isEmbedded(const CSysCfg &cfg)
{
    return cfg.BASEMODE.compare(u"ACCESS"_s, Qt::CaseInsensitive) == 0;
}

// What BASEMODE means; "" when the component cannot work with it.
QString databaseKind(const CSysCfg &cfg)
{
    if (isEmbedded(cfg))
        return u"嵌入式数据库，seal.ini 所在文件夹中的 SQLite 文件"_s;
    switch (sqlDialect(cfg.BASEMODE)) {
    case SqlDialect::MySql:
        return u"MySQL 或 MariaDB 服务器"_s;
    case SqlDialect::SqlServer:
        return u"SQL Server 服务器，经 ODBC 驱动“%1”"_s.arg(cfg.ODBCDRIVER);
    case SqlDialect::Sybase:
        return u"Sybase 服务器，经 ODBC 驱动“%1”"_s.arg(cfg.ODBCDRIVER);
    case SqlDialect::Access:
        break;
    }
    return {};
}

Finding baseModeFinding(const CSysCfg &cfg, const QString &kind)
{
    const QString subject = u"[DATABASESET] BASEMODE"_s;
    const QString mode = u"[DATABASESET] BASEMODE=%1"_s.arg(cfg.BASEMODE);
    if (kind.isEmpty()) {
        return {Level::Fault, true, subject, u"%1 不是支持的数据库类型"_s.arg(mode),
                u"改为 ACCESS（嵌入式）、MYSQL、SQLSERVER 或 SYBASE"_s};
    }
    return ok(subject, u"数据库类型 %1：%2"_s.arg(mode, kind));
}

// --- Databases -----------------------------------------------------------------

struct Database
{
    QString role; // in the administrator's words
    QString key;  // the seal.ini key of its name
    QString name;
    QStringList tables;
};

void addTables(QStringList &tables, const QStringList &more)
{
    for (const QString &table : more) {
        if (!tables.contains(table, Qt::CaseInsensitive))
            tables.append(table);
    }
}

// The databases the component and the viewer read on this station, with
// the tables each reads. The local database is read only for the
// double-seal quota of the parameter table and for the reference lists of
// two profiles; one of the same name as the seal database is that one.
QList<Database> stationDatabases(const CSysCfg &cfg, const QStringList &logTables)
{
    QStringList seal{u"WDDZ"_s,    u"HY"_s,          u"HYCONFIG"_s,
                     u"HYGROUP"_s, u"delcalender"_s, u"pjsblog"_s};
    addTables(seal, logTables);
    QStringList local;
    const qsizetype quota = logIndex(cfg.parameterLog(), u"SBMK"_s, u"DoubleSealQuota"_s);
    if (quota < cfg.parameterLog().size()
        && leadingNumber(cfg.parameterLog().at(quota).value) == -1.0)
        local.append(u"parameter"_s);
    if (cfg.ProfileCode == 58)
        local.append(u"ref_ImportAcc"_s);
    if (cfg.ProfileCode == 61)
        local.append(u"P_FIELD_VAL_DEF"_s);
    QList<Database> databases{{u"验印数据库"_s, u"SEALBASE"_s, cfg.SEALBASE, seal}};
    if (cfg.LOCALBASE.compare(cfg.SEALBASE, Qt::CaseInsensitive) == 0)
        addTables(databases.first().tables, local);
    else if (!local.isEmpty())
        databases.append({u"本地数据库"_s, u"LOCALBASE"_s, cfg.LOCALBASE, local});
    return databases;
}

QString openStep(const CSysCfg &cfg, const Database &database)
{
    if (isEmbedded(cfg)) {
        return u"把数据库文件放到 %1，或改正 [SQLSERVER] %2"_s.arg(
            native(QFileInfo(cfg.IniPath).absolutePath()), database.key);
    }
    return u"确认服务器 %1 在运行、本机连得上，[SQLSERVER] SERVER 和 %2 正确，登录 BISOL "
           u"有读数据库 %3 的权限（见管理员手册）"_s.arg(serverAddress(cfg), database.key,
                                                         database.name);
}

// The tables a query cannot read, with the database's text for the first.
QStringList missingTables(const DbConnection &db, const QStringList &tables, QString &why)
{
    QStringList missing;
    for (const QString &table : tables) {
        QSqlQuery query(db.database());
        if (query.exec(u"select * from %1 where 1=0"_s.arg(table)))
            continue;
        if (missing.isEmpty()) {
            const QSqlError error = query.lastError();
            why = error.databaseText().isEmpty() ? error.text() : error.databaseText();
        }
        missing.append(table);
    }
    return missing;
}

Finding databaseFinding(const CSysCfg &cfg, const Database &database)
{
    DbConnection db;
    cfg.prepareConnection(db);
    db.open(u"Server="_s + cfg.SERVER + u";Database="_s + database.name, u"BISOL"_s, u"KORMANTE"_s,
            true);
    const QString subject = u"%1 %2"_s.arg(database.role, database.name);
    if (db.failed()) {
        const QString where = isEmbedded(cfg) ? u" "_s : u"（服务器 %1）"_s.arg(serverAddress(cfg));
        return {Level::Fault, true, subject,
                u"%1%2打不开：%3"_s.arg(subject, where, db.errorText()), openStep(cfg, database)};
    }
    const QString where = isEmbedded(cfg)
        ? u"（文件 %1）"_s.arg(native(db.database().databaseName()))
        : u"（服务器 %1）"_s.arg(serverAddress(cfg));
    QString why;
    const QStringList missing = missingTables(db, database.tables, why);
    if (!missing.isEmpty()) {
        return {Level::Fault, false, subject,
                u"%1%2 中读不到表 %3：%4"_s.arg(subject, where, missing.join(u'、'), why),
                u"建立这些表（建表语句见 data/sample 中的 SQL 文件），或在 logs.ini 中改正日志表的 "
                u"Table"_s};
    }
    return ok(subject,
              u"%1%2：以登录 BISOL 打开，要读的表都在（%3）"_s.arg(subject, where,
                                                                   database.tables.join(u'、')));
}

// --- Folders -----------------------------------------------------------------

// Whether a probe file can be made in the folder; "" when it can.
QString unwritable(const QString &folder)
{
    const QString log = QDir(folder).filePath(u"error.txt"_s);
    if (QFile file(log); file.exists()) {
        return file.open(QIODevice::WriteOnly | QIODevice::Append) ? QString() : file.errorString();
    }
    QTemporaryFile probe(QDir(folder).filePath(u"quarry-check-XXXXXX"_s));
    return probe.open() ? QString() : probe.errorString();
}

// The log is made where it is missing, its folder too when only the last
// level of it is: the parent must exist, or be the root of a drive.
Finding errorLogFinding(const QString &iniPath, const QString &value)
{
    const QString folder = errorLogFolder(iniPath);
    const QString subject = u"[ERROR] ERRORFILE"_s;
    const QString named = u"错误日志文件夹 %1（[ERROR] ERRORFILE=%2）"_s.arg(native(folder), value);
    const QString parent = QFileInfo(folder).absolutePath();
    const QString step = u"建立这个文件夹（mkdir -p '%1'），或在 [ERROR] ERRORFILE 指定一个可写的"
                         u"文件夹"_s.arg(native(folder));
    const QFileInfo info(folder);
    if (info.isDir()) {
        if (const QString why = unwritable(folder); !why.isEmpty())
            return {Level::Fault, false, subject, u"%1不能写入：%2"_s.arg(named, why), step};
        return ok(subject, u"%1：可以写入"_s.arg(named));
    }
    if (info.exists())
        return {Level::Fault, false, subject, u"%1是文件，不是文件夹"_s.arg(named), step};
    if (QFileInfo(parent).isDir() || paths::isDriveFolder(parent))
        return ok(subject, u"%1还没有，第一次记录错误时建立"_s.arg(named));
    return {Level::Fault, false, subject,
            u"%1不存在，也无法建立：上级文件夹 %2 不存在；组件和查看程序的错误都记不下来"_s.arg(
                named, native(parent)),
            step};
}

// The folders that the station's other programs use; the component only
// hands them on, so one that is missing is worth a note, not a fault.
Finding folderFinding(CSysCfg &cfg)
{
    const QList<std::pair<QString, QString>> folders{
        {u"[Atktran] DownloadFilePath"_s, cfg.GetDownloadFilePath()},
        {u"[YWCHL] UPDBPATH"_s, cfg.UPDBPATH},
        {u"[YWCHL] BACKUPPATH"_s, cfg.BACKUPPATH},
        {u"[CENTRE] RECEIVEPATH"_s, cfg.RECEIVEPATH},
        {u"[CENTRE] SENDPATH"_s, cfg.SENDPATH},
        {u"[CENTRE] UNPACKPATH"_s, cfg.UNPACKPATH},
        {u"[CENTRE] SAVEPATH"_s, cfg.SAVEPATH},
        {u"[AUTOTRAN] LOGFILEPATH"_s, cfg.LOGFILEPATH},
        {u"[UPLOADTOFTP] UPLOADFilePath"_s, cfg.UPLOADFilePath},
        {u"[sbmk] ImageDesPath"_s, cfg.ImageDesPath},
        {u"[sbmk] ImageTempPath"_s, cfg.ImageTempPath},
    };
    QStringList missing;
    qsizetype named = 0;
    for (const auto &[key, value] : folders) {
        if (value.isEmpty())
            continue;
        ++named;
        const QString local = paths::fromWindowsPath(value);
        if (!QFileInfo(local).isDir())
            missing.append(u"%1 → %2"_s.arg(key, native(local)));
    }
    const QString subject = u"seal.ini 所指的文件夹"_s;
    if (missing.isEmpty())
        return ok(subject, u"seal.ini 所指的 %1 个文件夹都在"_s.arg(named));
    return {Level::Note, false, subject,
            u"seal.ini 所指的这些文件夹不存在（本组件不用，站点的其他程序会用）：%1"_s.arg(
                missing.join(u'；')),
            u"站点的其他程序要用时建立这些文件夹"_s};
}

} // namespace

QString Finding::sentence() const
{
    if (nextStep.isEmpty())
        return text;
    return text + (text.endsWith(u'。') ? u"处理："_s : u"。处理："_s) + nextStep;
}

QString Finding::line() const
{
    static const QString words[] = {u"正常"_s, u"提示"_s, u"错误"_s};
    return u"%1  %2"_s.arg(words[int(level)], sentence());
}

StationCheck::StationCheck(const QString &iniPath, const QStringList &logTables)
    : m_iniPath(iniPath)
    , m_logTables(logTables)
{
}

QList<Finding> StationCheck::run() const
{
    CSysCfg cfg;
    if (!m_iniPath.isEmpty())
        cfg.IniPath = QFileInfo(m_iniPath).absoluteFilePath();
    const QString errorFile
        = cfg.GetINIData(u"ERROR"_s, u"ERRORFILE"_s, u"c:\\errorpath"_s, SealIni);
    QList<Finding> findings{stationFinding(cfg.IniPath, !m_iniPath.isEmpty())};
    if (findings.constFirst().level == Level::Fault)
        return findings << errorLogFinding(cfg.IniPath, errorFile);

    const QList<IniFault> faults = cfg.inspectParameters();
    const QList<IniRead> &log = cfg.parameterLog();
    const QString kind = databaseKind(cfg);
    findings << baseModeFinding(cfg, kind) << readFindings(faults, log, cfg.IniPath);
    findings << profileFinding(cfg, log, faults.isEmpty() ? log.size() : faults.first().read);
    if (!kind.isEmpty()) {
        for (const Database &database : stationDatabases(cfg, m_logTables))
            findings << databaseFinding(cfg, database);
    }
    findings << errorLogFinding(cfg.IniPath, errorFile) << folderFinding(cfg);
    return findings;
}

bool StationCheck::hasFault(const QList<Finding> &findings)
{
    return std::any_of(findings.cbegin(), findings.cend(),
                       [](const Finding &finding) { return finding.level == Level::Fault; });
}

bool StationCheck::blocksQuery(const QList<Finding> &findings)
{
    return std::any_of(findings.cbegin(), findings.cend(),
                       [](const Finding &finding) { return finding.blocksQuery; });
}

} // namespace quarry::apps
