#include "TestDatabases.h"
#include "TestFiles.h"

#include "platform/DbConnection.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <atomic>

using namespace Qt::StringLiterals;

namespace quarry::test {

namespace {

QString nextConnectionName()
{
    static std::atomic<int> counter{0};
    return u"quarry-testdb-%1"_s.arg(++counter);
}

QString missingDriver(const QString &driver)
{
    return QSqlDatabase::isDriverAvailable(driver)
               ? QString()
               : u"The Qt SQL driver %1 is not installed."_s.arg(driver);
}

QStringList splitSqlScript(const QString &script)
{
    QStringList statements;
    QString current;
    for (const QString &line : script.split(u'\n')) {
        if (line.trimmed().startsWith("--"_L1))
            continue;
        current += line + u'\n';
        if (line.trimmed().endsWith(u';')) {
            statements.append(current.trimmed().chopped(1));
            current.clear();
        }
    }
    if (!current.trimmed().isEmpty())
        statements.append(current.trimmed());
    return statements;
}

} // namespace

QList<Engine> allEngines()
{
    return {Engine::Sqlite, Engine::MariaDb, Engine::MariaDbOdbc};
}

QString engineName(Engine engine)
{
    return QStringList{u"sqlite"_s, u"mariadb"_s, u"odbc"_s}.at(int(engine));
}

QByteArray engineTag(Engine engine, const char *what)
{
    return engineName(engine).toLatin1() + ": " + what;
}

void addEngineRows(const QList<Engine> &engines)
{
    QTest::addColumn<Engine>("engine");
    for (Engine engine : engines)
        QTest::newRow(qPrintable(engineName(engine))) << engine;
}

int mariaDbPort()
{
    const QString dir = qEnvironmentVariable("QUARRY_MARIADB_DIR");
    return dir.isEmpty() ? 0 : readFile(QDir(dir).filePath(u"port"_s)).trimmed().toInt();
}

QString missingEngine(Engine engine)
{
    if (engine == Engine::Sqlite)
        return missingDriver(u"QSQLITE"_s);
    if (mariaDbPort() == 0)
        return u"No MariaDB test server: run this test through CTest, whose fixture \"mariadb\" "
               "starts one and sets QUARRY_MARIADB_DIR."_s;
    return missingDriver(engine == Engine::MariaDb ? u"QMYSQL"_s : u"QODBC"_s);
}

bool enginesRequired()
{
    return qEnvironmentVariable("CI").compare("true"_L1, Qt::CaseInsensitive) == 0;
}

TestDatabase::TestDatabase(Engine engine, const QString &folder, const QString &name)
    : m_engine(engine)
    , m_folder(folder)
    , m_name(name)
    , m_connectionName(nextConnectionName())
{
    if (engine != Engine::Sqlite) {
        m_valid = createMariaDb();
        return;
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_connectionName);
    db.setDatabaseName(QDir(folder).filePath(name + ".db"_L1));
    m_valid = db.open();
    if (!m_valid)
        m_errorText = db.lastError().text();
}

TestDatabase::~TestDatabase()
{
    {
        QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
        if (m_engine != Engine::Sqlite && db.isOpen())
            QSqlQuery(db).exec("DROP DATABASE IF EXISTS "_L1 + m_name);
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connectionName);
}

// Unique across test programs running at the same time on the one server.
bool TestDatabase::createMariaDb()
{
    const int port = mariaDbPort();
    if (port == 0) {
        m_errorText = missingEngine(m_engine);
        return false;
    }
    m_name = u"quarry_%1_%2"_s.arg(m_name.toLower())
                 .arg(QRandomGenerator::global()->generate64(), 16, 16, QChar(u'0'));
    QSqlDatabase db = QSqlDatabase::addDatabase(u"QMYSQL"_s, m_connectionName);
    db.setHostName(u"127.0.0.1"_s);
    db.setPort(port);
    if (!db.open(u"BISOL"_s, u"KORMANTE"_s)) {
        m_errorText = db.lastError().text();
        return false;
    }
    return runAll({u"SET NAMES utf8mb4"_s,
                   u"SET SESSION sql_mode = CONCAT(@@sql_mode, ',NO_BACKSLASH_ESCAPES')"_s,
                   u"CREATE DATABASE %1 CHARACTER SET utf8mb4 COLLATE utf8mb4_general_ci"_s.arg(m_name),
                   "USE "_L1 + m_name});
}

bool TestDatabase::loadScript(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_errorText = u"Cannot read %1: %2"_s.arg(path, file.errorString());
        return false;
    }
    return execute(QString::fromUtf8(file.readAll()));
}

bool TestDatabase::execute(const QString &script)
{
    return runAll(splitSqlScript(script));
}

bool TestDatabase::runAll(const QStringList &statements)
{
    QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
    if (!db.isOpen()) {
        m_errorText = u"The test database is not open."_s;
        return false;
    }
    db.transaction();
    for (const QString &statement : statements) {
        QSqlQuery query(db);
        if (!query.exec(statement)) {
            m_errorText = u"%1\n%2"_s.arg(statement, query.lastError().text());
            db.rollback();
            return false;
        }
    }
    db.commit();
    return true;
}

QString TestDatabase::baseMode() const
{
    return QStringList{u"ACCESS"_s, u"MYSQL"_s, u"SQLSERVER"_s}.at(int(m_engine));
}

QString TestDatabase::odbcDriver() const
{
    return m_engine == Engine::MariaDbOdbc ? u"MariaDB Unicode"_s : QString();
}

QString TestDatabase::server() const
{
    return m_engine == Engine::Sqlite ? QString() : u"127.0.0.1:%1"_s.arg(mariaDbPort());
}

QString TestDatabase::connectionString() const
{
    return u"Server=%1;Database=%2"_s.arg(server(), m_name);
}

void TestDatabase::prepare(DbConnection &connection) const
{
    connection.setDatabaseType(baseMode());
    connection.setFileFolder(m_folder);
    if (m_engine == Engine::MariaDbOdbc)
        connection.setOdbcDriver(odbcDriver());
}

} // namespace quarry::test
