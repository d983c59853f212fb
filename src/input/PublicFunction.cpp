#include "input/PublicFunction.h"

#include <QDate>
#include <QRegularExpression>
#include <QTime>

using namespace Qt::StringLiterals;

namespace quarry {

QString ToLikePattern(QString text)
{
    if (text.isEmpty())
        return u"%"_s;
    text.remove(u'\'');
    const qsizetype star = text.indexOf(u'*');
    if (star >= 0)
        text.replace(star, 1, u"%"_s);
    text.replace(u'?', u'_');
    return text;
}

qint16 CheckDateText(QString &text)
{
    // The same separator twice, so 2009-01/05 is refused. Anchored to the
    // whole text: "$" would also match before a final line break.
    static const QRegularExpression layout(
        QRegularExpression::anchoredPattern(u"([0-9]{3,4})([-/])([0-9]{1,2})\\2([0-9]{1,2})"_s));
    const QRegularExpressionMatch parts = layout.match(text);
    if (!parts.hasMatch())
        return 0;
    const QDate date(parts.captured(1).toInt(), parts.captured(3).toInt(),
                     parts.captured(4).toInt());
    if (!date.isValid() || date.year() < 100)
        return 0;
    text = date.toString(u"yyyy-MM-dd"_s);
    return 1;
}

std::optional<QString> maskedDate(const QString &masked)
{
    QString text = masked;
    text.remove(u' ');
    if (CheckDateText(text) == 0)
        return std::nullopt;
    return text;
}

std::optional<QString> maskedTime(const QString &masked)
{
    static const QRegularExpression layout(
        QRegularExpression::anchoredPattern(u"([0-9]{1,2}):([0-9]{1,2}):([0-9]{1,2})"_s));
    QString text = masked;
    text.remove(u' ');
    const QRegularExpressionMatch parts = layout.match(text);
    if (!parts.hasMatch())
        return std::nullopt;
    const QTime time(parts.captured(1).toInt(), parts.captured(2).toInt(),
                     parts.captured(3).toInt());
    if (!time.isValid())
        return std::nullopt;
    return time.toString(u"HH:mm:ss"_s);
}

} // namespace quarry
