#include "input/SqlTextValidator.h"

#include <algorithm>

namespace quarry {

SqlTextValidator::SqlTextValidator(Quotes quotes, QObject *parent)
    : QValidator(parent)
    , m_quotes(quotes)
{
}

QValidator::State SqlTextValidator::validate(QString &input, int &) const
{
    const bool refused = std::any_of(input.cbegin(), input.cend(), [this](QChar c) {
        return c == u'\\' || c == u'[' || c == u']' || (c == u'\'' && m_quotes == Quotes::Refused);
    });
    return refused ? Invalid : Acceptable;
}

} // namespace quarry
