#include "DialogAnswer.h"

#include "JsonInteger.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace quarry::service {

namespace {

using Outcome = DialogAnswer::Outcome;

// In the order of Outcome.
struct OutcomeForm
{
    QLatin1StringView name;
    QJsonObject::size_type members; // "outcome" among them, optional ones not
    uint response;                  // the Response signal's
};

constexpr std::array<OutcomeForm, 4> Forms{{
    {"condition"_L1, 2, 0},
    {"cancelled"_L1, 1, 1},
    {"nothing"_L1, 1, 1},
    {"failed"_L1, 4, 2},
}};

// What a cancelled dialog handed back all the same, under a name of its own
// so that no host takes it for an accepted condition.
constexpr auto StoredCondition = "stored_condition"_L1;

const OutcomeForm &formOf(Outcome outcome)
{
    return Forms[std::size_t(outcome)];
}

} // namespace

DialogAnswer DialogAnswer::failed(qint32 number, const QString &source, const QString &description)
{
    DialogAnswer answer;
    answer.outcome = Outcome::Failed;
    answer.errorNumber = number;
    answer.errorSource = source;
    answer.errorDescription = description;
    return answer;
}

QByteArray DialogAnswer::toJson() const
{
    QJsonObject object{{"outcome"_L1, formOf(outcome).name}};
    if (outcome == Outcome::Condition)
        object.insert("condition"_L1, condition);
    if (outcome == Outcome::Cancelled && !condition.isEmpty())
        object.insert(StoredCondition, condition);
    if (outcome == Outcome::Failed) {
        object.insert("error_number"_L1, errorNumber);
        object.insert("error_source"_L1, errorSource);
        object.insert("error_description"_L1, errorDescription);
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<DialogAnswer> DialogAnswer::fromJson(const QByteArray &text)
{
    // Text that is no JSON object gives an empty one, which names no outcome.
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    const auto form = std::find_if(Forms.cbegin(), Forms.cend(), [&](const OutcomeForm &f) {
        return object["outcome"_L1] == f.name;
    });
    if (form == Forms.cend())
        return std::nullopt;
    DialogAnswer answer;
    answer.outcome = Outcome(form - Forms.cbegin());
    const bool stored = answer.outcome == Outcome::Cancelled && object.contains(StoredCondition);
    if (object.size() != form->members + (stored ? 1 : 0))
        return std::nullopt;

    if (stored) {
        answer.condition = object[StoredCondition].toString();
        if (answer.condition.isEmpty())
            return std::nullopt;
    } else if (answer.outcome == Outcome::Condition) {
        answer.condition = object["condition"_L1].toString();
        if (answer.condition.isEmpty())
            return std::nullopt;
    } else if (answer.outcome == Outcome::Failed) {
        const std::optional<qint32> number = jsonInteger<qint32>(object["error_number"_L1]);
        const QJsonValue source = object["error_source"_L1];
        const QJsonValue description = object["error_description"_L1];
        if (!number || !source.isString() || !description.isString())
            return std::nullopt;
        answer = failed(*number, source.toString(), description.toString());
    }
    return answer;
}

uint DialogAnswer::response() const
{
    return formOf(outcome).response;
}

QVariantMap DialogAnswer::results() const
{
    if (outcome == Outcome::Condition)
        return {{u"condition"_s, condition}};
    if (outcome == Outcome::Cancelled && !condition.isEmpty())
        return {{StoredCondition, condition}};
    if (outcome == Outcome::Failed)
        return {{u"error_number"_s, errorNumber},
                {u"error_source"_s, errorSource},
                {u"error_description"_s, errorDescription}};
    return {};
}

} // namespace quarry::service
