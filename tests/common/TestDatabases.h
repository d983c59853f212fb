#pragma once

#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QTest>

namespace quarry {
class DbConnection;
}

namespace quarry::test {

// The database engines the tests run on: an SQLite file (BASEMODE "ACCESS"),
// the test MariaDB through the MySQL driver (BASEMODE "MYSQL") and the same
// server through ODBC (BASEMODE "SQLSERVER", ODBCDRIVER "MariaDB Unicode").
enum class Engine { Sqlite, MariaDb, MariaDbOdbc };

QList<Engine> allEngines();
// "sqlite", "mariadb", "odbc": for data tags.
QString engineName(Engine engine);
// "<engine>: <what>", for data tags.
QByteArray engineTag(Engine engine, const char *what);
// A data table of one column, "engine": a row for each engine, tagged with its name.
void addEngineRows(const QList<Engine> &engines = allEngines());

// The MariaDB server of the test set-up, started by the CTest fixture
// "mariadb" (quarry_use_mariadb in CMake) and found through
// $QUARRY_MARIADB_DIR. 0 when there is none.
int mariaDbPort();
// Why the engine cannot be used in this run; empty when it can.
QString missingEngine(Engine engine);
// With CI=true a missing engine fails the test instead of skipping it.
bool enginesRequired();

// A database for one test, filled from SQL scripts, with what seal.ini needs
// to reach it. SQLite: the file <folder>/<name>.db. MariaDB: a new database
// with a unique name, dropped again on destruction.
class TestDatabase
{
public:
    TestDatabase(Engine engine, const QString &folder, const QString &name = QStringLiteral("TEST"));
    ~TestDatabase();
    TestDatabase(const TestDatabase &) = delete;
    TestDatabase &operator=(const TestDatabase &) = delete;

    // False when the database could not be made; see errorText().
    bool isValid() const { return m_valid; }
    // The last failure: the statement and the driver's text.
    QString errorText() const { return m_errorText; }

    // Runs the statements of a script file (UTF-8) or text in one
    // transaction; stops at the first failing statement. Each statement ends
    // with ";" at the end of a line; lines that start with "--" are
    // comments. Scripts are plain SQL that every engine reads alike: in a
    // string literal a quote is doubled and a backslash is an ordinary
    // character (MariaDB sessions run with NO_BACKSLASH_ESCAPES).
    bool loadScript(const QString &path);
    bool execute(const QString &script);

    // seal.ini values: DATABASESET BASEMODE and ODBCDRIVER, SQLSERVER SERVER
    // and the database name (SEALBASE, LOCALBASE). The SQLite database lives
    // in the folder of seal.ini.
    QString baseMode() const;
    QString odbcDriver() const;
    QString server() const;
    QString databaseName() const { return m_name; }
    // "Server=...;Database=..." as the configuration classes build it.
    QString connectionString() const;
    // Gives a connection the dialect, file folder and ODBC driver.
    void prepare(DbConnection &connection) const;

private:
    bool createMariaDb();
    bool runAll(const QStringList &statements);

    Engine m_engine;
    QString m_folder;
    QString m_name;
    QString m_connectionName; // read-write connection that fills the database
    bool m_valid = false;
    QString m_errorText;
};

} // namespace quarry::test

Q_DECLARE_METATYPE(quarry::test::Engine)

// Skips the current test (or data row) when the engine is not there here;
// fails instead when CI=true, so that CI never skips a database silently.
#define QUARRY_REQUIRE_ENGINE(engine)                                                             \
    do {                                                                                          \
        const QString quarryMissingEngine_ = quarry::test::missingEngine(engine);                \
        if (!quarryMissingEngine_.isEmpty()) {                                                    \
            if (quarry::test::enginesRequired())                                                  \
                QFAIL(qPrintable(quarryMissingEngine_));                                          \
            QSKIP(qPrintable(quarryMissingEngine_));                                              \
        }                                                                                         \
    } while (false)
