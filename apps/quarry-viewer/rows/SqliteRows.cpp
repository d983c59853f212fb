#include "SqliteRows.h"

#include <QSqlDatabase>
#include <QSqlDriver>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

SqliteRows::SqliteRows(const QSqlDatabase &database, const QString &select)
{
    const QVariant handle = database.driver()->handle();
    if (handle.isValid() && qstrcmp(handle.typeName(), "sqlite3*") == 0)
        m_database = *static_cast<sqlite3 *const *>(handle.constData());
    if (!m_database) {
        m_error = QSqlError(u"连接未打开"_s, {}, QSqlError::ConnectionError);
        return;
    }
    const QByteArray sql = select.toUtf8();
    if (sqlite3_prepare_v2(m_database, sql.constData(), int(sql.size()), &m_statement, nullptr)
        != SQLITE_OK) {
        fail();
        return;
    }
    m_columns = sqlite3_column_count(m_statement);
}

SqliteRows::~SqliteRows()
{
    sqlite3_finalize(m_statement);
}

bool SqliteRows::next(QVariantList &row)
{
    if (!m_statement || m_error.isValid())
        return false;
    const int step = sqlite3_step(m_statement);
    if (step != SQLITE_ROW) {
        if (step != SQLITE_DONE)
            fail();
        return false;
    }
    row.reserve(m_columns);
    for (int c = 0; c < m_columns; ++c) {
        switch (sqlite3_column_type(m_statement, c)) {
        case SQLITE_INTEGER:
            row.append(qlonglong(sqlite3_column_int64(m_statement, c)));
            break;
        case SQLITE_FLOAT:
            row.append(sqlite3_column_double(m_statement, c));
            break;
        case SQLITE_NULL:
            row.append(QVariant(QMetaType::fromType<QString>()));
            break;
        case SQLITE_BLOB:
            row.append(QByteArray(static_cast<const char *>(sqlite3_column_blob(m_statement, c)),
                                  sqlite3_column_bytes(m_statement, c)));
            break;
        default:
            // The text first, then its length, as the library asks.
            const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(m_statement, c));
            row.append(QString::fromUtf8(text, sqlite3_column_bytes(m_statement, c)));
            break;
        }
    }
    return true;
}

void SqliteRows::fail()
{
    m_error
        = QSqlError({}, QString::fromUtf8(sqlite3_errmsg(m_database)), QSqlError::StatementError,
                    QString::number(sqlite3_extended_errcode(m_database)));
}

} // namespace quarry::viewer
