#include "StationDatabase.h"

#include "platform/DbConnection.h"

#include <quarry/CSysCfg.h>

#include <QSqlError>
#include <QSqlQuery>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

StationDatabase::StationDatabase()
    : m_config(std::make_unique<CSysCfg>())
    , m_db(std::make_unique<DbConnection>())
{
    m_config->GetParameter();
}

StationDatabase::~StationDatabase() = default;

QString StationDatabase::open()
{
    if (m_db->isOpen())
        return {};
    m_config->prepareConnection(*m_db);
    m_db->open(u"Server="_s + m_config->SERVER + u";Database="_s + m_config->SEALBASE, u"BISOL"_s,
               u"KORMANTE"_s, true);
    if (!m_db->failed())
        return {};
    return u"连接数据库 %1 失败：%2"_s.arg(describe(), m_db->errorText());
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
    if (!query.exec(list.select))
        return u"读取代码表失败：%1\n%2"_s.arg(query.lastError().text(), list.select);
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

QString StationDatabase::iniPath() const
{
    return m_config->IniPath;
}

QString StationDatabase::describe() const
{
    const QString server = m_config->SERVER.isEmpty()
            || m_config->BASEMODE.compare(u"ACCESS"_s, Qt::CaseInsensitive) == 0
        ? QString()
        : m_config->SERVER + u'/';
    return u"%1 %2%3"_s.arg(m_config->BASEMODE.isEmpty() ? u"ACCESS"_s : m_config->BASEMODE, server,
                            m_config->SEALBASE);
}

} // namespace quarry::viewer
