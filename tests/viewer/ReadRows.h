#pragma once

#include "SampleLogs.h"
#include "rows/LogSelect.h"
#include "rows/StationDatabase.h"

#include <QString>

class QAbstractItemModel;
class QObject;

namespace quarry::viewer {

class LogRowsModel;

// While context lives, fails the running test when model tells of rows
// inserted or removed that are none (first past last), which Qt checks in
// its debug builds only.
void checkRowRanges(const QAbstractItemModel &model, const QObject &context);

// Starts reading select into model on the station, in the own order, and
// waits until its rows are shown and counted, checking its row ranges; ""
// when that worked, else the fault.
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
