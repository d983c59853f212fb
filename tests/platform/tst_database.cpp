#include "TestDatabases.h"
#include "TestFiles.h"

#include "platform/DbConnection.h"
#include "platform/DbRecordSet.h"
#include "platform/SqlLiteral.h"

#include <quarry/QuarryError.h>

#include <QDir>
#include <QScopeGuard>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace quarry;
using namespace quarry::test;

const QString User = u"BISOL"_s;
const QString Password = u"KORMANTE"_s;

const QString Script = uR"(
CREATE TABLE WDDZ (WDH VARCHAR(10), WDNAME VARCHAR(60), MASTERNO VARCHAR(10), NOTE VARCHAR(60));
INSERT INTO WDDZ VALUES ('000', '总行', '', NULL);
-- A doubled quote.
INSERT INTO WDDZ VALUES ('001', '城东支行', '000', 'it''s');
INSERT INTO WDDZ VALUES ('002', '𠮷野家', '000', 'C:\seal\');
INSERT INTO WDDZ VALUES ('003', 'x', '001', '城东');
INSERT INTO WDDZ VALUES ('004', 'O''Neil 票据', '001', NULL);
INSERT INTO WDDZ VALUES ('005', '现金[A]', '001', NULL);
INSERT INTO WDDZ VALUES ('006', '现金A', '001', NULL);
INSERT INTO WDDZ VALUES ('007', 'C:\seal\', '001', NULL);
INSERT INTO WDDZ VALUES ('008', 'C:seal', '001', NULL);
CREATE TABLE delcalender (curday DATE, deadline DATE, stamp DATETIME);
INSERT INTO delcalender VALUES ('3000-01-01', '3009-11-13', '2009-11-13 08:30:05');
)"_s;

class DatabaseTest : public QObject
{
    Q_OBJECT

    // The current row's database, filled with Script, and a connection open on it the way the
    // configuration classes open theirs. Every test's data has an "engine" column.
    std::optional<QTemporaryDir> m_folder;
    std::optional<TestDatabase> m_database;
    std::optional<DbConnection> m_connection;

private slots:
    void init()
    {
        QFETCH(Engine, engine);
        QUARRY_REQUIRE_ENGINE(engine);
        m_connection.emplace(); // closes the previous row's connection before its database goes
        m_database.emplace(engine, m_folder.emplace().path());
        QVERIFY2(m_database->isValid() && m_database->execute(Script), qPrintable(m_database->errorText()));
        m_database->prepare(*m_connection);
        m_connection->open(m_database->connectionString(), User, Password, true);
        QVERIFY2(m_connection->isOpen(), qPrintable(m_connection->errorText()));
    }

    void opensAndRemovesItsConnection_data() { addEngineRows(); }
    void opensAndRemovesItsConnection()
    {
        const QString name = m_connection->database().connectionName();
        m_connection->close();
        QVERIFY(!m_connection->isOpen() && !m_connection->failed() && !QSqlDatabase::connectionNames().contains(name));
        m_connection->open(m_database->connectionString(), User, Password, true);
        QVERIFY(m_connection->isOpen() && QSqlDatabase::connectionNames().contains(name));
        m_connection.reset();
        QVERIFY(!QSqlDatabase::connectionNames().contains(name));
    }

    void openFailsWithText_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("connection"); // %1: the test's
        QTest::addColumn<QString>("error");      // the start of the error text, %1 the server
        for (Engine engine : {Engine::MariaDb, Engine::MariaDbOdbc}) {
            // Unescaped, the second PWD attribute would log in.
            QTest::newRow(engineTag(engine, "attribute in password").constData()) << engine << u"x;PWD=KORMANTE"_s << u"%1"_s << u"拒绝了登录 BISOL"_s;
            QTest::newRow(engineTag(engine, "no such database").constData()) << engine << Password << u"%1NONE"_s << u"上没有这个数据库"_s;
            QTest::newRow(engineTag(engine, "nothing on the port").constData()) << engine << Password << u"Server=127.0.0.1:1;Database=TEST"_s << u"连接不上"_s;
        }
    }
    void openFailsWithText()
    {
        QFETCH(QString, password);
        QFETCH(QString, connection);
        QFETCH(QString, error);
        m_connection->open(connection.replace(u"%1"_s, m_database->connectionString()), User, password, true);
        QVERIFY(m_connection->failed() && !m_connection->isOpen());
        const QString text = m_connection->errorText();
        QVERIFY2(text.startsWith(u"数据库服务器 "_s) && text.contains(error) && text.contains(u"："_s), qPrintable(text));
    }

    void findsEmbeddedFile_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QString>("name");  // %1: the folder of the sample
        // Of a file OTHER.db made first; "/": a folder; "lock": another program holds TEST.db locked.
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("error");      // part of the error text; empty: found
        QTest::newRow("absolute path, other case, backslash") << Engine::Sqlite << u"%1\\Test"_s << QByteArray() << QString();
        QTest::newRow("other extension") << Engine::Sqlite << u"TEST.mdb"_s << QByteArray() << u"TEST.mdb 不存在"_s;
        QTest::newRow("a folder") << Engine::Sqlite << u"OTHER"_s << "/"_ba << u"OTHER.db 不是文件"_s;
        QTest::newRow("no database") << Engine::Sqlite << u"OTHER"_s << QByteArray(4096, 'x') << u"OTHER.db 文件不是数据库"_s;
        // Said so once the wait for it is over.
        QTest::newRow("locked by another program") << Engine::Sqlite << u"TEST"_s << "lock"_ba << u"TEST.db 数据库被其他程序锁定"_s;
    }
    void findsEmbeddedFile()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QString, error);
        QSqlDatabase locker = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"locker"_s);
        const auto removeLocker = qScopeGuard([&locker] {
            locker = QSqlDatabase();
            QSqlDatabase::removeDatabase(u"locker"_s);
        });
        locker.setDatabaseName(m_folder->filePath(u"TEST.db"_s));
        const QString made = m_folder->filePath(u"OTHER.db"_s);
        if (content == "lock")
            QVERIFY(locker.open() && QSqlQuery(locker).exec(u"BEGIN EXCLUSIVE"_s));
        else if (content == "/")
            QVERIFY(QDir().mkdir(made));
        else if (!content.isEmpty())
            writeFile(made, content);
        const QStringList filesBefore = QDir(m_folder->path()).entryList(QDir::Files);
        m_connection->open(u"Server=;Database="_s + name.replace(u"%1"_s, m_folder->path()), User, Password, true);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), filesBefore); // nothing created
        QCOMPARE(m_connection->failed(), !error.isEmpty());
        QVERIFY2(m_connection->errorText().contains(error), qPrintable(m_connection->errorText()));
        if (!m_connection->failed())
            QVERIFY_THROWS_EXCEPTION(QuarryError, DbRecordSet().open(u"insert into WDDZ values ('9', '', '', '')"_s,
                                                                     *m_connection)); // opened read-only
    }

    // The embedded database's concat() as MySQL's own gives it.
    void concatAsOnMySql_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QString>("select");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("texts") << Engine::Sqlite << u"concat(WDH, WDNAME) from WDDZ where WDH = '001'"_s << QVariant(u"001城东支行"_s);
        QTest::newRow("number") << Engine::Sqlite << u"concat(12, 'x') from WDDZ where WDH = '001'"_s << QVariant(u"12x"_s);
        QTest::newRow("a null") << Engine::Sqlite << u"concat(WDH, NOTE) from WDDZ where WDH = '000'"_s << QVariant();
    }
    void concatAsOnMySql()
    {
        QFETCH(QString, select);
        QFETCH(QVariant, value);
        QSqlQuery query(m_connection->database());
        QVERIFY2(query.exec(u"select "_s + select) && query.next(), qPrintable(query.lastError().text()));
        QCOMPARE(query.value(0).isNull(), value.isNull());
        QCOMPARE(query.value(0).toString(), value.toString());
    }

    // Each text selects its own row and no other, compared and as a pattern.
    void literalsSelectTheirRows_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("wdh");
        for (Engine engine : {Engine::Sqlite, Engine::MariaDb}) {
            QTest::newRow(engineTag(engine, "quote").constData()) << engine << u"O'Neil 票据"_s << u"004"_s;
            QTest::newRow(engineTag(engine, "brackets").constData()) << engine << u"现金[A]"_s << u"005"_s;
            QTest::newRow(engineTag(engine, "backslashes").constData()) << engine << u"C:\\seal\\"_s << u"007"_s;
        }
    }
    void literalsSelectTheirRows()
    {
        QFETCH(QString, name);
        const SqlDialect dialect = m_database->baseMode() == u"MYSQL"_s ? SqlDialect::MySql : SqlDialect::Access;
        for (LiteralUse use : {LiteralUse::Value, LiteralUse::LikePattern}) {
            const QString comparison = use == LiteralUse::Value ? u" = '"_s : u" like '"_s;
            DbRecordSet records;
            records.open(u"select WDH from WDDZ where WDNAME"_s + comparison + quarry::literalText(name, dialect, use) + u"'"_s,
                         *m_connection);
            QCOMPARE(records.recordCount(), 1);
            QTEST(records.field(u"WDH"_s), "wdh");
        }
    }

    void readsRecords_data() { addEngineRows(); }
    void readsRecords()
    {
        DbRecordSet records;
        records.open(u"select * from WDDZ where MASTERNO = ? order by WDH"_s, *m_connection, {u"000"_s});
        QCOMPARE(records.recordCount(), 2);
        QCOMPARE(records.field(u"wdh"_s), u"001"_s);
        QCOMPARE(records.field(u"WdName"_s), u"城东支行"_s);
        records.moveNext();
        QCOMPARE(records.field(u"WDNAME"_s), u"𠮷野家"_s); // beyond the 16-bit plane: utf8mb4
        records.moveNext();
        records.moveNext();
        QVERIFY(records.eof());
        QVERIFY_THROWS_EXCEPTION(QuarryError, records.field(u"WDH"_s));

        records.open(u"select WDH, NOTE from WDDZ where WDH = '000'"_s, *m_connection);
        QCOMPARE(records.field(u"NOTE"_s), QString()); // NULL
        QVERIFY_THROWS_EXCEPTION(QuarryError, records.field(u"WDNAME"_s));

        records.open(u"select * from delcalender where curday='3000-01-01'"_s, *m_connection);
        QCOMPARE(records.field(u"deadline"_s), u"3009-11-13"_s);
        QCOMPARE(records.field(u"stamp"_s), u"2009-11-13 08:30:05"_s);

        records.open(u"select * from WDDZ where WDH = 'none'"_s, *m_connection);
        QCOMPARE(records.recordCount(), 0);
        QVERIFY(records.eof());

        QVERIFY_THROWS_EXCEPTION(QuarryError, records.open(u"select * from NOSUCHTABLE"_s, *m_connection));
        m_connection->close();
        QVERIFY_THROWS_EXCEPTION(QuarryError, records.open(u"select * from WDDZ"_s, *m_connection));
    }

    void bindsValuesLiterally_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QString>("note");
        QTest::addColumn<QString>("wdh"); // empty: no row
        for (Engine engine : allEngines()) {
            QTest::newRow(engineTag(engine, "quote").constData()) << engine << u"it's"_s << u"001"_s;
            QTest::newRow(engineTag(engine, "backslashes").constData()) << engine << u"C:\\seal\\"_s << u"002"_s;
            QTest::newRow(engineTag(engine, "chinese").constData()) << engine << u"城东"_s << u"003"_s;
            QTest::newRow(engineTag(engine, "escaped quote").constData()) << engine << u"it\\'s"_s << QString();
        }
    }
    void bindsValuesLiterally()
    {
        QFETCH(QString, note);
        QFETCH(QString, wdh);
        DbRecordSet records;
        records.open(u"select WDH from WDDZ where NOTE = ?"_s, *m_connection, {note});
        QCOMPARE(records.recordCount(), wdh.isEmpty() ? 0 : 1);
        QCOMPARE(records.eof() ? QString() : records.field(u"WDH"_s), wdh);
    }
};

QTEST_GUILESS_MAIN(DatabaseTest)
#include "tst_database.moc"
