#include "logdialogs/CodeList.h"

#include "support/NumberText.h"

#include <quarry/QuarryError.h>

using namespace Qt::StringLiterals;

namespace quarry {

qsizetype CodeList::used(qint32 count) const
{
    if (count > ids.size() || count > names.size()) {
        throw QuarryError(QuarryError::SubscriptOutOfRange, u"Quarry"_s,
                          u"下标越界：代码表有 %1 个代码、%2 个说明，使用 %3 个"_s.arg(ids.size())
                              .arg(names.size())
                              .arg(count));
    }
    return qMax(count, 0);
}

QString CodeList::name(qsizetype index) const
{
    if (index < 0 || index >= names.size()) {
        throw QuarryError(
            QuarryError::SubscriptOutOfRange, u"Quarry"_s,
            u"下标越界：代码表有 %1 个说明，没有第 %2 个"_s.arg(names.size()).arg(index + 1));
    }
    return names[index];
}

QString CodeList::legend(qint32 count) const
{
    QString text;
    for (qsizetype i = 0; i < used(count); ++i)
        text += QString::number(ids[i]) + u": "_s + names[i] + u"  "_s;
    return text;
}

std::optional<QString> CodeList::describe(const QString &text, qint32 count) const
{
    const std::optional<double> code = leadingNumber(text);
    std::optional<QString> found;
    for (qsizetype i = 0; i < used(count); ++i) {
        if (code && double(ids[i]) == *code)
            found = names[i];
    }
    return found;
}

} // namespace quarry
