#include "TestDatabases.h"

#include "platform/DbConnection.h"
#include "platform/DbRecordSet.h"

#include <quarry/QuarryError.h>

#include <QDir>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
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

std::optional<QuarryError> errorOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const QuarryError &error) {
        return error;
    }
    return std::nullopt;
}

} // namespace

class DatabaseTest : public QObject
{
    Q_OBJECT

private slots:
    void opensAndRemovesItsConnection_data() { addEngineRows(); }
    void opensAndRemovesItsConnection();
    void openFailsWithText_data();
    void openFailsWithText();
    void findsEmbeddedFile_data();
    void findsEmbeddedFile();
    void readsRowsByFieldName_data() { addEngineRows(); }
    void readsRowsByFieldName();
    void bindsValuesLiterally_data();
    void bindsValuesLiterally();
    void readsTextAndDates_data() { addEngineRows(); }
    void readsTextAndDates();
    void failedQueryThrows_data() { addEngineRows(); }
    void failedQueryThrows();
    void passwordKeepsSpecialCharacters_data();
    void passwordKeepsSpecialCharacters();
};

void DatabaseTest::opensAndRemovesItsConnection()
{
    QFETCH(Engine, engine);
    QUARRY_REQUIRE_ENGINE(engine);
    QString name;
    {
        Sample sample(engine);
        QVERIFY2(sample.ok(), qPrintable(sample.error()));
        QVERIFY(!sample.connection.failed());
        name = sample.connection.database().connectionName();
        QVERIFY(QSqlDatabase::connectionNames().contains(name));

        sample.connection.close();
        QVERIFY(!sample.connection.isOpen());
        QVERIFY(!sample.connection.failed());
        QVERIFY(!QSqlDatabase::connectionNames().contains(name));

        sample.connection.open(sample.database.connectionString(), User, Password, true);
        QVERIFY2(sample.connection.isOpen(), qPrintable(sample.connection.errorText()));
    }
    QVERIFY(!QSqlDatabase::connectionNames().contains(name));
}

void DatabaseTest::openFailsWithText_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QString>("type");     // empty: the engine's own
    QTest::addColumn<QString>("server");   // empty: the test server
    QTest::addColumn<QString>("database"); // empty: the sample database
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("expected"); // part of the error text

    QTest::newRow("sqlite/missing file") << Engine::Sqlite << u""_s << u""_s << u"NOSUCH"_s
                                         << Password << u"NOSUCH.db"_s;
    QTest::newRow("sqlite/unknown type") << Engine::Sqlite << u"ORACLE"_s << u""_s << u""_s
                                         << Password << u"ORACLE"_s;
    for (Engine engine : {Engine::MariaDb, Engine::MariaDbOdbc}) {
        const QString name = quarry::test::engineName(engine);
        QTest::addRow("%s/wrong password", qPrintable(name))
            << engine << u""_s << u""_s << u""_s << u"WRONG"_s << u"Access denied"_s;
        // Unescaped, the second PWD attribute would log in.
        QTest::addRow("%s/attribute in password", qPrintable(name))
            << engine << u""_s << u""_s << u""_s << u"x;PWD=KORMANTE"_s << u"Access denied"_s;
        QTest::addRow("%s/unknown database", qPrintable(name))
            << engine << u""_s << u""_s << u"quarry_nosuch"_s << Password << u"Unknown database"_s;
        QTest::addRow("%s/closed port", qPrintable(name))
            << engine << u""_s << u"127.0.0.1:1"_s << u""_s << Password << u"Can't connect"_s;
    }
}

void DatabaseTest::openFailsWithText()
{
    QFETCH(Engine, engine);
    QFETCH(QString, type);
    QFETCH(QString, server);
    QFETCH(QString, database);
    QFETCH(QString, password);
    QFETCH(QString, expected);
    QUARRY_REQUIRE_ENGINE(engine);
    Sample sample(engine);
    QVERIFY2(sample.ok(), qPrintable(sample.error()));
    if (!type.isEmpty())
        sample.connection.setDatabaseType(type);

    sample.connection.open(u"Server=%1;Database=%2"_s.arg(
                               server.isEmpty() ? sample.database.server() : server,
                               database.isEmpty() ? sample.database.databaseName() : database),
                           User, password, true);
    QVERIFY(sample.connection.failed());
    QVERIFY(!sample.connection.isOpen());
    QVERIFY2(sample.connection.errorText().contains(expected),
             qPrintable(sample.connection.errorText()));
}

void DatabaseTest::findsEmbeddedFile_data()
{
    QTest::addColumn<QString>("name"); // %1: the folder of the sample
    QTest::addColumn<bool>("found");

    QTest::newRow("extension added") << u"TEST"_s << true;
    QTest::newRow("other case") << u"test"_s << true;
    QTest::newRow("extension given") << u"test.DB"_s << true;
    QTest::newRow("absolute path") << u"%1/Test"_s << true;
    QTest::newRow("subfolder, backslash") << u"sub\\TEST"_s << true;
    QTest::newRow("other extension") << u"TEST.mdb"_s << false;
    QTest::newRow("missing") << u"OTHER"_s << false;
}

void DatabaseTest::findsEmbeddedFile()
{
    QFETCH(QString, name);
    QFETCH(bool, found);
    Sample sample(Engine::Sqlite);
    QVERIFY2(sample.ok(), qPrintable(sample.error()));
    const QDir folder(sample.folder.path());
    QVERIFY(folder.mkdir(u"sub"_s));
    QVERIFY(QFile::copy(folder.filePath(u"TEST.db"_s), folder.filePath(u"sub/TEST.db"_s)));
    const QStringList filesBefore = folder.entryList(QDir::Files);

    DbConnection connection;
    sample.database.prepare(connection);
    connection.open(u"Server=;Database="_s + name.replace(u"%1"_s, folder.path()), User, Password,
                    true);
    QCOMPARE(connection.isOpen(), found);
    QCOMPARE(connection.failed(), !found);
    QCOMPARE(folder.entryList(QDir::Files), filesBefore); // nothing created
    if (!found)
        return;

    DbRecordSet records;
    records.open(u"select WDH from WDDZ"_s, connection);
    QCOMPARE(records.recordCount(), 4);
    const auto error = errorOf([&] {
        records.open(u"insert into WDDZ values ('009', '', '', '')"_s, connection);
    });
    QVERIFY2(error, "an embedded database is opened read-only");
}

void DatabaseTest::readsRowsByFieldName()
{
    QFETCH(Engine, engine);
    QUARRY_REQUIRE_ENGINE(engine);
    Sample sample(engine);
    QVERIFY2(sample.ok(), qPrintable(sample.error()));
    DbRecordSet records;

    records.open(u"select * from WDDZ where MASTERNO = ? order by WDH"_s, sample.connection,
                 {u"000"_s});
    QCOMPARE(records.recordCount(), 2);
    QVERIFY(!records.bof());
    QVERIFY(!records.eof());
    QCOMPARE(records.field(u"wdh"_s), u"001"_s);
    QCOMPARE(records.field(u"Note"_s), u"it's"_s);
    records.moveNext();
    QCOMPARE(records.field(u"WDH"_s), u"002"_s);
    records.moveNext();
    QVERIFY(records.eof());
    records.moveNext();
    QVERIFY(records.eof());
    QVERIFY(errorOf([&] { records.field(u"WDH"_s); }));

    records.open(u"select WDH, NOTE from WDDZ where WDH = '000'"_s, sample.connection);
    QCOMPARE(records.field(u"NOTE"_s), QString()); // NULL
    QVERIFY(errorOf([&] { records.field(u"WDNAME"_s); }));

    records.open(u"select * from WDDZ where WDH = 'none'"_s, sample.connection);
    QCOMPARE(records.recordCount(), 0);
    QVERIFY(records.bof());
    QVERIFY(records.eof());
}

void DatabaseTest::bindsValuesLiterally_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QString>("note");
    QTest::addColumn<QStringList>("expected");

    for (Engine engine : quarry::test::allEngines()) {
        const QString name = quarry::test::engineName(engine);
        QTest::addRow("%s/quote", qPrintable(name)) << engine << u"it's"_s << QStringList{u"001"_s};
        QTest::addRow("%s/backslashes", qPrintable(name))
            << engine << u"C:\\seal\\"_s << QStringList{u"002"_s};
        QTest::addRow("%s/chinese", qPrintable(name)) << engine << u"城东"_s << QStringList{u"003"_s};
        QTest::addRow("%s/injection", qPrintable(name))
            << engine << u"x' or '1'='1"_s << QStringList{};
        QTest::addRow("%s/escaped quote", qPrintable(name))
            << engine << u"it\\'s"_s << QStringList{};
    }
}

void DatabaseTest::bindsValuesLiterally()
{
    QFETCH(Engine, engine);
    QFETCH(QString, note);
    QFETCH(QStringList, expected);
    QUARRY_REQUIRE_ENGINE(engine);
    Sample sample(engine);
    QVERIFY2(sample.ok(), qPrintable(sample.error()));

    DbRecordSet records;
    records.open(u"select WDH from WDDZ where NOTE = ? order by WDH"_s, sample.connection, {note});
    QCOMPARE(column(records, u"WDH"_s), expected);
}

void DatabaseTest::readsTextAndDates()
{
    QFETCH(Engine, engine);
    QUARRY_REQUIRE_ENGINE(engine);
    Sample sample(engine);
    QVERIFY2(sample.ok(), qPrintable(sample.error()));
    DbRecordSet records;

    records.open(u"select WDNAME from WDDZ where WDNAME like ? order by WDH"_s, sample.connection,
                 {u"%支行"_s});
    QCOMPARE(column(records, u"WDNAME"_s), QStringList{u"城东支行"_s});
    records.open(u"select WDNAME from WDDZ where WDH = '002'"_s, sample.connection);
    QCOMPARE(records.field(u"WDNAME"_s), u"𠮷野家"_s); // beyond the 16-bit plane: utf8mb4

    records.open(u"select * from delcalender where curday='3000-01-01'"_s, sample.connection);
    QCOMPARE(records.field(u"deadline"_s), u"3009-11-13"_s);
    QCOMPARE(records.field(u"stamp"_s), u"2009-11-13 08:30:05"_s);
}

void DatabaseTest::failedQueryThrows()
{
    QFETCH(Engine, engine);
    QUARRY_REQUIRE_ENGINE(engine);
    Sample sample(engine);
    QVERIFY2(sample.ok(), qPrintable(sample.error()));
    DbRecordSet records;
    records.open(u"select * from WDDZ"_s, sample.connection);

    auto error = errorOf([&] { records.open(u"select * from NOSUCHTABLE"_s, sample.connection); });
    QVERIFY(error);
    QCOMPARE(error->number(), 2000);
    QCOMPARE(error->source(), u"DbRecordSet.Open()"_s);
    QVERIFY2(error->description().contains(u"NOSUCHTABLE"_s, Qt::CaseInsensitive),
             qPrintable(error->description()));
    QCOMPARE(records.recordCount(), 0);

    sample.connection.close();
    error = errorOf([&] { records.open(u"select * from WDDZ"_s, sample.connection); });
    QVERIFY(error);
    QCOMPARE(error->source(), u"DbRecordSet.Open()"_s);
}

void DatabaseTest::passwordKeepsSpecialCharacters_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::newRow("mariadb") << Engine::MariaDb;
    QTest::newRow("odbc") << Engine::MariaDbOdbc;
}

void DatabaseTest::passwordKeepsSpecialCharacters()
{
    QFETCH(Engine, engine);
    QUARRY_REQUIRE_ENGINE(engine);
    Sample sample(engine);
    QVERIFY2(sample.ok(), qPrintable(sample.error()));
    const QString user = u"q%1"_s.arg(QRandomGenerator::global()->generate(), 8, 16, QChar(u'0'));
    const QString password = u"p;w}d{=x y"_s;
    QVERIFY2(sample.database.execute(u"CREATE USER '%1'@'%' IDENTIFIED BY '%2';\n"
                                      "GRANT ALL ON %3.* TO '%1'@'%';"_s
                                          .arg(user, password, sample.database.databaseName())),
             qPrintable(sample.database.errorText()));

    DbConnection connection;
    sample.database.prepare(connection);
    connection.open(sample.database.connectionString(), user, password, true);
    const QString error = connection.errorText();
    sample.database.execute(u"DROP USER '%1'@'%'"_s.arg(user));
    QVERIFY2(connection.isOpen(), qPrintable(error));
}

QTEST_GUILESS_MAIN(DatabaseTest)
#include "tst_database.moc"
