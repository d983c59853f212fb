#include "platform/DbRecordSet.h"

#include "platform/DbConnection.h"

#include <quarry/QuarryError.h>

#include <QDateTime>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QSqlResult>

#include <sql.h>
#include <sqlext.h>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

// The source of the errors of running a query and of reading its rows.
const QString OpenSource = u"DbRecordSet.Open()"_s;

[[noreturn]] void raise(const QString &source, const QString &text)
{
    throw QuarryError(QuarryError::DataError, source, text);
}

// A value as the record set hands it out: the text the data classes compare
// and cut, the same whichever driver produced it.
QString textOf(const QVariant &value)
{
    if (value.isNull())
        return {};
    switch (value.typeId()) {
    case QMetaType::QDate:
        return value.toDate().toString(u"yyyy-MM-dd"_s);
    case QMetaType::QTime:
        return value.toTime().toString(u"hh:mm:ss"_s);
    case QMetaType::QDateTime:
        return value.toDateTime().toString(u"yyyy-MM-dd hh:mm:ss"_s);
    case QMetaType::Bool:
        return value.toBool() ? u"1"_s : u"0"_s;
    default:
        return value.toString();
    }
}

// What the ODBC driver reads the bound values from when the query runs.
struct OdbcParameters
{
    QStringList values;
    QList<SQLLEN> lengths;
};

// Qt's ODBC driver (6.4) binds text together with its terminating NUL, so a
// bound value never equals the stored text. The values are bound as text
// directly on the driver's prepared statement instead; the driver keeps
// bindings it did not make itself. Returns the error text, empty when bound.
QString bindOdbcParameters(const QSqlQuery &query, const QVariantList &params,
                           OdbcParameters &bound)
{
    static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
    if (params.isEmpty())
        return {};
    const QVariant handle = query.result()->handle();
    if (handle.metaType() != QMetaType::fromType<SQLHANDLE>())
        return u"The ODBC driver gave no statement to bind parameters to."_s;
    const auto statement = *static_cast<const SQLHANDLE *>(handle.constData());
    bound.lengths.resize(params.size()); // no reallocation once bound
    for (qsizetype i = 0; i < params.size(); ++i) {
        bound.values.append(params.at(i).toString());
        const QString &text = bound.values.last();
        const auto bytes = SQLLEN(text.size() * sizeof(char16_t));
        bound.lengths[i] = params.at(i).isNull() ? SQL_NULL_DATA : bytes;
        const SQLRETURN result
            = SQLBindParameter(statement, SQLUSMALLINT(i + 1), SQL_PARAM_INPUT, SQL_C_WCHAR,
                               SQL_WVARCHAR, SQLULEN(qMax(text.size(), qsizetype(1))), 0,
                               const_cast<char16_t *>(
                                   reinterpret_cast<const char16_t *>(text.utf16())),
                               bytes, &bound.lengths[i]);
        if (!SQL_SUCCEEDED(result))
            return u"The ODBC driver refused parameter %1."_s.arg(i + 1);
    }
    return {};
}

// Prepares and runs a read-only query with its parameters bound; the ODBC
// driver reads them from bound, which must outlive the query.
QSqlQuery runQuery(const QString &sql, const DbConnection &connection, const QVariantList &params,
                   OdbcParameters &bound)
{
    if (!connection.isOpen())
        raise(OpenSource, u"The database connection is not open."_s);

    QSqlQuery query(connection.database());
    query.setForwardOnly(true);
    // Exact decimals stay text instead of going through double.
    query.setNumericalPrecisionPolicy(QSql::HighPrecision);
    if (!query.prepare(sql))
        raise(OpenSource, query.lastError().text());
    if (connection.database().driverName() == "QODBC"_L1) {
        const QString error = bindOdbcParameters(query, params, bound);
        if (!error.isEmpty())
            raise(OpenSource, error);
    } else {
        for (const QVariant &param : params)
            query.addBindValue(param);
    }
    if (!query.exec())
        raise(OpenSource, query.lastError().text());
    return query;
}

} // namespace

void DbRecordSet::open(const QString &sql, const DbConnection &connection,
                       const QVariantList &params)
{
    close();
    OdbcParameters odbcParameters;
    QSqlQuery query = runQuery(sql, connection, params, odbcParameters);

    const QSqlRecord record = query.record();
    m_columnCount = int(record.count());
    for (int i = m_columnCount - 1; i >= 0; --i) // the first of equal names wins
        m_columns.insert(record.fieldName(i).toLower(), i);
    while (query.next()) {
        for (int i = 0; i < m_columnCount; ++i)
            m_values.append(textOf(query.value(i)));
    }
    if (query.lastError().isValid()) {
        const QString text = query.lastError().text();
        close();
        raise(OpenSource, text);
    }
}

void DbRecordSet::close()
{
    m_columns.clear();
    m_values.clear();
    m_columnCount = 0;
    m_row = 0;
}

QString DbRecordSet::field(const QString &name) const
{
    static const QString source = u"DbRecordSet.Field()"_s;
    const auto column = m_columns.constFind(name.toLower());
    if (column == m_columns.cend())
        raise(source, u"No field named \"%1\" in the record set."_s.arg(name));
    if (eof())
        raise(source, u"No current record: the record set is at its end."_s);
    return m_values.at(qsizetype(m_row) * m_columnCount + *column);
}

void DbRecordSet::moveNext()
{
    if (!eof())
        ++m_row;
}

struct DbRowReader::Running
{
    Running(const QString &sql, const DbConnection &connection, const QVariantList &params)
        : query(runQuery(sql, connection, params, odbcParameters))
    {
    }

    OdbcParameters odbcParameters; // first: made before the query, gone after it
    QSqlQuery query;
};

DbRowReader::DbRowReader(const QString &sql, const DbConnection &connection,
                         const QVariantList &params)
    : m_running(std::make_unique<Running>(sql, connection, params))
{
}

DbRowReader::~DbRowReader() = default;

bool DbRowReader::next()
{
    if (m_running->query.next())
        return true;
    if (m_running->query.lastError().isValid())
        raise(OpenSource, m_running->query.lastError().text());
    return false;
}

QString DbRowReader::field(int column) const
{
    return textOf(m_running->query.value(column));
}

} // namespace quarry
