#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace quarry::apps {

// A code list as the host programs take it written out, "1=开户,2=销户":
// appends the codes and their descriptions (blanks round either dropped).
// False when an entry lacks its "=", its 16-bit code or its description;
// an empty text is an empty list.
bool parseCodeList(const QString &text, QList<qint16> &ids, QStringList &names);

} // namespace quarry::apps
