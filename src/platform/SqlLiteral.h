#pragma once

#include <quarry/quarry_export.h>

#include <QString>

namespace quarry {

// The station's SQL dialect, from seal.ini's BASEMODE: "SQLSERVER" and
// "MYSQL" without regard to case, "SYBASE" by its first six characters
// (SYBASE11, Sybase12.5); anything else is the embedded database (ACCESS).
enum class SqlDialect { Access, SqlServer, MySql, Sybase };
QUARRY_EXPORT SqlDialect sqlDialect(const QString &baseMode);

// Where a literal stands: compared as a value (=, IN), or as the pattern of
// a LIKE.
enum class LiteralUse { Value, LikePattern };

// Text from the host or the database (a code list's description, a branch
// code) written between single quotes as data, so that it compares equal to
// itself: the quote is doubled on every dialect; on MySQL, where a backslash
// escapes, the backslash is doubled, and doubled again in a LIKE pattern,
// which reads one more level of escapes; on SQL Server and Sybase a "[" in a
// LIKE pattern opens a character class and is written "[[]". The pattern's
// own wildcards "%" and "_" keep their meaning.
QUARRY_EXPORT QString literalText(const QString &text, SqlDialect dialect,
                                  LiteralUse use = LiteralUse::Value);
// The same, appended to out: the branch lists of a head office run to tens
// of thousands of codes.
QUARRY_EXPORT void appendLiteralText(QString &out, const QString &text, SqlDialect dialect,
                                     LiteralUse use = LiteralUse::Value);

} // namespace quarry
