#include "TestDatabases.h"

#include "platform/DbConnection.h"
#include "platform/DbRecordSet.h"

#include <quarry/QuarryError.h>

#include <QDir>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using quarry::DbConnection;
using quarry::DbRecordSet;
using quarry::QuarryError;
using quarry::test::Engine;
using quarry::test::TestDatabase;

namespace {

const QString User = u"BISOL"_s;
const QString Password = u"KORMANTE"_s;

const QString Script = uR"(
CREATE TABLE WDDZ (WDH VARCHAR(10), WDNAME VARCHAR(60), MASTERNO VARCHAR(10), NOTE VARCHAR(60));
INSERT INTO WDDZ VALUES ('000', '总行', '', NULL);
INSERT INTO WDDZ VALUES ('001', '城东支行', '000', 'it''s'); -- a doubled quote
INSERT INTO WDDZ VALUES ('002', '𠮷野家', '000', 'C:\seal\');
INSERT INTO WDDZ VALUES ('003', 'x', '001', '城东');
CREATE TABLE delcalender (curday DATE, deadline DATE, stamp DATETIME);
INSERT INTO delcalender VALUES ('3000-01-01', '3009-11-13', '2009-11-13 08:30:05');
)"_s;

// A database of one engine filled with Script, and a connection open on it
// the way the configuration classes open theirs.
struct Sample
{
    explicit Sample(Engine engine)
        : database(engine, folder.path())
    {
        if (!database.isValid() || !database.execute(Script))
            return;
        database.prepare(connection);
        connection.open(database.connectionString(), User, Password, true);
    }
    bool ok() const { return database.errorText().isEmpty() && connection.isOpen(); }
    QString error() const { return database.errorText() + connection.errorText(); }

    QTemporaryDir folder;
    TestDatabase database;
    DbConnection connection;
};

void addEngineRows()
{
    QTest::addColumn<Engine>("engine");
    for (Engine engine : quarry::test::allEngines())
        QTest::newRow(qPrintable(quarry::test::engineName(engine))) << engine;
}

QStringList column(DbRecordSet &records, const QString &name)
{
    QStringList values;
    for (; !records.eof(); records.moveNext())
        values.append(records.field(name));
    return values;
}

} // namespace

// Every test's data has an "engine" column: init() gives each row its sample.
class DatabaseTest : public QObject
{
    Q_OBJECT

    std::optional<Sample> m_sample;
    DbConnection &connection() { return m_sample->connection; }

private slots:
    void init()
    {
        QFETCH(Engine, engine);
        QUARRY_REQUIRE_ENGINE(engine);
        m_sample.emplace(engine);
        QVERIFY2(m_sample->ok(), qPrintable(m_sample->error()));
    }
    void cleanup() { m_sample.reset(); }

    void opensAndRemovesItsConnection_data() { addEngineRows(); }
    void opensAndRemovesItsConnection()
    {
        const QString name = connection().database().connectionName();
        QVERIFY(!connection().failed() && QSqlDatabase::connectionNames().contains(name));
        connection().close();
        QVERIFY(!connection().isOpen() && !connection().failed());
        QVERIFY(!QSqlDatabase::connectionNames().contains(name));
        connection().open(m_sample->database.connectionString(), User, Password, true);
        QVERIFY2(connection().isOpen(), qPrintable(connection().errorText()));
        m_sample.reset();
        QVERIFY(!QSqlDatabase::connectionNames().contains(name));
    }

    void openFailsWithText_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QString>("server"); // empty: the test server
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("expected"); // part of the error text
        for (Engine engine : {Engine::MariaDb, Engine::MariaDbOdbc}) {
            const QString name = quarry::test::engineName(engine);
            QTest::addRow("%s/wrong password", qPrintable(name))
                << engine << QString() << u"WRONG"_s << u"Access denied"_s;
            // Unescaped, the second PWD attribute would log in.
            QTest::addRow("%s/attribute in password", qPrintable(name))
                << engine << QString() << u"x;PWD=KORMANTE"_s << u"Access denied"_s;
            QTest::addRow("%s/closed port", qPrintable(name))
                << engine << u"127.0.0.1:1"_s << Password << u"Can't connect"_s;
        }
    }
    void openFailsWithText()
    {
        QFETCH(QString, server);
        QFETCH(QString, password);
        connection().open(u"Server=%1;Database=%2"_s.arg(server.isEmpty() ? m_sample->database.server() : server,
                                                           m_sample->database.databaseName()),
                          User, password, true);
        QVERIFY(connection().failed() && !connection().isOpen());
        QFETCH(QString, expected);
        QVERIFY2(connection().errorText().contains(expected), qPrintable(connection().errorText()));
    }

    void findsEmbeddedFile_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QString>("name");  // %1: the folder of the sample
        QTest::addColumn<QString>("error"); // part of the error text; empty: found
        QTest::newRow("extension added") << Engine::Sqlite << u"TEST"_s << QString();
        QTest::newRow("absolute path, other case") << Engine::Sqlite << u"%1/Test"_s << QString();
        QTest::newRow("subfolder, backslash") << Engine::Sqlite << u"sub\\TEST"_s << QString();
        QTest::newRow("other extension") << Engine::Sqlite << u"TEST.mdb"_s << u"TEST.mdb"_s;
        QTest::newRow("missing") << Engine::Sqlite << u"OTHER"_s << u"OTHER.db"_s;
    }
    void findsEmbeddedFile()
    {
        QFETCH(QString, name);
        QFETCH(QString, error);
        const QDir folder(m_sample->folder.path());
        QVERIFY(folder.mkdir(u"sub"_s));
        QVERIFY(QFile::copy(folder.filePath(u"TEST.db"_s), folder.filePath(u"sub/TEST.db"_s)));
        const QStringList filesBefore = folder.entryList(QDir::Files);
        connection().open(u"Server=;Database="_s + name.replace(u"%1"_s, folder.path()), User, Password, true);
        QCOMPARE(folder.entryList(QDir::Files), filesBefore); // nothing created
        QCOMPARE(connection().failed(), !error.isEmpty());
        QVERIFY2(connection().errorText().contains(error), qPrintable(connection().errorText()));
        if (connection().failed())
            return;
        DbRecordSet records;
        records.open(u"select WDH from WDDZ"_s, connection());
        QCOMPARE(records.recordCount(), 4);
        QVERIFY_THROWS_EXCEPTION(QuarryError, records.open(u"insert into WDDZ values ('9', '', '', '')"_s,
                                                           connection())); // opened read-only
    }

    void readsRecords_data() { addEngineRows(); }
    void readsRecords()
    {
        DbRecordSet records;
        records.open(u"select * from WDDZ where MASTERNO = ? order by WDH"_s, connection(), {u"000"_s});
        QCOMPARE(records.recordCount(), 2);
        QVERIFY(!records.bof() && !records.eof());
        QCOMPARE(records.field(u"wdh"_s), u"001"_s);
        QCOMPARE(records.field(u"WdName"_s), u"城东支行"_s);
        records.moveNext();
        QCOMPARE(records.field(u"WDNAME"_s), u"𠮷野家"_s); // beyond the 16-bit plane: utf8mb4
        records.moveNext();
        records.moveNext();
        QVERIFY(records.eof());
        QVERIFY_THROWS_EXCEPTION(QuarryError, records.field(u"WDH"_s));

        records.open(u"select WDH, NOTE from WDDZ where WDH = '000'"_s, connection());
        QCOMPARE(records.field(u"NOTE"_s), QString()); // NULL
        QVERIFY_THROWS_EXCEPTION(QuarryError, records.field(u"WDNAME"_s));

        records.open(u"select * from delcalender where curday='3000-01-01'"_s, connection());
        QCOMPARE(records.field(u"deadline"_s), u"3009-11-13"_s);
        QCOMPARE(records.field(u"stamp"_s), u"2009-11-13 08:30:05"_s);

        records.open(u"select * from WDDZ where WDH = 'none'"_s, connection());
        QCOMPARE(records.recordCount(), 0);
        QVERIFY(records.bof() && records.eof());
    }

    void failedQueryThrows_data() { addEngineRows(); }
    void failedQueryThrows()
    {
        DbRecordSet records;
        records.open(u"select * from WDDZ"_s, connection());
        try {
            records.open(u"select * from NOSUCHTABLE"_s, connection());
            QFAIL("no error raised");
        } catch (const QuarryError &error) {
            QCOMPARE(error.number(), 2000);
            QCOMPARE(error.source(), u"DbRecordSet.Open()"_s);
            QVERIFY2(error.description().contains(u"NOSUCHTABLE"_s, Qt::CaseInsensitive), error.what());
        }
        QCOMPARE(records.recordCount(), 0);
        connection().close();
        QVERIFY_THROWS_EXCEPTION(QuarryError, records.open(u"select * from WDDZ"_s, connection()));
    }

    void bindsValuesLiterally_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QString>("note");
        QTest::addColumn<QStringList>("expected");
        for (Engine engine : quarry::test::allEngines()) {
            const QString name = quarry::test::engineName(engine);
            QTest::addRow("%s/quote", qPrintable(name)) << engine << u"it's"_s << QStringList{u"001"_s};
            QTest::addRow("%s/backslashes", qPrintable(name)) << engine << u"C:\\seal\\"_s << QStringList{u"002"_s};
            QTest::addRow("%s/chinese", qPrintable(name)) << engine << u"城东"_s << QStringList{u"003"_s};
            QTest::addRow("%s/escaped quote", qPrintable(name)) << engine << u"it\\'s"_s << QStringList{};
        }
    }
    void bindsValuesLiterally()
    {
        QFETCH(QString, note);
        DbRecordSet records;
        records.open(u"select WDH from WDDZ where NOTE = ? order by WDH"_s, connection(), {note});
        QTEST(column(records, u"WDH"_s), "expected");
    }

    void passwordKeepsSpecialCharacters_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::newRow("mariadb") << Engine::MariaDb;
        QTest::newRow("odbc") << Engine::MariaDbOdbc;
    }
    void passwordKeepsSpecialCharacters()
    {
        TestDatabase &database = m_sample->database;
        const QString user = u"q%1"_s.arg(QRandomGenerator::global()->generate(), 8, 16, QChar(u'0'));
        const QString password = u"p;w}d{=x y"_s;
        QVERIFY2(database.execute(u"CREATE USER '%1'@'%' IDENTIFIED BY '%2';\n"
                                  "GRANT ALL ON %3.* TO '%1'@'%';"_s.arg(user, password, database.databaseName())),
                 qPrintable(database.errorText()));
        connection().open(database.connectionString(), user, password, true);
        const QString error = connection().errorText();
        database.execute(u"DROP USER '%1'@'%'"_s.arg(user));
        QVERIFY2(connection().isOpen(), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(DatabaseTest)
#include "tst_database.moc"
