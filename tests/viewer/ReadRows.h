#pragma once

#include "SampleLogs.h"
#include "rows/LogSelect.h"
#include "rows/StationDatabase.h"

#include <QString>

namespace quarry::viewer {

class LogRowsModel;

// Starts reading select into model on the station, in the own order, and
// waits until its rows are shown and counted; "" when that worked, else
// the fault (also rows told inserted that are none).
QString readRows(LogRowsModel &model, const StationDatabase &station, const QString &select,
                 const QString &key, const RowOrder &own = {});

} // namespace quarry::viewer

// In a test function: `station` is the sample station of the engine with
// its seal.ini written with `ini`, and `database` the viewer's connection
// to it, open.
#define QUARRY_SAMPLE_DATABASE(station, database, engine, ini)                                       \
    QUARRY_SAMPLE_STATION(station, engine, ini);                                                   \
    quarry::viewer::StationDatabase database;                                                      \
    QCOMPARE(database.open(), QString())
