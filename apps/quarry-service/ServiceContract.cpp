#include "ServiceContract.h"

#include <QFile>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace quarry::service {

QString ServiceContract::Method::inSignature() const
{
    QString signature;
    for (const Argument &argument : in)
        signature += argument.type;
    return signature;
}

QString ServiceContract::Method::inDescription() const
{
    QStringList arguments;
    for (const Argument &argument : in)
        arguments.append(argument.type + u' ' + argument.name);
    return u'(' + arguments.join(u", "_s) + u')';
}

ServiceContract::ServiceContract()
{
    QFile file(u":/org.quarry.Quarry1.xml"_s);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The bus interface description is missing from the program");
    const QString text = QString::fromUtf8(file.readAll());

    QXmlStreamReader xml(text);
    QString interface;
    qint64 interfaceStart = 0;
    Method *method = nullptr;
    while (!xml.atEnd()) {
        xml.readNext();
        const auto name = xml.name();
        const QXmlStreamAttributes attributes = xml.attributes();
        if (xml.isStartElement() && name == "interface"_L1) {
            interface = attributes.value("name"_L1).toString();
            // The reader is past the element's "<" by now.
            interfaceStart = text.lastIndexOf(u"<interface"_s, xml.characterOffset());
        } else if (xml.isEndElement() && name == "interface"_L1) {
            m_xml.insert(interface,
                         text.mid(interfaceStart, xml.characterOffset() - interfaceStart) + u'\n');
        } else if (xml.isStartElement() && name == "method"_L1) {
            method = &m_methods[interface][attributes.value("name"_L1).toString()];
        } else if (xml.isEndElement() && name == "method"_L1) {
            method = nullptr;
        } else if (xml.isStartElement() && name == "arg"_L1 && method) {
            const Argument argument{attributes.value("type"_L1).toString(),
                                    attributes.value("name"_L1).toString()};
            if (attributes.value("direction"_L1) == "out"_L1)
                method->out.append(argument);
            else
                method->in.append(argument);
        }
    }
    if (xml.hasError())
        qFatal("The bus interface description is broken: %s", qPrintable(xml.errorString()));
}

const ServiceContract::Method *ServiceContract::method(const QString &interface,
                                                       const QString &name) const
{
    const auto methods = m_methods.constFind(interface);
    if (methods == m_methods.cend())
        return nullptr;
    const auto found = methods->constFind(name);
    return found == methods->cend() ? nullptr : &*found;
}

} // namespace quarry::service
