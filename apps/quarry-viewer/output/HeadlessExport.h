#pragma once

#include <QString>

namespace quarry::viewer {

class LogCatalogue;

// A log written to a file with no window, for a report run on a schedule:
// the log's SELECT with condition (a WHERE clause as CQuarry hands it back,
// or the statistics' whole SELECT) runs on the station of seal.ini, and
// its rows go to path as the window's export writes them (FileExport).
// Progress and faults go to standard error, faults to the station's error
// log too. Returns the exit status: 0 written, 1 not (no such log, no
// station, a database or file fault).
int exportWithoutWindow(const LogCatalogue &catalogue, const QString &logType,
                        const QString &condition, const QString &path);

} // namespace quarry::viewer
