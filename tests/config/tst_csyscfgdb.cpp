#include "ModalWatch.h"
#include "SampleStation.h"

#include <quarry/CSysCfgDb.h>
#include <quarry/QuarryError.h>

#include <QDate>
#include <QFile>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using quarry::CSysCfgDb;
using quarry::test::Engine;
using quarry::test::SampleStation;

using Getter = std::function<QString(const CSysCfgDb &)>;
Q_DECLARE_METATYPE(Getter)

namespace {

// Every list and code table as the getters give them out.
QStringList render(const CSysCfgDb &c)
{
    const auto join = [](qint16 count, const std::function<QString(qint16)> &item) {
        QStringList items;
        for (qint16 i = 0; i < count; ++i)
            items.append(item(i));
        return items.join(u'|');
    };
    using I = qint16;
    return {
        join(c.GetTotalAccState(), [&](I i) { return c.GetAccStateId(i) + u' ' + c.GetAccStateName(i); }),
        join(c.GetTotalCurrencyId(), [&](I i) { return c.GetCurrencyId(i) + u' ' + c.GetCurrencyName(i); }),
        join(c.GetTotalAccType(), [&](I i) { return c.GetAccTypeName(i); }),
        join(c.GetTotalAccStateWord(),
             [&](I i) { return QString::number(c.GetAccStateWordId(i)) + u' ' + c.GetAccStateWordName(i); }),
        // Codes are compared without regard to case and surrounding blanks.
        c.GetCurrDescById(u" rmb "_s) + u'|' + c.GetTcFlagDescById(u"1 "_s) + u'|'
            + c.GetSealPwdFDescById(u" 2"_s),
    };
}

const QString NoServer = u"连接数据库127.0.0.1:1 失败！"_s;
const QStringList NothingLoaded{{}, {}, {}, {}, u"||"_s};
const QStringList ImportLists{u"0 正常|1 冻结|2 销户|3 挂失"_s, u"01 人民币|13 港币|14 美元|27 日元|38 欧元"_s,
                              u"基本存款账户|一般存款账户|专用存款账户|临时存款账户|个人结算账户"_s,
                              u"1 正常|2 挂失|3 冻结|4 止付"_s, u"||"_s};

// What the call gave, or "error <number> <source>: <description>".
QString outcome(const std::function<QString()> &call)
{
    try {
        return call();
    } catch (const quarry::QuarryError &e) {
        return u"error %1 %2: %3"_s.arg(e.number()).arg(e.source(), e.description());
    }
}

// GetParameter's result and the message box it showed, if any: "False <caption>: <text>".
QString loadShown(CSysCfgDb &config)
{
    quarry::test::BoxSeen seen;
    quarry::test::ModalWatch watch(nullptr, quarry::test::answerBox(QMessageBox::Ok, &seen));
    const QString result = config.GetParameter() ? u"True"_s : u"False"_s;
    return seen.shown ? result + u' ' + seen.caption + u": "_s + seen.text : result;
}

} // namespace

class TestCSysCfgDb : public QObject
{
    Q_OBJECT

private slots:
    // The lists depend on the engine's SQL; the ODBC path is taken once.
    void loadsTheProfileAndTheDate_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QByteArray>("mode");
        QTest::addColumn<QString>("change"); // to the local database; "down" for a closed port
        QTest::addColumn<QString>("loaded"); // "True", or the start of the message shown
        QTest::addColumn<QStringList>("lists");
        // Codes from %1 to 32,767 for one list, beside the sample's two: from 3 on, they
        // fill a 16-bit count.
        const QString tcFlagsFrom =
            u"INSERT INTO P_FIELD_VAL_DEF (FieldName, FieldValue, ValueDescr) WITH RECURSIVE d (i) AS "
            "(SELECT 0 UNION ALL SELECT i + 1 FROM d WHERE i < 31) "
            "SELECT 'TcFlag', a.i * 1024 + b.i * 32 + c.i, 'x' FROM d a, d b, d c "
            "WHERE a.i * 1024 + b.i * 32 + c.i >= %1;"_s;
        const QString failed = u"False 系统提示: 从数据库读取系统参数错误！"_s;
        for (Engine engine : quarry::test::allEngines()) {
            const auto row = [&](const char *tag, const QByteArray &mode, const QString &change) -> QTestData & {
                return QTest::newRow(quarry::test::engineTag(engine, tag).constData()) << engine << mode << change;
            };
            row("Zacen", "Zacen", {}) << u"True"_s << ImportLists;
            if (engine == Engine::MariaDbOdbc)
                continue;
            row("Lumun", "Lumun", {}) << u"True"_s << QStringList{{}, {}, {}, {}, u"人民币|转账|密码挂失"_s};
            row("another profile, database down", "Refol", u"down"_s) << u"True"_s << NothingLoaded;
            row("database down", "Zacen", u"down"_s) << failed + NoServer << NothingLoaded;
            // A failed load keeps the lists loaded before it.
            row("fourth list unreadable", "Zacen", u"ALTER TABLE ref_ImportAcc DROP OtherAccStateWordName;"_s) << failed << (ImportLists.first(3) + NothingLoaded.last(2));
            // State word ids are 16-bit: both ends fit, one past does not.
            const QString words = u"UPDATE ref_ImportAcc SET OtherAccStateWordId = %1 WHERE RefId = 1;\nUPDATE ref_ImportAcc SET OtherAccStateWordId = %2 WHERE RefId = 2;\n"_s;
            row("state words at the ends of 16 bits", "Zacen", words.arg(-32768).arg(32767)) << u"True"_s << (ImportLists.first(3) << u"-32768 正常|32767 挂失|3 冻结|4 止付"_s << u"||"_s);
            row("a state word past 16 bits", "Zacen", words.arg(-32769).arg(2)) << failed << (ImportLists.first(3) + NothingLoaded.last(2));
            row("as many codes as a count holds", "Lumun", tcFlagsFrom.arg(3)) << u"True"_s << QStringList{{}, {}, {}, {}, u"人民币|转账|密码挂失"_s};
            row("one code more than a count holds", "Lumun", tcFlagsFrom.arg(2)) << failed << (NothingLoaded.first(4) << u"人民币||"_s);
        }
    }

    void loadsTheProfileAndTheDate()
    {
        QFETCH(Engine, engine);
        QFETCH(QByteArray, mode);
        QFETCH(QString, change);
        QFETCH(QString, loaded);
        QUARRY_REQUIRE_ENGINE(engine);
        const bool down = change == u"down"_s;
        SampleStation station(engine, down ? SampleStation::Contents::Empty : SampleStation::Contents::Sample);
        QVERIFY2(station.isValid() && (down || station.local().execute(change)),
                 qPrintable(station.errorText() + station.local().errorText()));
        // The embedded databases name no server: they are deleted.
        for (const QString &name : down ? QStringList{u"/SEAL.db"_s, u"/LOCAL.db"_s} : QStringList())
            QFile::remove(station.folder() + name);
        station.writeIni("[USER]\nMODE=" + mode + '\n', down ? u"127.0.0.1:1"_s : QString());

        CSysCfgDb config;
        const QString shown = loadShown(config);
        QVERIFY2(loaded == u"True"_s ? shown == loaded : shown.startsWith(loaded), qPrintable(shown));
        QTEST(render(config), "lists");
        // The business date has no handler: the connection's error reaches the caller.
        const QString today = outcome([&] { return config.GetToday(); });
        // Else the sample's deadline 3010-01-05, a thousand years back.
        const QString expected = down ? u"error 2000 CSysCfgDb.ConnectSealDb(): "_s + NoServer : u"2010-01-05"_s;
        QVERIFY2(today.startsWith(expected), qPrintable(today));
        if (down)
            return;
        // Read once: a new object sees the row gone and falls back on the machine's date.
        QVERIFY(station.seal().execute(u"DELETE FROM delcalender WHERE curday = '3000-01-01';"_s));
        QCOMPARE(config.GetToday(), today);
        QCOMPARE(CSysCfgDb().GetToday(), QDate::currentDate().toString(u"yyyy-MM-dd"_s));
    }

    void getters_data()
    {
        QTest::addColumn<QByteArray>("mode");
        QTest::addColumn<Getter>("getter");
        QTest::addColumn<QString>("before"); // GetParameter; the answer, or "error <number>"
        QTest::addColumn<QString>("after");
        using C = const CSysCfgDb &;
        const auto row = [](const char *tag, const QByteArray &mode, const Getter &getter,
                            const QString &before, const QString &after) {
            QTest::newRow(tag) << mode << getter << before << after;
        };
        row("past the end", "Zacen", [](C c) { return c.GetCurrencyId(5); }, {}, {});
        row("word id past the end", "Zacen", [](C c) { return QString::number(c.GetAccStateWordId(4)); }, u"error 13"_s, u"error 13"_s);
        row("negative", "Zacen", [](C c) { return c.GetAccTypeName(-1); }, u"error 9"_s, u"error 9"_s);
        // Codes are trimmed of blanks (U+0020) only.
        row("code with an ideographic space", "Lumun", [](C c) { return c.GetCurrDescById(u"RMB\u3000"_s); }, {}, {});
    }

    // The index and lookup rules do not depend on the engine.
    void getters()
    {
        QFETCH(QByteArray, mode);
        QFETCH(Getter, getter);
        SampleStation station(Engine::Sqlite);
        station.writeIni("[USER]\nMODE=" + mode + '\n');
        CSysCfgDb config;
        // The answer, or the error's number.
        const auto answer = [&] { return outcome([&] { return getter(config); }).section(u' ', 0, 1); };
        QTEST(answer(), "before");
        QVERIFY(config.GetParameter() && config.GetParameter()); // read again, not added again
        QTEST(answer(), "after");
    }
};

QTEST_MAIN(TestCSysCfgDb)
#include "tst_csyscfgdb.moc"
