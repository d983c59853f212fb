#include "platform/SqlLiteral.h"

using namespace Qt::StringLiterals;

namespace quarry {

SqlDialect sqlDialect(const QString &baseMode)
{
    if (baseMode.compare("SQLSERVER"_L1, Qt::CaseInsensitive) == 0)
        return SqlDialect::SqlServer;
    if (baseMode.compare("MYSQL"_L1, Qt::CaseInsensitive) == 0)
        return SqlDialect::MySql;
    if (baseMode.startsWith("SYBASE"_L1, Qt::CaseInsensitive))
        return SqlDialect::Sybase;
    return SqlDialect::Access;
}

void appendLiteralText(QString &out, const QString &text, SqlDialect dialect, LiteralUse use)
{
    const bool like = use == LiteralUse::LikePattern;
    const bool bracketClasses
        = like && (dialect == SqlDialect::SqlServer || dialect == SqlDialect::Sybase);
    const qsizetype backslashes = dialect != SqlDialect::MySql ? 1 : like ? 4 : 2;
    out.reserve(out.size() + text.size());
    for (QChar c : text) {
        if (c == u'\'')
            out += "''"_L1;
        else if (c == u'\\')
            out += QString(backslashes, c);
        else if (c == u'[' && bracketClasses)
            out += "[[]"_L1;
        else
            out += c;
    }
}

QString literalText(const QString &text, SqlDialect dialect, LiteralUse use)
{
    QString out;
    appendLiteralText(out, text, dialect, use);
    return out;
}

} // namespace quarry
