#include "support/NumberText.h"

#include <QRegularExpression>

#include <cmath>

using namespace Qt::StringLiterals;

namespace quarry {

std::optional<double> leadingNumber(const QString &text)
{
    static const QRegularExpression number(u"^[+-]?(\\d+\\.?\\d*|\\.\\d+)([eEdD][+-]?\\d+)?"_s);
    static const QRegularExpression blanks(u"[ \\t\\r\\n]"_s);
    QString compact = text;
    compact.remove(blanks);
    const QRegularExpressionMatch match = number.match(compact);
    if (!match.hasMatch())
        return 0.0;
    QString found = match.captured();
    found.replace(QChar(u'd'), QChar(u'e'), Qt::CaseInsensitive);
    const double value = found.toDouble();
    if (!std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<double> strictNumber(const QString &text)
{
    static const QRegularExpression number(u"^[+-]?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d+)?$"_s);
    const QString trimmed = text.trimmed();
    if (!number.match(trimmed).hasMatch())
        return std::nullopt;
    return trimmed.toDouble();
}

} // namespace quarry
