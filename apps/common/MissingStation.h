#pragma once

#include <QString>

namespace quarry::apps {

// "" when the station's seal.ini (iniPath, as the configuration found it)
// exists; else where it was looked for, in Chinese: beside the library,
// and through CONVERT.INI in the system INI folder, which
// QUARRY_SYSTEM_DIR names.
QString missingStation(const QString &iniPath);

} // namespace quarry::apps
