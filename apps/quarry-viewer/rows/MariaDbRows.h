#pragma once

#include <QList>
#include <QMetaType>
#include <QSqlError>
#include <QVariantList>

class QSqlDatabase;
struct st_mysql;
struct st_mysql_res;

namespace quarry::viewer {

// The rows of one statement on an open MySQL or MariaDB connection, taken
// from the server as they are read (the driver of QSqlQuery fetches them
// all into the client's memory first), as the same values of the same
// types as QSqlQuery gives them. On the thread that owns the connection,
// which serves nothing else until this is gone.
class MariaDbRows
{
public:
    MariaDbRows(const QSqlDatabase &database, const QString &select);
    ~MariaDbRows();
    MariaDbRows(const MariaDbRows &) = delete;
    MariaDbRows &operator=(const MariaDbRows &) = delete;

    // Appends the next row's values to row; false at the end or on a fault.
    bool next(QVariantList &row);
    // The fault; invalid while there is none.
    QSqlError error() const { return m_error; }

private:
    void fail();

    st_mysql *m_connection = nullptr;
    st_mysql_res *m_result = nullptr;
    // The type of each column's values.
    QList<QMetaType> m_types;
    QSqlError m_error;
};

} // namespace quarry::viewer
