#include "ComponentCall.h"

#include <quarry/CQuarry.h>

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>

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

// Arrays and variants arrive wrapped; everything else is already of its
// parameter's type, the call's signature having been checked.
QVariant unwrapped(const QVariant &value, QMetaType type)
{
    if (value.metaType() == QMetaType::fromType<QDBusVariant>())
        return value.value<QDBusVariant>().variant();
    if (value.metaType() == QMetaType::fromType<QDBusArgument>()
        && type == QMetaType::fromType<QList<qint16>>())
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
    for (int i = 0; i < values.size(); ++i)
        values[i] = unwrapped(values[i], method.parameterMetaType(i));
    *error = unpairedList(arguments, values);
    if (!error->isEmpty())
        return std::nullopt;
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
