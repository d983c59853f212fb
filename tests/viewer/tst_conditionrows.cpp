// Every log's condition, asked through CQuarry as the viewer asks it (the
// sample catalogue's lists, lengths and flags) and run on the sample log
// tables as the viewer runs it, a page at a time: the rows the viewer shows
// are the rows the operator's input means, decided here from the rows
// themselves. For each log every field, and nothing given where no other
// test spells out the empty dialog's condition; once for all: wildcards,
// branches with their sub-branches (bank profile Vefos), and the
// characters that end an SQL literal or widen a LIKE, typed and pasted,
// which reach every log through the same helpers (tst_logclauses holds each
// log's clause to them). Every log runs on the embedded station
// (BASEMODE ACCESS) and on MariaDB (MYSQL), bill recognition's
// concat(opdate,optime) included; the statistics' SELECT is for MySQL and
// SQL Server only and runs on MariaDB. A jump into the rows, from the
// bookmarks of their order, lands on the rows read in that order, and a stop
// while they are walked ends the step on the server.

#include "DialogDriver.h"

#include "catalogue/ConditionRequest.h"
#include "LogCatalogue.h"
#include "rows/LogRowsModel.h"
#include "ReadRows.h"
#include "rows/LogSelect.h"

#include <QDateTime>
#include <QSqlError>
#include <QTest>

using namespace Qt::StringLiterals;
using quarry::test::Engine;
using quarry::test::Row;
using quarry::test::SampleStation;

namespace quarry::viewer {

namespace {

struct Case
{
    const char *tag;
    QString logType;
    QStringList steps; // DialogDriver steps
    // The rows the input means; none for every row.
    std::function<bool(const Row &)> selects;
};

bool in(const QString &value, const char *low, const char *high)
{
    return value >= QLatin1StringView(low) && value <= QLatin1StringView(high);
}

QList<Case> cases()
{
    const QStringList ywDates{u"MaskBoxKs=20060101"_s, u"MaskBoxJs=20081231"_s};
    const QStringList allDates{u"MaskBoxKs=20050101"_s, u"MaskBoxJs=20091231"_s};
    return {
        // Business log: account, teller, business type, dates, branch, seal card.
        {"YWRZ nothing", u"YWRZ"_s, {u"BtnOk!"_s}, {}},
        {"YWRZ every field", u"YWRZ"_s, QStringList{u"TxtAccNo=1101*"_s, u"TxtHy=%1"_s, u"comOpType#1"_s, u"Return"_s} + ywDates
            + QStringList{u"txtWdh=110101"_s, u"TxtYJKNumber=0000864"_s, u"BtnOk!"_s},
         [](const Row &r) {
             return r[u"accno"_s].startsWith(u"1101"_s) && r[u"opcode"_s].endsWith(u'1') && r[u"optype"_s] == u"开户"_s
                 && in(r[u"opdate"_s], "2006-01-01", "2008-12-31") && r[u"wdh"_s] == u"110101"_s
                 && r[u"yjknumber"_s] == u"0000864"_s;
         }},
        {"YWRZ wildcards", u"YWRZ"_s, {u"TxtAccNo=11?2*"_s, u"txtWdh=1102??"_s, u"BtnOk!"_s},
         [](const Row &r) {
             return r[u"accno"_s].startsWith(u"11"_s) && r[u"accno"_s].mid(3, 1) == u"2"_s && r[u"wdh"_s].size() == 6
                 && r[u"wdh"_s].startsWith(u"1102"_s);
         }},
        {"YWRZ sub-branches of three levels", u"YWRZ"_s, {u"txtWdh=110100"_s, u"chkSub~"_s, u"BtnOk!"_s},
         // The sample's codes extend their parent's code.
         [](const Row &r) { return r[u"wdh"_s].startsWith(u"1101"_s); }},
        {"YWRZ hostile typed", u"YWRZ"_s, {u"TxtAccNo=11'0\\1[0]1*"_s, u"TxtHy=0'0\\1[1]"_s, u"txtWdh=1101'01"_s, u"BtnOk!"_s},
         [](const Row &r) {
             return r[u"accno"_s].startsWith(u"110101"_s) && r[u"opcode"_s] == u"0011"_s && r[u"wdh"_s] == u"110101"_s;
         }},
        {"YWRZ hostile pasted", u"YWRZ"_s, {u"TxtAccNo^110101'*"_s, u"TxtHy^0[011"_s, u"txtWdh^[110101]"_s, u"TxtYJKNumber^0000\\864"_s, u"BtnOk!"_s},
         [](const Row &r) { return r[u"accno"_s].startsWith(u"110101"_s); }},

        // Seal verification log: teller, account, dates, cheques, branch, seal card, method, result.
        {"YYRZ every field", u"YYRZ"_s, QStringList{u"TxtHy=0011"_s, u"TxtAccNo=110101*"_s} + allDates
            + QStringList{u"TxtBZP=00000000"_s, u"TxtEZP=05000000"_s, u"txtWdh=110101"_s, u"TxtYJKNumber=0000*"_s,
                          u"cmbOpType#1"_s, u"Return"_s, u"cmbOpResult#1"_s, u"Return"_s, u"BtnOk!"_s},
         [](const Row &r) {
             return r[u"opcode"_s] == u"0011"_s && r[u"accno"_s].startsWith(u"110101"_s) && in(r[u"chequeno"_s], "00000000", "05000000")
                 && r[u"wdh"_s] == u"110101"_s && r[u"yjknumber"_s].startsWith(u"0000"_s) && r[u"optype"_s] == u"自动验印"_s
                 && r[u"result"_s] == u"通过"_s;
         }},

        // Teller log: operating teller, operation code, dates, branch.
        {"HYRZ every field", u"HYRZ"_s, QStringList{u"TxtHy=0011"_s, u"TxtCha=0012"_s, u"TxtOpType=1"_s} + allDates
            + QStringList{u"txtWdh=110101"_s, u"BtnOk!"_s},
         [](const Row &r) { return r[u"opcode"_s] == u"0011"_s && r[u"optype"_s] == u"1"_s && r[u"wdh"_s] == u"110101"_s; }},

        // Login log: teller, module, dates, branch in either letter case.
        {"SJRZ every field", u"SJRZ"_s, QStringList{u"TxtHy=0011"_s, u"TxtApp=1"_s} + allDates + QStringList{u"txtWdh=110101"_s, u"BtnOk!"_s},
         [](const Row &r) { return r[u"opcode"_s] == u"0011"_s && r[u"appname"_s] == u"1"_s && r[u"wdh"_s] == u"110101"_s; }},

        // Supervisor authorisation log: supervisor, operation, dates.
        {"ZGSQRZ nothing", u"ZGSQRZ"_s, {u"Command1!"_s}, {}},
        {"ZGSQRZ every field", u"ZGSQRZ"_s, QStringList{u"TxtCha=0013"_s, u"ComSQLX#1"_s, u"Return"_s} + allDates + QStringList{u"Command1!"_s},
         [](const Row &r) { return r[u"zgcode"_s] == u"0013"_s && r[u"optype"_s] == u"强制通过"_s; }},

        // Cheque management log: account, teller, cheques, dates, voucher type.
        {"ZPGLRZ every field", u"ZPGLRZ"_s, QStringList{u"TxtAccNo=110101*"_s, u"TxtHy=0012"_s, u"TxtBZP=00000000"_s, u"TxtEZP=09000000"_s}
            + allDates + QStringList{u"ComPZ#0"_s, u"Return"_s, u"CmdYes!"_s}, // one Down: 现金支票
         [](const Row &r) {
             return r[u"accno"_s].startsWith(u"110101"_s) && r[u"opcode"_s] == u"0012"_s && in(r[u"zpid"_s], "00000000", "09000000")
                 && r[u"pztype"_s] == u"现金支票"_s;
         }},

        // Bill recognition log: account, teller, cheques, branch, date and time, voucher type, result.
        {"PJSBRZ every field", u"PJSBRZ"_s, QStringList{u"TxtAccNo=110101*"_s, u"TxtHy=0011"_s, u"TxtBZP=00000000"_s, u"TxtEZP=05000000"_s,
                                                        u"txtWdh=110101"_s, u"MaskBoxKs=20050101"_s, u"Return"_s, u"MaskBoxJs=20091231"_s, u"Return"_s,
                                                        u"maskBeginTime=080000"_s, u"Return"_s, u"maskEndTime=120000"_s, u"Return"_s,
                                                        u"ComPZ#1"_s, u"Return"_s, u"ComPjsbResult#1"_s, u"Return"_s, u"CmdYes!"_s},
         [](const Row &r) {
             const QDateTime when = QDateTime::fromString(r[u"opdate"_s] + u' ' + r[u"optime"_s], u"yyyy-MM-dd HH:mm:ss"_s);
             return r[u"accno"_s].startsWith(u"110101"_s) && r[u"opcode"_s] == u"0011"_s && in(r[u"chequeno"_s], "00000000", "05000000")
                 && r[u"wdh"_s] == u"110101"_s && when >= QDateTime(QDate(2005, 1, 1), QTime(8, 0))
                 && when <= QDateTime(QDate(2009, 12, 31), QTime(12, 0)) && r[u"pztype"_s] == u"转账支票"_s
                 && r[u"chequeresult"_s] == u"通过"_s;
         }},

        // Seal requests: branch code as typed, dates.
        {"YJREQLOG every field", u"YJREQLOG"_s, {u"txtWdh=110101"_s, u"txtStDate=20060101"_s, u"txtEndDate=20081231"_s, u"cmdOK!"_s},
         [](const Row &r) {
             return (r[u"branchno"_s] == u"Bank110101"_s || r[u"masterno"_s] == u"110101"_s) && in(r[u"opdate"_s], "2006-01-01", "2008-12-31");
         }},

        // Compound log: account, teller, branch, seal card, dates.
        {"PTFHRZ every field", u"PTFHRZ"_s, QStringList{u"TxtAccNo=110101*"_s, u"TxtHy=0011"_s, u"txtWdh=110101"_s, u"TxtYJKNumber=000*"_s}
            + allDates + QStringList{u"BtnOk!"_s},
         [](const Row &r) {
             return r[u"accno"_s].startsWith(u"110101"_s) && r[u"opcode"_s] == u"0011"_s && r[u"wdh"_s] == u"110101"_s
                 && r[u"yjknumber"_s].startsWith(u"000"_s);
         }},
    };
}

LogEntry catalogueEntry(const QString &logType)
{
    const LogCatalogue catalogue = LogCatalogue::read(quarry::test::sampleCataloguePath());
    for (const LogEntry &entry : catalogue.entries()) {
        if (entry.logType == logType)
            return entry;
    }
    qFatal("No %s in the sample catalogue", qPrintable(logType));
}

// What the viewer shows for a log once the operator has taken the steps in
// its dialog: the condition, and the rows read in pages of 500, by
// lower-case column name; error says what failed, "" when nothing did.
struct Viewed
{
    QString condition;
    QList<Row> rows;
    QString error;
};

Viewed view(const QString &logType, const QStringList &steps)
{
    Viewed viewed;
    LogEntry entry = catalogueEntry(logType);
    StationDatabase database;
    if (viewed.error = database.open() + database.fill(entry.listA) + database.fill(entry.listB); !viewed.error.isEmpty())
        return viewed;
    if (quarry::test::operate([&] { viewed.condition = askCondition(entry); }, steps, QMessageBox::Yes).after != u"closed"_s
        || viewed.condition.isEmpty()) {
        viewed.error = u"The dialog handed back no condition."_s;
        return viewed;
    }
    LogRowsModel model(500);
    if (viewed.error = readRows(model, database, logSelect(entry, viewed.condition), entry.key); !viewed.error.isEmpty())
        return viewed;
    const LogRowsModel::ReadingAtOnce allRows(model);
    for (int r = 0; r < model.rowCount(); ++r) {
        Row row;
        for (int c = 0; c < model.columnCount(); ++c)
            row.insert(model.headerData(c, Qt::Horizontal).toString().toLower(), model.index(r, c).data().toString());
        viewed.rows.append(row);
    }
    viewed.error = model.lastError().text();
    return viewed;
}

const QByteArray Vefos = "[USER]\nMODE=Vefos\nQueryHintMode=0\n";

} // namespace

class TestConditionRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rows_data();
    void rows();
    void statistics_data();
    void statistics();
    void jumps_data();
    void jumps();
    void stopEndsTheStep();
};

void TestConditionRows::rows_data()
{
    QTest::addColumn<Engine>("engine");
    QTest::addColumn<int>("index");
    const QList<Case> all = cases();
    for (Engine engine : quarry::test::logEngines()) {
        for (qsizetype i = 0; i < all.size(); ++i)
            QTest::newRow(quarry::test::engineTag(engine, all[i].tag).constData()) << engine << int(i);
    }
}

void TestConditionRows::rows()
{
    QFETCH(Engine, engine);
    QFETCH(int, index);
    QUARRY_SAMPLE_STATION(station, engine, Vefos);
    const Case c = cases().at(index);
    const Viewed got = view(c.logType, c.steps);
    QVERIFY2(got.error.isEmpty(), qPrintable(got.error + u"\n"_s + got.condition));

    QStringList ids;
    for (const Row &row : got.rows)
        ids.append(row[u"logid"_s]);
    QStringList expected;
    const QList<Row> all = quarry::test::sealRows(station, u"SELECT * FROM "_s + catalogueEntry(c.logType).table);
    for (const Row &row : all) {
        if (!c.selects || c.selects(row))
            expected.append(row[u"logid"_s]);
    }
    ids.sort();
    expected.sort();
    QVERIFY2(ids == expected, qPrintable(u"%1 rows returned, %2 meant, by%3"_s.arg(ids.size()).arg(expected.size()).arg(got.condition)));
    // A condition proves nothing on rows it selects all or none of.
    QVERIFY2(!expected.isEmpty() && (!c.selects || expected.size() < all.size()), qPrintable(QString::number(expected.size())));
}

void TestConditionRows::statistics_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("branch"); // the teller's branch starts so
    QTest::addColumn<QString>("tellers"); // a teller matches when it starts so, "" for all

    const QStringList end{u"maskEndDate"_s, u"Return"_s, u"cmdOK!"_s};
    QTest::newRow("nothing") << end << QString() << QString();
    QTest::newRow("branch pattern") << QStringList{u"txtWdh=1101*"_s} + end << u"1101"_s << QString();
    QTest::newRow("teller wildcard, no branch") << QStringList{u"TxtHy=001?"_s} + end << QString() << u"001"_s;
    QTest::newRow("hostile pasted") << QStringList{u"txtWdh^1102'*"_s, u"TxtHy^[00]*"_s} + end << u"1102"_s << QString();
}

// The MySQL form of the statement on MariaDB; the counts reckoned here from
// the bill recognition rows and the tellers' branches.
void TestConditionRows::statistics()
{
    QFETCH(QStringList, steps);
    QFETCH(QString, branch);
    QFETCH(QString, tellers);
    QUARRY_SAMPLE_STATION(station, Engine::MariaDb, Vefos);
    const Viewed got = view(u"SEALRESULTSTAT"_s, steps);
    QVERIFY2(got.error.isEmpty(), qPrintable(got.error + u"\n"_s + got.condition));

    QHash<QString, QString> branchOf;
    for (const Row &row : quarry::test::sealRows(station, u"SELECT HYDH, WDH FROM HY"_s))
        branchOf.insert(row[u"hydh"_s], row[u"wdh"_s]);
    QMap<QString, std::pair<int, int>> counts; // operator: recognised, passed
    for (const Row &row : quarry::test::sealRows(station, u"SELECT opcode, opresult FROM pjsblog"_s)) {
        const int result = row[u"opresult"_s].toInt();
        if (result != 0 && result != 1 && result != 4 && result != 5)
            continue;
        auto &[recognised, passed] = counts[row[u"opcode"_s]];
        ++recognised;
        passed += result == 0 || result == 4;
    }
    QStringList expected;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        const auto [recognised, passed] = it.value();
        if (passed == 0 || !branchOf.contains(it.key()) || !branchOf[it.key()].startsWith(branch)
            || !it.key().startsWith(tellers))
            continue;
        expected.append(u"%1 %2 %3 %4"_s.arg(branchOf[it.key()], it.key()).arg(recognised).arg(passed));
    }
    QStringList counted;
    for (const Row &row : got.rows)
        counted.append(QStringList{row[u"wdh"_s], row[u"opcode"_s], row[u"total"_s], row[u"passed"_s]}.join(u' '));
    counted.sort();
    expected.sort();
    QVERIFY(!expected.isEmpty());
    QVERIFY2(counted == expected, qPrintable(u"%1 operators counted, %2 meant, by %3"_s.arg(counted.size()).arg(expected.size()).arg(got.condition)));
}

void TestConditionRows::jumps_data()
{
    QTest::addColumn<Engine>("engine");
    for (Engine engine : quarry::test::allEngines())
        QTest::newRow(quarry::test::engineTag(engine, "2000 rows").constData()) << engine;
}

// Pages of 7 rows and a bookmark every 50: every third page is read, each
// next to none read before, so that each starts at a mark's every distance
// (a mark's own row, one before and one after included) or from either
// end. The rows' own order is newest first by D and T (equal values and
// NULLs, indexed as a log's day and time) and then K; then by K; then by T
// going up (sorted once in a table of positions, or for ODBC, which stands
// for SQL Server, bookmarked as any other order); then the rows of a new
// statement.
void TestConditionRows::jumps()
{
    QFETCH(Engine, engine);
    QUARRY_REQUIRE_ENGINE(engine);
    SampleStation station(engine, SampleStation::Contents::Empty);
    station.changeSeal(u"CREATE TABLE JUMPS (K INTEGER NOT NULL PRIMARY KEY, D INTEGER, T INTEGER);\nCREATE INDEX JUMPS_DT ON JUMPS (D, T);\nINSERT INTO JUMPS "_s
                       + (engine == Engine::Sqlite ? u"WITH RECURSIVE n(K) AS (SELECT 1 UNION ALL SELECT K + 1 FROM n WHERE K < 2000) "_s : u"WITH n AS (SELECT seq AS K FROM seq_1_to_2000) "_s)
                       + u"SELECT K, CASE WHEN K % 11 = 0 THEN NULL ELSE K % 9 END, CASE WHEN K % 13 = 0 THEN NULL ELSE (K * 37) % 5 END FROM n;\n"_s);
    QVERIFY2(station.isValid(), qPrintable(station.errorText()));
    station.writeIni();
    StationDatabase database;
    QCOMPARE(database.open(), QString());
    LogRowsModel model(7, 50);
    const auto settled = [&model] { return QTest::qWaitFor([&model] { return !model.isBusy(); }, test::WaitLimit); };
    const auto landsRight = [&](const QString &order, const QString &where) {
        const QList<Row> ordered = quarry::test::sealRows(station, u"SELECT K FROM JUMPS"_s + where + u" ORDER BY "_s + order);
        QCOMPARE(model.rowCount(), ordered.size());
        for (int first = 0; first < ordered.size(); first += 21) {
            model.index(first, 0).data();
            QVERIFY(settled());
            for (int row = first; row < qMin(first + 7, int(ordered.size())); ++row)
                QVERIFY2(model.index(row, 0).data().toString() == ordered[row][u"k"_s], qPrintable(u"row %1 by %2"_s.arg(row).arg(order)));
        }
    };
    const RowOrder newestFirst{{u"D"_s, u"T"_s}, Qt::DescendingOrder};
    const QString some = u" WHERE K % 3 <> 0"_s;
    QCOMPARE(readRows(model, database, u"SELECT * FROM JUMPS"_s, u"K"_s, newestFirst), QString());
    landsRight(u"D DESC, T DESC, K DESC"_s, {});
    model.sort(0, Qt::DescendingOrder);
    QVERIFY(settled());
    landsRight(u"K DESC"_s, {});
    model.sort(2, Qt::AscendingOrder);
    QVERIFY(settled());
    landsRight(u"T, K"_s, {});
    QCOMPARE(readRows(model, database, u"SELECT * FROM JUMPS"_s + some, u"K"_s, newestFirst), QString());
    landsRight(u"D DESC, T DESC, K DESC"_s, some);

    // A jump into the middle starts from a mark, not from either end: with
    // the rows at both ends gone, it lands on the rows that followed the mark.
    QCOMPARE(readRows(model, database, u"SELECT * FROM JUMPS"_s + some, u"K"_s, newestFirst), QString());
    const QList<Row> before = quarry::test::sealRows(station, u"SELECT K FROM JUMPS"_s + some + u" ORDER BY D DESC, T DESC, K DESC"_s);
    station.changeSeal(u"DELETE FROM JUMPS WHERE K IN (%1, %2);\n"_s.arg(before.first()[u"k"_s], before.last()[u"k"_s]));
    model.index(651, 0).data();
    QVERIFY(settled());
    QCOMPARE(model.index(651, 0).data().toString(), before[651][u"k"_s]);
}

// A stop while the order's bookmarks are walked ends the step's statement
// on the server too, not only in the model. Each row takes 5 ms to read, so
// that every statement over them is slow.
void TestConditionRows::stopEndsTheStep()
{
    QUARRY_SAMPLE_DATABASE(station, database, Engine::MariaDb, Vefos);
    const QString running = u"SELECT ID FROM information_schema.PROCESSLIST WHERE INFO LIKE '%SLEEP(0.005)%' AND ID <> CONNECTION_ID()"_s;
    LogRowsModel model(10, 50);
    model.setQuery(database, u"SELECT * FROM YYLOG WHERE LOGID <= 400 AND SLEEP(0.005) = 0"_s, u"LOGID"_s, {{u"OPDATE"_s}, Qt::DescendingOrder});
    QTRY_VERIFY_WITH_TIMEOUT(model.isCounted() && quarry::test::sealRows(station, running).size() == 1, test::WaitLimit);
    model.cancel();
    QTRY_VERIFY_WITH_TIMEOUT(quarry::test::sealRows(station, running).isEmpty(), 1000);
}

} // namespace quarry::viewer

QTEST_MAIN(quarry::viewer::TestConditionRows)
#include "tst_conditionrows.moc"
