#include "SampleStation.h"

#include <quarry/CSysCfgDb.h>
#include <quarry/QuarryError.h>

#include <QDate>
#include <QFile>
#include <QTemporaryFile>
#include <QTest>

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include <unistd.h>

using namespace Qt::StringLiterals;
using quarry::CSysCfgDb;
using quarry::QuarryError;
using quarry::test::Engine;
using quarry::test::SampleStation;

using Getter = std::function<QString(const CSysCfgDb &)>;
Q_DECLARE_METATYPE(Getter)

namespace {

const QString DownServer = u"127.0.0.1:1"_s;

// Every list and code table as the getters give them out.
QStringList render(const CSysCfgDb &config)
{
    const auto join = [](qint16 count, const std::function<QString(qint16)> &item) {
        QStringList items;
        for (qint16 i = 0; i < count; ++i)
            items.append(item(i));
        return items.join(u'|');
    };
    return {
        u"states: "_s
            + join(config.GetTotalAccState(),
                   [&](qint16 i) { return config.GetAccStateId(i) + u' ' + config.GetAccStateName(i); }),
        u"currencies: "_s
            + join(config.GetTotalCurrencyId(),
                   [&](qint16 i) { return config.GetCurrencyId(i) + u' ' + config.GetCurrencyName(i); }),
        u"types: "_s
            + join(config.GetTotalAccType(), [&](qint16 i) { return config.GetAccTypeName(i); }),
        u"words: "_s
            + join(config.GetTotalAccStateWord(),
                   [&](qint16 i) {
                       return QString::number(config.GetAccStateWordId(i)) + u' '
                              + config.GetAccStateWordName(i);
                   }),
        // Codes are compared without regard to case and surrounding blanks.
        u"codes: "_s + config.GetCurrDescById(u" rmb "_s) + u'|' + config.GetTcFlagDescById(u"1 "_s)
            + u'|' + config.GetSealPwdFDescById(u" 2"_s),
    };
}

const QStringList NothingLoaded{u"states: "_s, u"currencies: "_s, u"types: "_s, u"words: "_s,
                                u"codes: ||"_s};
const QString ImportStates = u"states: 0 正常|1 冻结|2 销户|3 挂失"_s;
const QString ImportCurrencies = u"currencies: 01 人民币|13 港币|14 美元|27 日元|38 欧元"_s;
const QString ImportTypes = u"types: 基本存款账户|一般存款账户|专用存款账户|临时存款账户|个人结算账户"_s;
const QStringList ImportLists{ImportStates, ImportCurrencies, ImportTypes,
                              u"words: 1 正常|2 挂失|3 冻结|4 止付"_s, u"codes: ||"_s};
const QStringList CodeTables{u"states: "_s, u"currencies: "_s, u"types: "_s, u"words: "_s,
                             u"codes: 人民币|转账|密码挂失"_s};

// Standard error while the object lives, where messages go without a display.
class StderrCapture
{
public:
    StderrCapture()
    {
        std::fflush(stderr);
        m_file.open();
        m_saved = ::dup(STDERR_FILENO);
        ::dup2(m_file.handle(), STDERR_FILENO);
    }
    ~StderrCapture() { restore(); }
    QString text()
    {
        restore();
        m_file.seek(0);
        return QString::fromUtf8(m_file.readAll());
    }

private:
    void restore()
    {
        if (m_saved < 0)
            return;
        std::fflush(stderr);
        ::dup2(m_saved, STDERR_FILENO);
        ::close(m_saved);
        m_saved = -1;
    }

    QTemporaryFile m_file;
    int m_saved = -1;
};

std::optional<QuarryError> errorOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const QuarryError &error) {
        return error;
    }
    return std::nullopt;
}

// A station whose seal.ini names DownServer, where no database answers (the
// embedded ones, which name no server, are deleted).
std::unique_ptr<SampleStation> downStation(Engine engine, const QByteArray &extra)
{
    auto station = std::make_unique<SampleStation>(engine, SampleStation::Contents::Empty);
    station->writeIni(extra, DownServer);
    if (engine == Engine::Sqlite) {
        for (const QString &name : {u"/SEAL.db"_s, u"/LOCAL.db"_s})
            QFile::remove(station->folder() + name);
    }
    return station;
}

template<typename Add>
void forEachEngine(Add add)
{
    for (Engine engine : quarry::test::allEngines())
        add(engine, quarry::test::engineName(engine));
}

// Rows of 32,768 codes for one list: one more than a 16-bit count holds.
const QString TooManyTcFlags = uR"(
INSERT INTO P_FIELD_VAL_DEF (FieldName, FieldValue, ValueDescr)
WITH RECURSIVE d (i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM d WHERE i < 31)
SELECT 'TcFlag', a.i * 1024 + b.i * 32 + c.i, 'x' FROM d a, d b, d c;
)"_s;

} // namespace

class TestCSysCfgDb : public QObject
{
    Q_OBJECT

private slots:
    void loadsTheListsOfTheProfile_data();
    void loadsTheListsOfTheProfile();
    void getters_data();
    void getters();
    void today_data();
    void today();
    void failedLoadKeepsEarlierLists_data();
    void failedLoadKeepsEarlierLists();
    void todayWithTheDatabaseDown_data();
    void todayWithTheDatabaseDown();

private:
    // The sample station of the engine, for the tests that only read it.
    SampleStation &sample(Engine engine);

    std::map<Engine, std::unique_ptr<SampleStation>> m_samples;
};

SampleStation &TestCSysCfgDb::sample(Engine engine)
{
    auto &station = m_samples[engine];
    if (!station)
        station = std::make_unique<SampleStation>(engine);
    return *station;
}

void TestCSysCfgDb::loadsTheListsOfTheProfile_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QString>("server"); // "" the test server
    QTest::addColumn<QStringList>("lists");
    forEachEngine([](Engine engine, const QString &e) {
        const auto row = [&](const char *tag) -> QTestData & {
            return QTest::addRow("%s/%s", qPrintable(e), tag) << engine;
        };
        row("Zacen") << QByteArray("Zacen") << QString() << ImportLists;
        row("Lumun") << QByteArray("Lumun") << QString() << CodeTables;
        row("ordinary bank") << QByteArray("普通银行") << QString() << NothingLoaded;
        row("Refol, database down") << QByteArray("Refol") << DownServer << NothingLoaded;
    });
}

void TestCSysCfgDb::loadsTheListsOfTheProfile()
{
    QFETCH(Engine, engine);
    QFETCH(QByteArray, mode);
    QFETCH(QString, server);
    QFETCH(QStringList, lists);
    QUARRY_REQUIRE_ENGINE(engine);
    const QByteArray ini = "[USER]\nMODE=" + mode + '\n';
    const auto down = server.isEmpty() ? nullptr : downStation(engine, ini);
    SampleStation &station = down ? *down : sample(engine);
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    if (!down)
        station.writeIni(ini);

    CSysCfgDb config;
    QCOMPARE(render(config), NothingLoaded); // nothing before GetParameter
    QVERIFY(config.GetParameter());
    QCOMPARE(render(config), lists);
    QVERIFY(config.GetParameter()); // read again, not added again
    QCOMPARE(render(config), lists);
}

void TestCSysCfgDb::getters_data()
{
    QTest::addColumn<bool>("loaded"); // GetParameter called
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("expected"); // "error <number>" for an error

    const auto row = [](const char *tag, bool loaded, const QString &expected, const Getter &getter) {
        QTest::newRow(tag) << loaded << getter << expected;
    };
    using C = const CSysCfgDb &;
    row("currency before loading", false, {}, [](C c) { return c.GetCurrencyId(0); });
    row("word id before loading", false, u"error 13"_s,
        [](C c) { return QString::number(c.GetAccStateWordId(0)); });
    row("negative before loading", false, u"error 9"_s, [](C c) { return c.GetAccTypeName(-1); });
    row("last state", true, u"挂失"_s, [](C c) { return c.GetAccStateName(3); });
    row("state past the end", true, {}, [](C c) { return c.GetAccStateId(4); });
    row("state name past the end", true, {}, [](C c) { return c.GetAccStateName(4); });
    row("currency past the end", true, {}, [](C c) { return c.GetCurrencyName(5); });
    row("type past the end", true, {}, [](C c) { return c.GetAccTypeName(5); });
    row("word name past the end", true, {}, [](C c) { return c.GetAccStateWordName(4); });
    row("word id past the end", true, u"error 13"_s,
        [](C c) { return QString::number(c.GetAccStateWordId(4)); });
    row("negative state", true, u"error 9"_s, [](C c) { return c.GetAccStateId(-1); });
    row("negative word id", true, u"error 9"_s,
        [](C c) { return QString::number(c.GetAccStateWordId(-2)); });
    row("huge index", true, {}, [](C c) { return c.GetCurrencyId(32767); });
}

// The rules of the getters, on the embedded database.
void TestCSysCfgDb::getters()
{
    QFETCH(bool, loaded);
    QFETCH(Getter, getter);
    QFETCH(QString, expected);
    SampleStation &station = sample(Engine::Sqlite);
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    station.writeIni("[USER]\nMODE=Zacen\n");
    CSysCfgDb config;
    if (loaded)
        QVERIFY(config.GetParameter());
    QString answer;
    if (const auto error = errorOf([&] { answer = getter(config); }))
        answer = u"error "_s + QString::number(error->number());
    QCOMPARE(answer, expected);
}

void TestCSysCfgDb::today_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QString>("change"); // to the business-date row, before the first call
    QTest::addColumn<QString>("today");
    const QString machineDate = QDate::currentDate().toString(u"yyyy-MM-dd"_s);
    forEachEngine([&](Engine engine, const QString &e) {
        const auto row = [&](const char *tag) -> QTestData & {
            return QTest::addRow("%s/%s", qPrintable(e), tag) << engine;
        };
        row("sample date") << QString() << u"2010-01-05"_s;
        row("other date")
            << u"UPDATE delcalender SET deadline = '3009-11-13' WHERE curday = '3000-01-01';"_s
            << u"2009-11-13"_s;
        row("no business-date row") << u"DELETE FROM delcalender WHERE curday = '3000-01-01';"_s
                                    << machineDate;
    });
}

// The date is read once; a change of the table is seen by a new object only.
void TestCSysCfgDb::today()
{
    QFETCH(Engine, engine);
    QFETCH(QString, change);
    QFETCH(QString, today);
    QUARRY_REQUIRE_ENGINE(engine);
    SampleStation station(engine);
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    QVERIFY2(station.seal().execute(change), qPrintable(station.seal().errorText()));
    station.writeIni();

    CSysCfgDb config;
    QCOMPARE(config.GetToday(), today);
    QVERIFY2(station.seal().execute(
                 u"DELETE FROM delcalender WHERE curday = '3000-01-01';\n"
                 "INSERT INTO delcalender (curday, deadline) VALUES ('3000-01-01', '3012-03-04');"_s),
             qPrintable(station.seal().errorText()));
    QCOMPARE(config.GetToday(), today);
    QCOMPARE(CSysCfgDb().GetToday(), u"2012-03-04"_s);
}

void TestCSysCfgDb::failedLoadKeepsEarlierLists_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QString>("change"); // to the local database
    QTest::addColumn<QString>("server"); // "" the test server
    QTest::addColumn<QString>("message"); // the start of the message after the caption
    QTest::addColumn<QStringList>("lists");
    forEachEngine([](Engine engine, const QString &e) {
        const auto row = [&](const char *tag) -> QTestData & {
            return QTest::addRow("%s/%s", qPrintable(e), tag) << engine;
        };
        row("database down") << QByteArray("Zacen") << QString() << DownServer
                             << u"从数据库读取系统参数错误！连接数据库127.0.0.1:1 失败！"_s << NothingLoaded;
        row("fourth list unreadable")
            << QByteArray("Zacen") << u"ALTER TABLE ref_ImportAcc DROP COLUMN OtherAccStateWordName;"_s
            << QString() << u"从数据库读取系统参数错误！"_s
            << QStringList{ImportStates, ImportCurrencies, ImportTypes, u"words: "_s, u"codes: ||"_s};
        row("more codes than a count holds")
            << QByteArray("Lumun") << TooManyTcFlags << QString() << u"从数据库读取系统参数错误！"_s
            << QStringList{u"states: "_s, u"currencies: "_s, u"types: "_s, u"words: "_s,
                           u"codes: 人民币||"_s};
    });
}

void TestCSysCfgDb::failedLoadKeepsEarlierLists()
{
    QFETCH(Engine, engine);
    QFETCH(QByteArray, mode);
    QFETCH(QString, change);
    QFETCH(QString, server);
    QFETCH(QString, message);
    QFETCH(QStringList, lists);
    QUARRY_REQUIRE_ENGINE(engine);
    const QByteArray ini = "[USER]\nMODE=" + mode + '\n';
    const auto station = server.isEmpty() ? std::make_unique<SampleStation>(engine)
                                          : downStation(engine, ini);
    QVERIFY2(station->isValid(), qPrintable(station->errorText()));
    QVERIFY2(station->local().execute(change), qPrintable(station->local().errorText()));
    if (server.isEmpty())
        station->writeIni(ini);

    CSysCfgDb config;
    StderrCapture capture;
    QVERIFY(!config.GetParameter());
    const QString shown = capture.text();
    QVERIFY2(shown.startsWith(u"系统提示: "_s + message), qPrintable(shown));
    QCOMPARE(render(config), lists);
}

void TestCSysCfgDb::todayWithTheDatabaseDown_data()
{
    QTest::addColumn<Engine>("engine");
    forEachEngine([](Engine engine, const QString &e) { QTest::newRow(qPrintable(e)) << engine; });
}

void TestCSysCfgDb::todayWithTheDatabaseDown()
{
    QFETCH(Engine, engine);
    QUARRY_REQUIRE_ENGINE(engine);
    const auto station = downStation(engine, {});
    QVERIFY2(station->isValid(), qPrintable(station->errorText()));

    CSysCfgDb config;
    const auto error = errorOf([&] { config.GetToday(); });
    QVERIFY(error);
    QCOMPARE(error->number(), QuarryError::DataError);
    QCOMPARE(error->source(), u"CSysCfgDb.ConnectSealDb()"_s);
    // The connection's own text follows.
    const QString failed = u"连接数据库"_s + DownServer + u" 失败！"_s;
    QVERIFY2(error->description().startsWith(failed), error->what());
    QVERIFY2(error->description().size() > failed.size(), error->what());
}

QTEST_GUILESS_MAIN(TestCSysCfgDb)
#include "tst_csyscfgdb.moc"
