#pragma once

#include <QHash>
#include <QList>
#include <QString>

namespace quarry::service {

// The bus interfaces as org.quarry.Quarry1.xml declares them: what the
// service answers to introspection, and the arguments it checks calls
// against.
class ServiceContract
{
public:
    struct Argument
    {
        QString type; // D-Bus signature, "as"
        QString name;
    };
    struct Method
    {
        QList<Argument> in;
        QList<Argument> out;

        QString inSignature() const;
        // "(s parent_window, i lClerkLen, a{sv} options)"
        QString inDescription() const;
    };

    // Reads the file of the program's resources.
    ServiceContract();

    // An <interface> element, as introspection hands it out.
    QString interfaceXml(const QString &interface) const { return m_xml.value(interface); }
    const Method *method(const QString &interface, const QString &name) const;

private:
    QHash<QString, QString> m_xml;
    QHash<QString, QHash<QString, Method>> m_methods;
};

} // namespace quarry::service
