#pragma once

#include <quarry/quarry_export.h>

#include <QString>

namespace quarry {

// The runtime's Trim: blanks (U+0020) at both ends only. Tabs, U+3000 and
// the other white space that QString::trimmed() drops stay.
QUARRY_EXPORT QString trimBlanks(const QString &text);

} // namespace quarry
