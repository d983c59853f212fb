#include "StationDatabase.h"

#include "MissingStation.h"
#include "ServerAddress.h"
#include "platform/DbConnection.h"
#include "platform/SqlLiteral.h"

#include <quarry/CSysCfg.h>

#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

const QString SealIni = u"SEAL.INI"_s;

} // namespace

StationDatabase::StationDatabase()
    : m_db(std::make_unique<DbConnection>())
{
    readSettings();
}

StationDatabase::~StationDatabase() = default;

void StationDatabase::readSettings()
{
    m_config = std::make_unique<CSysCfg>();
    const auto read = [this](const QString &section, const QString &key, const QString &fallback) {
        return m_config->GetINIData(section, key, fallback, SealIni);
    };
    m_config->BASEMODE = read(u"DATABASESET"_s, u"BASEMODE"_s, u"ACCESS"_s);
    m_config->ODBCDRIVER = read(u"DATABASESET"_s, u"ODBCDRIVER"_s, u"FreeTDS"_s);
    m_config->SERVER = read(u"SQLSERVER"_s, u"SERVER"_s, u"SealServer"_s);
    m_config->SEALBASE = read(u"SQLSERVER"_s, u"SEALBASE"_s, u"SEAL"_s);
}

QString StationDatabase::open()
{
    if (m_db->isOpen())
        return {};
    readSettings();
    if (const QString missing = findStation(); !missing.isEmpty())
        return missing;
    return opener()(*m_db);
}

BackgroundQuery::Opener StationDatabase::opener() const
{
    return [type = m_config->BASEMODE, folder = QFileInfo(m_config->IniPath).absolutePath(),
            driver = m_config->ODBCDRIVER,
            server = u"Server="_s + m_config->SERVER + u";Database="_s
                + m_config->SEALBASE](DbConnection &connection) {
        connection.setDatabaseType(type);
        connection.setFileFolder(folder);
        connection.setOdbcDriver(driver);
        connection.open(server, u"BISOL"_s, u"KORMANTE"_s, true);
        // The connection's text names the file or the server and database,
        // and says why in Chinese.
        return connection.failed() ? u"无法打开验印数据库：%1"_s.arg(connection.errorText())
                                   : QString();
    };
}

QString StationDatabase::findStation() const
{
    return apps::missingStation(m_config->IniPath);
}

void StationDatabase::close()
{
    m_db->close();
}

QSqlDatabase StationDatabase::database() const
{
    return m_db->database();
}

QString StationDatabase::fill(CodeListSource &list)
{
    if (list.select.isEmpty())
        return {};
    if (const QString fault = open(); !fault.isEmpty())
        return fault;
    QSqlQuery query(database());
    query.setForwardOnly(true);
    if (!query.exec(list.select)) {
        return u"在%1上读取代码表失败：%2\n%3"_s.arg(describe(), query.lastError().text(),
                                                     list.select);
    }
    list.ids.clear();
    list.names.clear();
    while (query.next()) {
        list.ids.append(qint16(query.value(0).toInt()));
        list.names.append(query.value(1).toString());
    }
    return {};
}

Paging StationDatabase::paging() const
{
    const QString mode = m_config->BASEMODE.toUpper();
    if (mode == u"SQLSERVER"_s)
        return Paging::OffsetFetch;
    if (mode.startsWith(u"SYBASE"_s))
        return Paging::None;
    return Paging::LimitOffset;
}

SqlDialect StationDatabase::dialect() const
{
    return sqlDialect(m_config->BASEMODE);
}

bool StationDatabase::isEmbedded() const
{
    return m_config->BASEMODE.compare(u"ACCESS"_s, Qt::CaseInsensitive) == 0;
}

PrintSettings StationDatabase::printSettings() const
{
    const auto read = [this](const QString &key, int fallback) {
        bool ok = false;
        const int value
            = m_config->GetINIData(u"BANKPARAM"_s, key, QString(), SealIni).trimmed().toInt(&ok);
        return ok && value > 0 ? value : fallback;
    };
    return {read(u"PRINTLINES"_s, 60), read(u"PRINTFONT"_s, 10)};
}

QString StationDatabase::iniPath() const
{
    return m_config->IniPath;
}

QString StationDatabase::describe() const
{
    if (isEmbedded())
        return u"嵌入式数据库 %1（%2）"_s.arg(m_config->SEALBASE,
                                              QFileInfo(m_config->IniPath).absolutePath());
    return u"服务器 %1（%2）上的数据库 %3"_s.arg(apps::serverAddress(*m_config),
                                                 m_config->BASEMODE.toUpper(), m_config->SEALBASE);
}

} // namespace quarry::viewer
