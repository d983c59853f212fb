#pragma once

#include "TestDatabases.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace quarry::test {

// A station of the sample bank on one engine: a seal database (SEAL) and a
// local database (LOCAL), filled from the SQL scripts of data/sample as the
// sample builder fills them, and a seal.ini in a temporary folder that reaches
// them. writeIni() also points $QUARRY_SYSTEM_DIR at that folder, so the next
// configuration object created reads it.
class SampleStation
{
public:
    enum class Contents { Sample, Empty };

    explicit SampleStation(Engine engine, Contents contents = Contents::Sample);

    // False when a database could not be made or filled; see errorText().
    bool isValid() const { return m_errorText.isEmpty(); }
    QString errorText() const { return m_errorText; }

    // Runs a script on the seal database; a failure makes the station invalid.
    void changeSeal(const QString &script);

    TestDatabase &seal() { return m_seal; }
    TestDatabase &local() { return m_local; }
    QString folder() const { return m_folder.path(); }

    // seal.ini: the two databases (on server instead of the test server when
    // given), the double-seal quota set (so reading the file needs no
    // database), the error log in <folder>/log, then the lines of extra,
    // which may add sections but not repeat DATABASESET, SQLSERVER, SBMK or
    // ERROR.
    void writeIni(const QByteArray &extra = {}, const QString &server = {}) const;
    // The error log's text, "" while nothing was logged.
    QString errorLog() const;
    void clearErrorLog() const;

private:
    void load(TestDatabase &database, const QStringList &scripts);

    QTemporaryDir m_folder;
    TestDatabase m_seal;
    TestDatabase m_local;
    QString m_errorText;
};

} // namespace quarry::test
