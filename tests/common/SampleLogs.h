#pragma once

#include "SampleStation.h"
#include "TestFiles.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

namespace quarry::test {

// What the tests of the logs share: the sample station on each engine, made
// once per test program, its rows, and the sample catalogue.

// The engines a log is run on end to end: the embedded file and MariaDB.
QList<Engine> logEngines();

// The sample station on the engine, made on first use and kept for the
// program; its seal.ini written anew with `ini` (see SampleStation::writeIni)
// on every call. Tests that change its databases make a station of their own.
SampleStation &sampleStation(Engine engine, const QByteArray &ini = "[USER]\nQueryHintMode=0\n");

// A row of a statement's result, by lower-case column name.
using Row = QHash<QString, QString>;
// The rows of sql on the station's seal database; a failure ends the program.
QList<Row> sealRows(SampleStation &station, const QString &sql);

// data/sample/logs.ini of the source tree.
QString sampleCataloguePath();

} // namespace quarry::test

// In a test function: `name` is the sample station of the engine with its
// seal.ini written with `ini`; skips (fails with CI=true) without the engine.
#define QUARRY_SAMPLE_STATION(name, engine, ini)                                                   \
    QUARRY_REQUIRE_ENGINE(engine);                                                                 \
    quarry::test::SampleStation &name = quarry::test::sampleStation(engine, ini);                  \
    QVERIFY2(name.isValid(), qPrintable(name.errorText()))
