#include "NumberFormat.h"

#include <QRegularExpression>

#include <cmath>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

bool isNumberFormat(const QString &pattern)
{
    static const QRegularExpression zeros(u"^0+(\\.0+)?$"_s);
    return zeros.match(pattern).hasMatch();
}

QString formatNumber(const QVariant &value, const QString &pattern)
{
    const QString text = value.toString();
    bool number = false;
    const double amount = text.trimmed().toDouble(&number);
    if (!number)
        return text;
    const qsizetype point = pattern.indexOf(u'.');
    const int decimals = point < 0 ? 0 : int(pattern.size() - point - 1);
    const qsizetype digits = point < 0 ? pattern.size() : point;
    QString written = QString::number(std::abs(amount), 'f', decimals);
    const qsizetype whole = written.indexOf(u'.') < 0 ? written.size() : written.indexOf(u'.');
    if (whole < digits)
        written.prepend(QString(digits - whole, u'0'));
    // -0.001 by "0.00" is 0.00, not -0.00.
    const bool negative = amount < 0 && written.contains(QRegularExpression(u"[1-9]"_s));
    return negative ? u'-' + written : written;
}

} // namespace quarry::viewer
