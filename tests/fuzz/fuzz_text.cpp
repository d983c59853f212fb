// The operator's text on its way into SQL: ToLikePattern, the LIKE operand
// and the date and time checks, on arbitrary text.

#include "FuzzCheck.h"

#include "input/Conditions.h"
#include "input/PublicFunction.h"

#include <QDate>
#include <QRegularExpression>
#include <QTime>

#include <cstddef>
#include <cstdint>

using namespace Qt::StringLiterals;
using quarry::fuzz::require;

namespace {

bool onlyDateCharacters(const QString &text)
{
    static const QRegularExpression dateCharacters(u"\\A[0-9/ -]*\\z"_s);
    return dateCharacters.match(text).hasMatch();
}

bool isCalendarDate(const QString &text)
{
    static const QRegularExpression layout(u"\\A[0-9]{4}-[0-9]{2}-[0-9]{2}\\z"_s);
    return layout.match(text).hasMatch() && QDate::fromString(text, u"yyyy-MM-dd"_s).isValid();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));

    const QString pattern = quarry::ToLikePattern(text);
    require(!pattern.contains(u'\''));
    require(text.isEmpty() ? pattern == u"%"_s : pattern.size() <= text.size());
    for (QChar c : quarry::likeOperand(text))
        require(c != u'\'' && c != u'\\' && c != u'[' && c != u']');

    QString date = text;
    if (quarry::CheckDateText(date) == 1)
        require(onlyDateCharacters(text) && isCalendarDate(date));
    else
        require(date == text);
    if (const std::optional<QString> masked = quarry::maskedDate(text))
        require(onlyDateCharacters(text) && isCalendarDate(*masked));
    if (const std::optional<QString> time = quarry::maskedTime(text))
        require(QTime::fromString(*time, u"HH:mm:ss"_s).isValid() && time->size() == 8);
    return 0;
}
