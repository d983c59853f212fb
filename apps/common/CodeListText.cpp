#include "CodeListText.h"

namespace quarry::apps {

bool parseCodeList(const QString &text, QList<qint16> &ids, QStringList &names)
{
    if (text.isEmpty())
        return true;
    const QStringList entries = text.split(u',');
    for (const QString &entry : entries) {
        const qsizetype equals = entry.indexOf(u'=');
        bool ok = false;
        const qint16 id = entry.left(equals).trimmed().toShort(&ok);
        const QString name = entry.mid(equals + 1).trimmed();
        if (equals < 0 || !ok || name.isEmpty())
            return false;
        ids.append(id);
        names.append(name);
    }
    return true;
}

} // namespace quarry::apps
