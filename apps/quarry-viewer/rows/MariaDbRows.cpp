#include "MariaDbRows.h"

#include <QDate>
#include <QDateTime>
#include <QSqlDatabase>
#include <QSqlDriver>

#include <mysql.h>

#include <charconv>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

// The type QSqlQuery gives a column's values.
QMetaType typeOf(const MYSQL_FIELD &field)
{
    const bool isUnsigned = field.flags & UNSIGNED_FLAG;
    switch (field.type) {
    case MYSQL_TYPE_TINY:
        return QMetaType(isUnsigned ? QMetaType::UChar : QMetaType::Char);
    case MYSQL_TYPE_SHORT:
        return QMetaType(isUnsigned ? QMetaType::UShort : QMetaType::Short);
    case MYSQL_TYPE_LONG:
    case MYSQL_TYPE_INT24:
        return QMetaType(isUnsigned ? QMetaType::UInt : QMetaType::Int);
    case MYSQL_TYPE_YEAR:
        return QMetaType(QMetaType::Int);
    case MYSQL_TYPE_BIT:
    case MYSQL_TYPE_LONGLONG:
        return QMetaType(isUnsigned ? QMetaType::ULongLong : QMetaType::LongLong);
    case MYSQL_TYPE_FLOAT:
    case MYSQL_TYPE_DOUBLE:
    case MYSQL_TYPE_DECIMAL:
    case MYSQL_TYPE_NEWDECIMAL:
        return QMetaType(QMetaType::Double);
    case MYSQL_TYPE_DATE:
        return QMetaType(QMetaType::QDate);
    case MYSQL_TYPE_DATETIME:
    case MYSQL_TYPE_TIMESTAMP:
        return QMetaType(QMetaType::QDateTime);
    case MYSQL_TYPE_STRING:
    case MYSQL_TYPE_VAR_STRING:
    case MYSQL_TYPE_BLOB:
    case MYSQL_TYPE_TINY_BLOB:
    case MYSQL_TYPE_MEDIUM_BLOB:
    case MYSQL_TYPE_LONG_BLOB:
    case MYSQL_TYPE_GEOMETRY:
        // 63: the binary character set.
        return QMetaType(field.charsetnr == 63 ? QMetaType::QByteArray : QMetaType::QString);
    default:
        // A time, which may lie beyond a day, and the rest.
        return QMetaType(QMetaType::QString);
    }
}

template<typename Number>
QVariant number(const char *text, unsigned long size)
{
    Number value{};
    std::from_chars(text, text + size, value);
    return QVariant::fromValue(value);
}

QVariant valueOf(QMetaType type, const char *text, unsigned long size)
{
    switch (type.id()) {
    case QMetaType::Char:
    case QMetaType::Short:
    case QMetaType::Int:
        return number<int>(text, size);
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::UInt:
        return number<uint>(text, size);
    case QMetaType::LongLong:
        return number<qlonglong>(text, size);
    case QMetaType::ULongLong:
        return number<qulonglong>(text, size);
    case QMetaType::Double: {
        double value = 0;
        // Not a number ("nan" and the like): no value, as QSqlQuery has it.
        if (std::from_chars(text, text + size, value).ec != std::errc())
            return {};
        return value;
    }
    case QMetaType::QDate:
        return QDate::fromString(QString::fromLatin1(text, qsizetype(size)), Qt::ISODate);
    case QMetaType::QDateTime:
        return QDateTime::fromString(QString::fromLatin1(text, qsizetype(size)), Qt::ISODate);
    case QMetaType::QByteArray:
        return QByteArray(text, qsizetype(size));
    default:
        return QString::fromUtf8(text, qsizetype(size));
    }
}

} // namespace

MariaDbRows::MariaDbRows(const QSqlDatabase &database, const QString &select)
{
    const QVariant handle = database.driver()->handle();
    // The driver names the type by its struct's tag.
    if (handle.isValid()
        && (qstrcmp(handle.typeName(), "st_mysql*") == 0
            || qstrcmp(handle.typeName(), "MYSQL*") == 0))
        m_connection = *static_cast<MYSQL *const *>(handle.constData());
    if (!m_connection) {
        m_error = QSqlError(u"连接未打开"_s, {}, QSqlError::ConnectionError);
        return;
    }
    const QByteArray sql = select.toUtf8();
    if (mysql_real_query(m_connection, sql.constData(), sql.size()) != 0) {
        fail();
        return;
    }
    m_result = mysql_use_result(m_connection);
    if (!m_result) {
        if (mysql_errno(m_connection) != 0)
            fail();
        return;
    }
    const unsigned int columns = mysql_num_fields(m_result);
    const MYSQL_FIELD *fields = mysql_fetch_fields(m_result);
    for (unsigned int c = 0; c < columns; ++c)
        m_types.append(typeOf(fields[c]));
}

MariaDbRows::~MariaDbRows()
{
    // Reads what the server still sends: a stopped statement ends at once.
    if (m_result)
        mysql_free_result(m_result);
}

bool MariaDbRows::next(QVariantList &row)
{
    if (!m_result || m_error.isValid())
        return false;
    const MYSQL_ROW values = mysql_fetch_row(m_result);
    if (!values) {
        if (mysql_errno(m_connection) != 0)
            fail();
        return false;
    }
    const unsigned long *sizes = mysql_fetch_lengths(m_result);
    row.reserve(m_types.size());
    for (qsizetype c = 0; c < m_types.size(); ++c)
        row.append(values[c] ? valueOf(m_types[c], values[c], sizes[c]) : QVariant(m_types[c]));
    return true;
}

void MariaDbRows::fail()
{
    m_error = QSqlError({}, QString::fromUtf8(mysql_error(m_connection)), QSqlError::StatementError,
                        QString::number(mysql_errno(m_connection)));
}

} // namespace quarry::viewer
