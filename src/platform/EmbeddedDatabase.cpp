#include "platform/EmbeddedDatabase.h"

#include <QDir>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>

#include <sqlite3.h>

#include <string>

using namespace Qt::StringLiterals;

namespace quarry::embedded {

namespace {

void concat(sqlite3_context *context, int argc, sqlite3_value **argv)
{
    if (argc == 0) {
        sqlite3_result_error(context, "concat() takes at least one argument", -1);
        return;
    }
    std::string text;
    for (int i = 0; i < argc; ++i) {
        if (sqlite3_value_type(argv[i]) == SQLITE_NULL) {
            sqlite3_result_null(context);
            return;
        }
        // The text first: sqlite3_value_bytes then measures that text.
        const auto *bytes = reinterpret_cast<const char *>(sqlite3_value_text(argv[i]));
        text.append(bytes, static_cast<size_t>(sqlite3_value_bytes(argv[i])));
    }
    sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

QString reason(const QSqlError &error)
{
    switch (error.nativeErrorCode().toInt()) {
    case SQLITE_NOTADB:
        return u"文件不是数据库，或已损坏"_s;
    case SQLITE_CORRUPT:
        return u"数据库已损坏"_s;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return u"数据库被其他程序锁定"_s;
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return u"无法打开文件（检查文件权限）"_s;
    case SQLITE_IOERR:
        return u"读文件出错"_s;
    default:
        return u"无法使用"_s;
    }
}

} // namespace

void addDialectFunctions(const QSqlDatabase &db)
{
    const QVariant handle = db.driver()->handle();
    if (qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return;
    if (auto *connection = *static_cast<sqlite3 *const *>(handle.constData()))
        sqlite3_create_function_v2(connection, "concat", -1, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                                   nullptr, &concat, nullptr, nullptr, nullptr);
}

QString fileFault(const QString &path, const QSqlError &error)
{
    QString text = u"数据库文件 %1 %2"_s.arg(QDir::toNativeSeparators(path), reason(error));
    const QString own = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    if (!own.isEmpty())
        text += u"（"_s + own + u"）"_s;
    return text;
}

} // namespace quarry::embedded
