#include "input/Conditions.h"

#include "input/MaskEdBox.h"
#include "input/PublicFunction.h"

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

bool isLiteralBreaker(QChar c)
{
    return c == u'\'' || c == u'\\' || c == u'[' || c == u']';
}

} // namespace

QString dropLiteralBreakers(QString text)
{
    text.removeIf(isLiteralBreaker);
    return text;
}

QString likeOperand(const QString &typed)
{
    return dropLiteralBreakers(ToLikePattern(typed));
}

QString yjkCondition(const QString &typed)
{
    return u" Where YJKNUMBER like '"_s + likeOperand(typed.trimmed()) + u"'"_s;
}

QString wdhCondition(const QString &typed)
{
    const QString p = likeOperand(typed);
    return u" where  ( WDH LIKE '"_s + p.toUpper() + u"' or  WDH LIKE '"_s + p.toLower() + u"')"_s;
}

QString accCondition(const QString &typed)
{
    return u" Where AccNo like '"_s + likeOperand(typed.trimmed()) + u"'"_s;
}

QString clerkCondition(const QString &typed, qint16 profileCode)
{
    const QString p = likeOperand(typed);
    QString condition = u" Where OpCode like  '"_s + p + u"'"_s;
    if (profileCode == 39)
        condition += u" or  OpName like '"_s + p + u"'"_s;
    return condition;
}

QString chequeSeriesCondition(const QString &typed)
{
    return u" Where ChequeSeriesNo like  '"_s + likeOperand(typed.trimmed()) + u"%'"_s;
}

DateRange checkDateRange(const QString &startBox, const QString &endBox)
{
    DateRange range;
    range.start = startBox == MaskEdBox::EmptyDate ? u"1980-01-01"_s : startBox;
    range.end = endBox == MaskEdBox::EmptyDate ? u"3000-01-01"_s : endBox;
    if (CheckDateText(range.start) == 0)
        range.fault = DateRange::Fault::Start;
    else if (CheckDateText(range.end) == 0)
        range.fault = DateRange::Fault::End;
    // Both are yyyy-mm-dd now, so text order is date order.
    else if (range.end < range.start)
        range.fault = DateRange::Fault::EndBeforeStart;
    return range;
}

QString dateCondition(const DateRange &range)
{
    return u" Where OpDate Between '"_s + range.start + u"' And '"_s + range.end + u"'"_s;
}

} // namespace quarry
