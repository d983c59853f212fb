#include "SampleLogs.h"

#include "platform/DbConnection.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <map>
#include <memory>

using namespace Qt::StringLiterals;

namespace quarry::test {

namespace {

std::map<Engine, std::unique_ptr<SampleStation>> stations;

// Before the application goes, with the database drivers: a MariaDB station
// drops its databases.
void dropStations()
{
    stations.clear();
}

} // namespace

QList<Engine> logEngines()
{
    return {Engine::Sqlite, Engine::MariaDb};
}

SampleStation &sampleStation(Engine engine, const QByteArray &ini)
{
    if (stations.empty())
        qAddPostRoutine(dropStations);
    std::unique_ptr<SampleStation> &station = stations[engine];
    if (!station)
        station = std::make_unique<SampleStation>(engine);
    if (station->isValid())
        station->writeIni(ini);
    return *station;
}

QList<Row> sealRows(SampleStation &station, const QString &sql)
{
    DbConnection db;
    station.seal().prepare(db);
    db.open(station.seal().connectionString(), u"BISOL"_s, u"KORMANTE"_s, true);
    QSqlQuery query(db.database());
    if (!query.exec(sql))
        qFatal("%s: %s", qPrintable(sql), qPrintable(query.lastError().text()));
    QList<Row> rows;
    while (query.next()) {
        const QSqlRecord record = query.record();
        Row row;
        for (int c = 0; c < record.count(); ++c)
            row.insert(record.fieldName(c).toLower(), query.value(c).toString());
        rows.append(row);
    }
    return rows;
}

QString sampleCataloguePath()
{
    return qEnvironmentVariable("QUARRY_SOURCE_DIR") + u"/data/sample/logs.ini"_s;
}

} // namespace quarry::test
