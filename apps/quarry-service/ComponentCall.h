#pragma once

#include "ServiceContract.h"

#include <QJsonObject>
#include <QMetaMethod>
#include <QVariantList>

#include <optional>

namespace quarry {

class CQuarry;

namespace service {

// A CQuarry operation with its arguments, as a bus call asks for it: the
// member of the same name, its arguments converted from their D-Bus forms.
// It travels to the process that shows its dialog as a JSON object,
//   {"member": NAME, "arguments": [...]}
// each argument in the JSON form of its parameter's type (a code array as
// an array of numbers).
class ComponentCall
{
public:
    // From a call's arguments after parent_window and before options, which
    // match `arguments` in type; nullopt, with *error saying why, when
    // CQuarry has no such member or they do not make sense together.
    static std::optional<ComponentCall> make(const QString &member,
                                             const QList<ServiceContract::Argument> &arguments,
                                             QVariantList values, QString *error);

    QJsonObject toJson() const;
    // nullopt, with *error saying why, unless `object` names a member and
    // holds exactly its arguments, each of its parameter's type.
    static std::optional<ComponentCall> fromJson(const QJsonObject &object, QString *error);

    // Shows the operation's dialog; throws QuarryError.
    void invoke(CQuarry &quarry) const;

private:
    ComponentCall(QMetaMethod method, QVariantList values);

    QMetaMethod m_method;
    QVariantList m_values;
};

} // namespace service
} // namespace quarry
