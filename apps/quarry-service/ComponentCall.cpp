#include "ComponentCall.h"

#include "JsonInteger.h"

#include <quarry/CQuarry.h>

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QJsonArray>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quarry::service {

namespace {

QMetaMethod componentMember(const QString &name, qsizetype parameterCount)
{
    const QMetaObject &meta = CQuarry::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.name() == name.toLatin1() && method.parameterCount() == parameterCount)
            return method;
    }
    return {};
}

// Variants and code lists arrive wrapped; everything else, the string lists
// among them, is already of its parameter's type, the call's signature
// having been checked.
QVariant unwrapped(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<QDBusVariant>())
        return value.value<QDBusVariant>().variant();
    if (value.metaType() == QMetaType::fromType<QDBusArgument>())
        return QVariant::fromValue(qdbus_cast<QList<qint16>>(value));
    return value;
}

// A code array and its descriptions ("arrTmpIdA", "arrTmpDesA") are one
// list: as many codes as descriptions.
QString unpairedList(const QList<ServiceContract::Argument> &arguments, const QVariantList &values)
{
    const auto indexOf = [&](const QString &name) {
        return std::find_if(arguments.cbegin(), arguments.cend(),
                            [&](const ServiceContract::Argument &a) { return a.name == name; })
            - arguments.cbegin();
    };
    for (const ServiceContract::Argument &argument : arguments) {
        if (!argument.name.startsWith(u"arrTmpId"_s))
            continue;
        const QString names = u"arrTmpDes"_s + argument.name.mid(8);
        const qsizetype codeCount = values[indexOf(argument.name)].value<QList<qint16>>().size();
        const qsizetype nameCount = values[indexOf(names)].toStringList().size();
        if (codeCount != nameCount)
            return u"%1 has %2 codes but %3 has %4 descriptions"_s.arg(argument.name)
                .arg(codeCount)
                .arg(names)
                .arg(nameCount);
    }
    return {};
}

QJsonValue jsonOf(const QVariant &value, QMetaType type)
{
    if (type == QMetaType::fromType<QList<qint16>>()) {
        QJsonArray codes;
        for (const qint16 code : value.value<QList<qint16>>())
            codes.append(code);
        return codes;
    }
    // showComplexEx's last three, which CQuarry does not use, go as null.
    if (type == QMetaType::fromType<QVariant>())
        return {};
    return QJsonValue::fromVariant(value);
}

template<typename Item, typename Read>
std::optional<QVariant> listOf(const QJsonValue &value, Read read)
{
    if (!value.isArray())
        return std::nullopt;
    QList<Item> items;
    for (const QJsonValue &entry : value.toArray()) {
        const std::optional<Item> item = read(entry);
        if (!item)
            return std::nullopt;
        items.append(*item);
    }
    return QVariant::fromValue(items);
}

std::optional<QString> stringOf(const QJsonValue &value)
{
    if (!value.isString())
        return std::nullopt;
    return value.toString();
}

std::optional<QVariant> valueOf(const QJsonValue &value, QMetaType type)
{
    if (type == QMetaType::fromType<qint32>())
        return jsonInteger<qint32>(value);
    if (type == QMetaType::fromType<QList<qint16>>())
        return listOf<qint16>(value, &jsonInteger<qint16>);
    if (type == QMetaType::fromType<QString>())
        return stringOf(value);
    if (type == QMetaType::fromType<QStringList>())
        return listOf<QString>(value, &stringOf);
    if (type == QMetaType::fromType<bool>() && value.isBool())
        return value.toBool();
    if (type == QMetaType::fromType<QVariant>() && value.isNull())
        return QVariant();
    return std::nullopt;
}

} // namespace

ComponentCall::ComponentCall(QMetaMethod method, QVariantList values)
    : m_method(method)
    , m_values(std::move(values))
{
}

std::optional<ComponentCall> ComponentCall::make(const QString &member,
                                                 const QList<ServiceContract::Argument> &arguments,
                                                 QVariantList values, QString *error)
{
    const QMetaMethod method = componentMember(member, values.size());
    if (!method.isValid()) {
        *error = u"CQuarry has no member %1 of %2 arguments"_s.arg(member).arg(values.size());
        return std::nullopt;
    }
    for (QVariant &value : values)
        value = unwrapped(value);
    *error = unpairedList(arguments, values);
    if (!error->isEmpty())
        return std::nullopt;
    return ComponentCall(method, std::move(values));
}

QJsonObject ComponentCall::toJson() const
{
    QJsonArray arguments;
    for (int i = 0; i < m_values.size(); ++i)
        arguments.append(jsonOf(m_values[i], m_method.parameterMetaType(i)));
    return {{"member"_L1, QString::fromLatin1(m_method.name())}, {"arguments"_L1, arguments}};
}

std::optional<ComponentCall> ComponentCall::fromJson(const QJsonObject &object, QString *error)
{
    const QString member = object["member"_L1].toString();
    const QJsonArray arguments = object["arguments"_L1].toArray();
    const QMetaMethod method = componentMember(member, arguments.size());
    if (!method.isValid()) {
        *error
            = u"CQuarry has no member \"%1\" of %2 arguments"_s.arg(member).arg(arguments.size());
        return std::nullopt;
    }
    QVariantList values;
    for (int i = 0; i < arguments.size(); ++i) {
        const std::optional<QVariant> value = valueOf(arguments[i], method.parameterMetaType(i));
        if (!value) {
            *error = u"%1: argument %2 is not a %3"_s.arg(member).arg(i + 1).arg(
                QLatin1StringView(method.parameterMetaType(i).name()));
            return std::nullopt;
        }
        values.append(*value);
    }
    return ComponentCall(method, std::move(values));
}

void ComponentCall::invoke(CQuarry &quarry) const
{
    // More arguments than QMetaMethod::invoke takes, so through the
    // meta-call itself: an argument's address, a QVariant's own where the
    // parameter is a QVariant.
    QVariantList values = m_values;
    QList<void *> argv{nullptr};
    for (int i = 0; i < values.size(); ++i) {
        const bool isVariant = m_method.parameterMetaType(i) == QMetaType::fromType<QVariant>();
        argv.append(isVariant ? &values[i] : values[i].data());
    }
    QMetaObject::metacall(&quarry, QMetaObject::InvokeMetaMethod, m_method.methodIndex(),
                          argv.data());
}

} // namespace quarry::service
