#include <quarry/CSysCfgDb.h>

#include "platform/Blanks.h"
#include "platform/DbConnection.h"
#include "platform/DbRecordSet.h"
#include "platform/SystemMessage.h"

#include <quarry/QuarryError.h>

#include <QDate>
#include <QRegularExpression>
#include <QScopeGuard>

#include <limits>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

constexpr qint16 ZacenProfile = 58;
constexpr qint16 LumunProfile = 61;

QString operationSource(const QString &operation)
{
    return u"CSysCfgDb."_s + operation + u"()"_s;
}

void checkIndex(qint16 index, const QString &operation)
{
    if (index < 0)
        throw QuarryError(QuarryError::SubscriptOutOfRange, operationSource(operation),
                          u"下标越界：序号"_s + QString::number(index) + u"小于 0"_s);
}

QString itemAt(const QStringList &items, qint16 index, const QString &operation)
{
    checkIndex(index, operation);
    return items.value(index); // empty past the end
}

QString describe(const QStringList &values, const QStringList &descriptions, const QString &id)
{
    const QString wanted = trimBlanks(id).toUpper();
    for (qsizetype i = 0; i < values.size(); ++i) {
        if (trimBlanks(values.at(i)).toUpper() == wanted)
            return descriptions.at(i);
    }
    return {};
}

} // namespace

CSysCfgDb::CSysCfgDb(QObject *parent)
    : QObject(parent)
    , m_sealDb(std::make_unique<DbConnection>())
    , m_localDb(std::make_unique<DbConnection>())
    , m_config(std::make_unique<CSysCfg>())
{
    m_config->GetParameter();
}

CSysCfgDb::~CSysCfgDb() = default;

CSysCfg *CSysCfgDb::GetObSysCfg() const
{
    return m_config.get();
}

qint16 CSysCfgDb::GetTotalAccState() const
{
    return qint16(m_accStates.ids.size());
}

QString CSysCfgDb::GetAccStateId(qint16 Index) const
{
    return itemAt(m_accStates.ids, Index, u"GetAccStateId"_s);
}

QString CSysCfgDb::GetAccStateName(qint16 Index) const
{
    return itemAt(m_accStates.names, Index, u"GetAccStateName"_s);
}

qint16 CSysCfgDb::GetTotalCurrencyId() const
{
    return qint16(m_currencies.ids.size());
}

QString CSysCfgDb::GetCurrencyId(qint16 Index) const
{
    return itemAt(m_currencies.ids, Index, u"GetCurrencyId"_s);
}

QString CSysCfgDb::GetCurrencyName(qint16 Index) const
{
    return itemAt(m_currencies.names, Index, u"GetCurrencyName"_s);
}

qint16 CSysCfgDb::GetTotalAccType() const
{
    return qint16(m_accTypeNames.size());
}

QString CSysCfgDb::GetAccTypeName(qint16 Index) const
{
    return itemAt(m_accTypeNames, Index, u"GetAccTypeName"_s);
}

qint16 CSysCfgDb::GetTotalAccStateWord() const
{
    return qint16(m_accStateWordIds.size());
}

qint16 CSysCfgDb::GetAccStateWordId(qint16 Index) const
{
    checkIndex(Index, u"GetAccStateWordId"_s);
    if (Index >= m_accStateWordIds.size())
        throw QuarryError(QuarryError::TypeMismatch, operationSource(u"GetAccStateWordId"_s),
                          u"类型不匹配：序号"_s + QString::number(Index) + u"处没有账户状态字"_s);
    return m_accStateWordIds.at(Index);
}

QString CSysCfgDb::GetAccStateWordName(qint16 Index) const
{
    return itemAt(m_accStateWordNames, Index, u"GetAccStateWordName"_s);
}

bool CSysCfgDb::GetParameter()
{
    try {
        if (m_config->ProfileCode == ZacenProfile)
            loadImportLists();
        else if (m_config->ProfileCode == LumunProfile)
            loadFieldCodeTables();
        return true;
    } catch (const QuarryError &error) {
        m_localDb->close();
        tellConfigurationFault(u"从数据库读取系统参数错误！"_s + error.description(), error);
        return false;
    }
}

QString CSysCfgDb::GetToday()
{
    if (!m_today.isEmpty())
        return m_today;
    ConnectSealDb();
    const auto disconnect = qScopeGuard([this] { DisConnectSealDb(); });
    m_today = ReadBusinessDate();
    return m_today;
}

QString CSysCfgDb::GetCurrDescById(const QString &strCurrId) const
{
    return describe(m_curr.ids, m_curr.names, strCurrId);
}

QString CSysCfgDb::GetTcFlagDescById(const QString &strTcFlagId) const
{
    return describe(m_tcFlag.ids, m_tcFlag.names, strTcFlagId);
}

QString CSysCfgDb::GetSealPwdFDescById(const QString &strSealPwdFId) const
{
    return describe(m_sealPwdF.ids, m_sealPwdF.names, strSealPwdFId);
}

void CSysCfgDb::ConnectSealDb()
{
    openDatabase(*m_sealDb, m_config->SEALBASE, u"CSysCfgDb.ConnectSealDb()"_s);
}

void CSysCfgDb::ConnectLocalDb()
{
    openDatabase(*m_localDb, m_config->LOCALBASE, u"CSysCfgDb.ConnectLocalDb()"_s);
}

void CSysCfgDb::DisConnectSealDb()
{
    m_sealDb->close();
}

void CSysCfgDb::DisConnectLocalDb()
{
    m_localDb->close();
    if (m_localDb->failed())
        throw QuarryError(QuarryError::DataError, u"CSysCfgDb.DisConnectLocalDb()"_s,
                          u"断开数据库"_s + m_config->SERVER + u" 失败！"_s
                              + m_localDb->errorText());
}

// The business-date row keeps the date a thousand years ahead.
QString CSysCfgDb::ReadBusinessDate() const
{
    DbRecordSet records;
    records.open(u"select * from delcalender where curday='3000-01-01'"_s, *m_sealDb);
    if (records.eof())
        return QDate::currentDate().toString(u"yyyy-MM-dd"_s);
    const QString deadline = records.field(u"deadline"_s);
    static const QRegularExpression datePattern(u"^(\\d{4})-(\\d{1,2})-(\\d{1,2})"_s);
    const QRegularExpressionMatch match = datePattern.match(deadline);
    const QDate date = match.hasMatch()
        ? QDate(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt())
        : QDate();
    if (!date.isValid())
        throw QuarryError(QuarryError::TypeMismatch, u"CSysCfgDb.GetToday()"_s,
                          u"类型不匹配：营业日期“"_s + deadline + u"”不是日期"_s);
    return (QString::number(date.year() - 1000) + deadline.mid(4, 6)).trimmed();
}

void CSysCfgDb::openDatabase(DbConnection &connection, const QString &database,
                             const QString &source)
{
    m_config->prepareConnection(connection);
    connection.open(u"Server="_s + m_config->SERVER + u";Database="_s + database, u"BISOL"_s,
                    u"KORMANTE"_s, true);
    if (connection.failed())
        throw QuarryError(QuarryError::DataError, source,
                          u"连接数据库"_s + m_config->SERVER + u" 失败！"_s
                              + connection.errorText());
}

void CSysCfgDb::loadImportLists()
{
    ConnectLocalDb();
    m_accStates = readCodeList(u"select OtherAccStateId,OtherAccStateName from ref_ImportAcc "
                               "where OtherAccStateId<>'' order by RefId"_s,
                               u"OtherAccStateId"_s, u"OtherAccstateName"_s);
    m_currencies = readCodeList(u"select OtherCurrencyId,OtherCurrencyName from ref_ImportAcc "
                                "where OtherCurrencyId<>'' order by RefId"_s,
                                u"OtherCurrencyId"_s, u"OtherCurrencyName"_s);
    m_accTypeNames = readColumns(u"select OtherAccTypeName from ref_ImportAcc "
                                 "where OtherAccTypeName<>'' order by RefId"_s,
                                 {u"OtherAccTypeName"_s})
                         .constFirst();
    const QList<QStringList> words
        = readColumns(u"select OtherAccStateWordId,OtherAccStateWordName from ref_ImportAcc "
                      "where OtherAccStateWordId<>0 order by refId"_s,
                      {u"OtherAccStateWordId"_s, u"OtherAccStateWordName"_s});
    QList<qint16> wordIds;
    for (const QString &text : words.at(0)) {
        bool numeric = false;
        const int id = text.trimmed().toInt(&numeric);
        if (!numeric)
            throw QuarryError(QuarryError::TypeMismatch, u"CSysCfgDb.GetParameter()"_s,
                              u"类型不匹配：账户状态字“"_s + text + u"”不是整数"_s);
        if (id < std::numeric_limits<qint16>::min() || id > std::numeric_limits<qint16>::max())
            throw QuarryError(QuarryError::Overflow, u"CSysCfgDb.GetParameter()"_s,
                              u"溢出：账户状态字"_s + text + u"超出整数范围"_s);
        wordIds.append(qint16(id));
    }
    m_accStateWordIds = wordIds;
    m_accStateWordNames = words.at(1);
    DisConnectLocalDb();
}

void CSysCfgDb::loadFieldCodeTables()
{
    ConnectLocalDb();
    const QString value = u"FieldValue"_s;
    const QString description = u"ValueDescr"_s;
    m_curr = readCodeList(u"select FieldValue,ValueDescr from P_FIELD_VAL_DEF "
                          "where FieldName='Curr' order by FieldValue "_s,
                          value, description);
    m_tcFlag = readCodeList(u"select FieldValue,ValueDescr from P_FIELD_VAL_DEF "
                            "where FieldName='TcFlag' order by FieldValue"_s,
                            value, description);
    m_sealPwdF = readCodeList(u"select FieldValue,ValueDescr from P_FIELD_VAL_DEF "
                              "where FieldName='SealPwdF' order by FieldValue"_s,
                              value, description);
    DisConnectLocalDb();
}

// The named fields of every row, one list per field. Counts are 16-bit, as
// hosts read them.
QList<QStringList> CSysCfgDb::readColumns(const QString &sql, const QStringList &fields) const
{
    DbRecordSet records;
    records.open(sql, *m_localDb);
    if (records.recordCount() > std::numeric_limits<qint16>::max())
        throw QuarryError(QuarryError::Overflow, u"CSysCfgDb.GetParameter()"_s,
                          u"溢出：查询得到"_s + QString::number(records.recordCount())
                              + u"条记录，超过 32767 条"_s);
    QList<QStringList> columns(fields.size());
    for (; !records.eof(); records.moveNext()) {
        for (qsizetype i = 0; i < fields.size(); ++i)
            columns[i].append(records.field(fields.at(i)));
    }
    return columns;
}

CSysCfgDb::CodeList CSysCfgDb::readCodeList(const QString &sql, const QString &idField,
                                            const QString &nameField) const
{
    QList<QStringList> columns = readColumns(sql, {idField, nameField});
    return {columns.at(0), columns.at(1)};
}

} // namespace quarry
