// The station check on broken stations: each fault is found, named with
// the file and key, the folder or the server, and only the faults that stop
// the component keep the viewer from asking for a query.

#include "SampleLogs.h"

#include "LogCatalogue.h"
#include "StationCheck.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;
using quarry::apps::Finding;
using quarry::apps::StationCheck;
using quarry::test::Engine;

namespace {

// How a station is broken besides its seal.ini.
enum Break { Nothing, ServerDown };

QStringList sampleTables()
{
    return quarry::viewer::LogCatalogue::read(quarry::test::sampleCataloguePath()).tables();
}

} // namespace

class TestStationCheck : public QObject
{
    Q_OBJECT

private slots:
    void findings_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QByteArray>("ini");       // after the sample's databases and log folder
        QTest::addColumn<QStringList>("replaced"); // in seal.ini: pairs of text and its replacement
        QTest::addColumn<int>("broken");
        QTest::addColumn<QStringList>("tables"); // besides the sample logs'
        QTest::addColumn<QStringList>("faults"); // what the faults say, in order
        QTest::addColumn<int>("count");          // of faults
        QTest::addColumn<bool>("blocks");

        const auto row = [](const char *tag, const QByteArray &ini, const QStringList &faults, int count, bool blocks,
                            const QStringList &replaced = {}, Break broken = Nothing, Engine engine = Engine::Sqlite) {
            QTest::newRow(tag) << engine << ini << replaced << int(broken) << QStringList() << faults << count << blocks;
        };
        row("sample", "[USER]\nMODE=Vefos\n", {}, 0, false);
        row("not a number", "[BANKPARAM]\nPRINTLINES=abc\n[USER]\nMODE=Vefos\nQueryHintMode=2\n",
            {u"[BANKPARAM] PRINTLINES=abc 不是数字。组件读到这里就停止"_s, u"不起作用：[SBMK] DoubleSealQuota；[USER] MODE、QueryHintMode"_s,
             u"银行类型 [USER] MODE=Vefos 不起作用：组件在 [BANKPARAM] PRINTLINES 处停止读取"_s}, 2, true);
        // The usual profile is what a stopped read leaves too.
        row("two values", "[BANKPARAM]\nTOTALACCTYPE=0\n[HYADM]\nHYDHLEN=1e9\n",
            {u"[BANKPARAM] TOTALACCTYPE=0 应至少为 1。组件读到这里就停止"_s, u"[HYADM] HYDHLEN=1e9 超出了它的取值范围"_s}, 2, true);
        row("unknown profile", "[USER]\nMODE=vefos\n", {u"[USER] MODE=vefos 不是已知的银行类型"_s}, 1, false);
        row("unknown database type", {}, {u"[DATABASESET] BASEMODE=ACESS 不是支持的数据库类型"_s}, 1, true,
            {u"BASEMODE=ACCESS"_s, u"BASEMODE=ACESS"_s});
        row("no error log folder", {}, {u"/no/log（[ERROR] ERRORFILE="_s, u"不存在，也无法建立：上级文件夹 "_s}, 1, false,
            {u"/log\n"_s, u"/no/log\n"_s});
        // The double-seal quota of the local database's parameter table.
        row("quota from a server down", "[USER]\nMODE=Vefos\n",
            {u"[SBMK] DoubleSealQuota=-1 要从本地数据库的 parameter 表取值，但读取失败："_s, u"其后的 15 个键不再读取"_s, u"处理：让本地数据库可用"_s, u"[USER] MODE"_s,
             u"MODE=Vefos 不起作用"_s, u"验印数据库"_s, u"本地数据库"_s, u"127.0.0.1:1"_s}, 4, true,
            {u"DoubleSealQuota=0"_s, u"DoubleSealQuota=-1"_s}, ServerDown, Engine::MariaDb);
        QTest::newRow("missing log table") << Engine::Sqlite << QByteArray() << QStringList() << int(Nothing)
            << QStringList{u"NOSUCHLOG"_s, u"nosuchlog"_s} << QStringList{u"读不到表 NOSUCHLOG：no such table"_s} << 1 << false;
    }

    // The faults, in their order, and whether a query may be asked for.
    void findings()
    {
        QFETCH(Engine, engine);
        QFETCH(QByteArray, ini);
        QFETCH(QStringList, replaced);
        QFETCH(int, broken);
        QFETCH(QStringList, tables);
        QFETCH(QStringList, faults);
        QUARRY_SAMPLE_STATION(station, engine, ini);
        const QString sealIni = QDir(station.folder()).filePath(u"seal.ini"_s);
        if (broken == ServerDown)
            station.writeIni(ini, u"127.0.0.1:1"_s);
        QByteArray text = quarry::test::readFile(sealIni);
        for (qsizetype i = 0; i + 1 < replaced.size(); i += 2)
            text.replace(replaced[i].toUtf8(), replaced[i + 1].toUtf8());
        quarry::test::writeFile(sealIni, text);

        const QList<Finding> findings = StationCheck(QString(), sampleTables() + tables).run();
        QStringList said;
        for (const Finding &finding : findings) {
            if (finding.level == Finding::Level::Fault)
                said.append(finding.line());
        }
        const QString all = said.join(u'\n');
        qsizetype at = 0;
        for (const QString &part : std::as_const(faults)) {
            at = all.indexOf(part, at);
            QVERIFY2(at >= 0, qPrintable(all + u"\nlacks "_s + part));
        }
        QTEST(int(said.size()), "count");
        QCOMPARE(StationCheck::hasFault(findings), !faults.isEmpty());
        QTEST(StationCheck::blocksQuery(findings), "blocks");
    }
};

QTEST_MAIN(TestStationCheck)
#include "tst_stationcheck.moc"
