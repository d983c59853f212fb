#pragma once

#include <QSqlError>
#include <QVariantList>

class QSqlDatabase;
struct sqlite3;
struct sqlite3_stmt;

namespace quarry::viewer {

// The rows of one statement on an open SQLite connection, read straight
// from the library: the same values, of the same types, as QSqlQuery gives
// (a whole number as qlonglong, a real as double, text as QString, a blob
// as QByteArray, NULL as a null QString), without its bookkeeping per row.
// On the thread that owns the connection.
class SqliteRows
{
public:
    SqliteRows(const QSqlDatabase &database, const QString &select);
    ~SqliteRows();
    SqliteRows(const SqliteRows &) = delete;
    SqliteRows &operator=(const SqliteRows &) = delete;

    // Appends the next row's values to row; false at the end or on a fault.
    bool next(QVariantList &row);
    // The fault; invalid while there is none.
    QSqlError error() const { return m_error; }

private:
    void fail();

    sqlite3 *m_database = nullptr;
    sqlite3_stmt *m_statement = nullptr;
    int m_columns = 0;
    QSqlError m_error;
};

} // namespace quarry::viewer
