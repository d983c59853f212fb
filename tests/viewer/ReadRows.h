#pragma once

#include "rows/LogSelect.h"

#include <QString>

namespace quarry::viewer {

class LogRowsModel;
class StationDatabase;

// Starts reading select into model on the station, in the own order, and
// waits until its rows are shown and counted; "" when that worked, else
// the fault.
QString readRows(LogRowsModel &model, const StationDatabase &station, const QString &select,
                 const QString &key, const RowOrder &own = {});

} // namespace quarry::viewer
