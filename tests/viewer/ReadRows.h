#pragma once

#include <QString>

namespace quarry::viewer {

class LogRowsModel;
class StationDatabase;

// Starts reading select into model on the station and waits until its
// rows are shown and counted; "" when that worked, else the fault.
QString readRows(LogRowsModel &model, const StationDatabase &station, const QString &select,
                 const QString &key);

} // namespace quarry::viewer
