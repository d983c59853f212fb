#include "logdialogs/LogClause.h"

#include "input/Conditions.h"

using namespace Qt::StringLiterals;

namespace quarry {

QString quotable(const QString &value)
{
    return dropLiteralBreakers(value);
}

QString orAny(const QString &value)
{
    return value.isEmpty() ? u"%"_s : value;
}

ChequeRange chequeRange(const QString &beginBox, const QString &endBox, qint32 length, QChar high)
{
    const auto orDefault = [length](const QString &typed, QChar fill) {
        return typed.trimmed().isEmpty() ? QString(qMax(length, 0), fill) : typed;
    };
    return {orDefault(beginBox, u'0'), orDefault(endBox, high)};
}

QString branchLikePart(const QString &pattern)
{
    return u"( wdh like '"_s + quotable(pattern) + u"')"_s;
}

QString branchListPart(const QString &quotedCodes)
{
    return u"( wdh in ("_s + quotedCodes + u"))"_s;
}

QString branchBothCasesPart(const QString &pattern)
{
    const QString p = quotable(pattern);
    return u"( wdh like '"_s + p.toUpper() + u"' or wdh like '"_s + p.toLower() + u"')"_s;
}

} // namespace quarry
