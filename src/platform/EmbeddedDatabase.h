#pragma once

#include <QString>

class QSqlDatabase;
class QSqlError;

// What the embedded (SQLite) station database needs beyond Qt's driver.
namespace quarry::embedded {

// Adds to the open connection the functions of the other dialects that the
// log conditions use and SQLite lacks: concat(), with MySQL's meaning (the
// arguments as text, one after the other; NULL when any of them is NULL).
// Nothing for a connection that is not SQLite's.
void addDialectFunctions(const QSqlDatabase &db);

// Why the file at path could not be used, in the operator's words, with the
// database's own text kept for the administrator.
QString fileFault(const QString &path, const QSqlError &error);

} // namespace quarry::embedded
