#pragma once

#include <quarry/quarry_export.h>

#include <QString>

namespace quarry {

// The local folder of error.txt named by the seal.ini at sealIni, as
// writeErrorLog finds it in the station's.
QUARRY_EXPORT QString errorLogFolder(const QString &sealIni);

// Appends "source number description yyyy-MM-dd hh:mm:ss" to error.txt in the
// folder of seal.ini [ERROR] ERRORFILE (default "c:\errorpath"), creating the
// folder (one level, and the root of its drive) and the file when missing.
// Lines of processes logging at the same moment never mix. Raises QuarryError
// when the folder cannot be created or the file not written.
QUARRY_EXPORT void writeErrorLog(const QString &source, qint32 number, const QString &description);

} // namespace quarry
