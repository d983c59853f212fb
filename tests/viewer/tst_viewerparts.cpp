// The viewer's parts that hold no widgets: reading the log catalogue, the
// statement that runs for a condition, and the CSV text of an export.

#include "CsvWriter.h"
#include "LogCatalogue.h"
#include "LogSelect.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

QString listText(const CodeListSource &list)
{
    if (!list.select.isEmpty())
        return u"sql:"_s + list.select;
    QStringList entries;
    for (qsizetype i = 0; i < list.ids.size(); ++i)
        entries.append(QString::number(list.ids[i]) + u'=' + list.names[i]);
    return entries.join(u',');
}

// "YYRZ 验印日志 YYLOG complex where A[..] B[..] 4/17/8 WDH YJK -".
QString describe(const LogEntry &e)
{
    return u"%1 %2 %3 %4 %5 A[%6] B[%7] %8/%9/%10 %11 %12 %13"_s
        .arg(e.logType, e.title, e.table.isEmpty() ? u"-"_s : e.table,
             e.call == LogEntry::Call::Complex ? u"complex"_s : u"complex-ex"_s,
             e.result == LogEntry::Result::Where ? u"where"_s : u"select"_s, listText(e.listA),
             listText(e.listB))
        .arg(e.clerkLength)
        .arg(e.accLength)
        .arg(e.chequeLength)
        .arg(e.showWdh ? u"WDH"_s : u"-"_s, e.showYjk ? u"YJK"_s : u"-"_s, e.showOpCode ? u"OP"_s : u"-"_s);
}

const QByteArray Head = "[Catalogue]\nLogs=YYRZ\n[YYRZ]\nTitle=验印日志\nKey=LOGID\n";

} // namespace

class TestViewerParts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void catalogue_data();
    void catalogue();
    void sampleCatalogue();
    void missingCatalogue();
    void select_data();
    void select();
    void page_data();
    void page();
    void csv_data();
    void csv();
};

void TestViewerParts::catalogue_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QStringList>("problems");

    QTest::newRow("every key") << Head + "Table=YYLOG\nCall=complex\nResult=where\n"
        "ListA=\"1=自动验印,2=人工验印\"\nListB=\"0=通过,1=不通过\"\nClerkLen=4\nAccLen=17\nChequeLen=8\n"
        "ShowWDH=true\nShowYJK=1\nShowOpCode=false\n"
        << QStringList{u"YYRZ 验印日志 YYLOG complex where A[1=自动验印,2=人工验印] B[0=通过,1=不通过] 4/17/8 WDH YJK -"_s}
        << QStringList{};
    QTest::newRow("defaults") << Head + "Table=YYLOG\n"
        << QStringList{u"YYRZ 验印日志 YYLOG complex where A[] B[] 0/0/0 - - -"_s} << QStringList{};
    QTest::newRow("list without quotes, words in any case") << Head + "Table=YYLOG\nListA=1=a, 2 = b\nCall=Complex-EX\nShowOpCode=TRUE\n"
        << QStringList{u"YYRZ 验印日志 YYLOG complex-ex where A[1=a,2=b] B[] 0/0/0 - - OP"_s} << QStringList{};
    QTest::newRow("list by SELECT") << Head + "Table=YYLOG\nListBSql=SELECT FieldValue, ValueDescr FROM P_FIELD_VAL_DEF WHERE FieldName = 'PzType'\n"
        << QStringList{u"YYRZ 验印日志 YYLOG complex where A[] B[sql:SELECT FieldValue, ValueDescr FROM P_FIELD_VAL_DEF WHERE FieldName = 'PzType'] 0/0/0 - - -"_s}
        << QStringList{};
    QTest::newRow("whole SELECT needs no table") << Head + "Result=select\n"
        << QStringList{u"YYRZ 验印日志 - complex select A[] B[] 0/0/0 - - -"_s} << QStringList{};
    QTest::newRow("order of the list") << QByteArray("[Catalogue]\nLogs=B, A\n[A]\nTitle=a\nTable=TA\nKey=ID\n[B]\nTitle=b\nTable=TB\nKey=ID\n")
        << QStringList{u"B b TB complex where A[] B[] 0/0/0 - - -"_s, u"A a TA complex where A[] B[] 0/0/0 - - -"_s}
        << QStringList{};

    const auto faulty = [](const char *tag, const QByteArray &section, const QString &problem) {
        QTest::newRow(tag) << QByteArray("[Catalogue]\nLogs=YYRZ, SJRZ\n[SJRZ]\nTitle=登录日志\nTable=SJLOG\nKey=LOGID\n[YYRZ]\n") + section
                           << QStringList{u"SJRZ 登录日志 SJLOG complex where A[] B[] 0/0/0 - - -"_s}
                           << QStringList{problem};
    };
    faulty("no title", "Table=YYLOG\nKey=LOGID\n", u"cat.ini [YYRZ] Title: missing"_s);
    faulty("no table", "Title=t\nKey=LOGID\n", u"cat.ini [YYRZ] Table: missing"_s);
    faulty("no key", "Title=t\nTable=YYLOG\n", u"cat.ini [YYRZ] Key: missing"_s);
    faulty("key with SQL", "Title=t\nTable=YYLOG\nKey=LOGID DESC\n", u"cat.ini [YYRZ] Key: \"LOGID DESC\" is not a column name"_s);
    faulty("table with SQL", "Title=t\nKey=LOGID\nTable=YYLOG WHERE 1=1\n", u"cat.ini [YYRZ] Table: \"YYLOG WHERE 1=1\" is not a table name"_s);
    faulty("misspelt key", "Title=t\nKey=LOGID\nTable=YYLOG\nTabel=YYLOG\n", u"cat.ini [YYRZ] Tabel: unknown key"_s);
    faulty("unknown call", "Title=t\nKey=LOGID\nTable=YYLOG\nCall=complexEx\n", u"cat.ini [YYRZ] Call: \"complexEx\" is not one of complex, complex-ex"_s);
    faulty("unknown result", "Title=t\nKey=LOGID\nTable=YYLOG\nResult=all\n", u"cat.ini [YYRZ] Result: \"all\" is not one of where, select"_s);
    faulty("length not a number", "Title=t\nKey=LOGID\nTable=YYLOG\nAccLen=seventeen\n", u"cat.ini [YYRZ] AccLen: \"seventeen\" is not a length (0 or more)"_s);
    faulty("negative length", "Title=t\nKey=LOGID\nTable=YYLOG\nChequeLen=-8\n", u"cat.ini [YYRZ] ChequeLen: \"-8\" is not a length (0 or more)"_s);
    faulty("flag not a truth", "Title=t\nKey=LOGID\nTable=YYLOG\nShowWDH=yes\n", u"cat.ini [YYRZ] ShowWDH: \"yes\" is neither true nor false"_s);
    faulty("code not a number", "Title=t\nKey=LOGID\nTable=YYLOG\nListA=\"1=开户,x=销户\"\n", u"cat.ini [YYRZ] ListA: \"1=开户,x=销户\" is not a code list (CODE=TEXT,...)"_s);
    faulty("code without text", "Title=t\nKey=LOGID\nTable=YYLOG\nListB=\"1=\"\n", u"cat.ini [YYRZ] ListB: \"1=\" is not a code list (CODE=TEXT,...)"_s);
    faulty("code beyond 16 bits", "Title=t\nKey=LOGID\nTable=YYLOG\nListA=\"40000=x\"\n", u"cat.ini [YYRZ] ListA: \"40000=x\" is not a code list (CODE=TEXT,...)"_s);
    faulty("list twice", "Title=t\nKey=LOGID\nTable=YYLOG\nListA=\"1=a\"\nListASql=SELECT 1, 'a'\n", u"cat.ini [YYRZ] ListA: give either ListA or ListASql, not both"_s);
    faulty("list SQL not a SELECT", "Title=t\nKey=LOGID\nTable=YYLOG\nListASql=DELETE FROM HY\n", u"cat.ini [YYRZ] ListASql: not a SELECT"_s);
    QTest::newRow("listed without section") << QByteArray("[Catalogue]\nLogs=YYRZ, PJSBRZ\n[YYRZ]\nTitle=t\nTable=YYLOG\nKey=LOGID\n")
        << QStringList{u"YYRZ t YYLOG complex where A[] B[] 0/0/0 - - -"_s}
        << QStringList{u"cat.ini [PJSBRZ]: listed under [Catalogue] Logs but has no section"_s};
    QTest::newRow("nothing listed") << QByteArray("[YYRZ]\nTitle=t\nTable=YYLOG\n")
        << QStringList{} << QStringList{u"cat.ini [Catalogue] Logs: no log types listed"_s};
}

void TestViewerParts::catalogue()
{
    QFETCH(QByteArray, ini);
    QFETCH(QStringList, entries);
    QFETCH(QStringList, problems);
    QTemporaryDir dir;
    QFile file(dir.filePath(u"cat.ini"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(ini);
    file.close();

    const LogCatalogue catalogue = LogCatalogue::read(file.fileName());
    QStringList read;
    for (const LogEntry &entry : catalogue.entries())
        read.append(describe(entry));
    QCOMPARE(read, entries);
    QCOMPARE(catalogue.problems(), problems);
}

// The catalogue beside the sample seal.ini names every log the station has.
void TestViewerParts::sampleCatalogue()
{
    const LogCatalogue catalogue = LogCatalogue::read(qEnvironmentVariable("QUARRY_SOURCE_DIR") + u"/data/sample/logs.ini"_s);
    QCOMPARE(catalogue.problems(), QStringList());
    QStringList types;
    for (const LogEntry &entry : catalogue.entries())
        types.append(entry.logType + u'>' + (entry.table.isEmpty() ? u"-"_s : entry.table) + u'.' + entry.key);
    QCOMPARE(types, (QStringList{u"YWRZ>YWLOG.LOGID"_s, u"YYRZ>YYLOG.LOGID"_s, u"HYRZ>HYLog.LOGID"_s, u"SJRZ>SJLOG.LOGID"_s,
                                 u"ZGSQRZ>ZGSQLOG.LOGID"_s, u"ZPGLRZ>ZPGLLOG.LOGID"_s, u"PJSBRZ>pjsblog.LOGID"_s,
                                 u"YJREQLOG>YJREQLOG.LOGID"_s, u"PTFHRZ>PTFHLOG.LOGID"_s, u"SEALRESULTSTAT>-.opcode"_s}));
}

void TestViewerParts::missingCatalogue()
{
    QTemporaryDir dir;
    const LogCatalogue catalogue = LogCatalogue::read(dir.filePath(u"logs.ini"_s));
    QVERIFY(catalogue.entries().isEmpty());
    QCOMPARE(catalogue.problems(), QStringList{u"logs.ini: no catalogue file at "_s + dir.filePath(u"logs.ini"_s)});
}

void TestViewerParts::select_data()
{
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("condition");
    QTest::addColumn<QString>("expected");

    const int where = int(LogEntry::Result::Where);
    const int whole = int(LogEntry::Result::Select);
    QTest::newRow("clause appended") << where << u" where Opcode Like '%'"_s << u"SELECT * FROM YYLOG where Opcode Like '%'"_s;
    QTest::newRow("blanks kept") << where << u" Where  ACCNO  LIKE  '1%'  "_s << u"SELECT * FROM YYLOG Where  ACCNO  LIKE  '1%'  "_s;
    QTest::newRow("cancelled clause runs nothing") << where << QString() << QString();
    QTest::newRow("whole SELECT as it is") << whole << u"SELECT 1 AS id FROM pjsblog"_s << u"SELECT 1 AS id FROM pjsblog"_s;
    QTest::newRow("cancelled SELECT runs nothing") << whole << QString() << QString();
}

void TestViewerParts::select()
{
    QFETCH(int, result);
    QFETCH(QString, condition);
    QFETCH(QString, expected);
    LogEntry entry;
    entry.table = u"YYLOG"_s;
    entry.result = LogEntry::Result(result);
    QCOMPARE(logSelect(entry, condition), expected);
}

void TestViewerParts::page_data()
{
    QTest::addColumn<int>("paging");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<QString>("keyAfter");
    QTest::addColumn<QString>("expected");

    const QString from = u"SELECT * FROM (SELECT * FROM YYLOG where Opcode Like '%') paged"_s;
    const int limit = int(Paging::LimitOffset);
    const int fetch = int(Paging::OffsetFetch);
    const int none = int(Paging::None);
    QTest::newRow("first page") << limit << qint64(0) << QString() << from + u" ORDER BY LOGID LIMIT 500"_s;
    QTest::newRow("jump") << limit << qint64(3000000000) << QString() << from + u" ORDER BY LOGID LIMIT 500 OFFSET 3000000000"_s;
    QTest::newRow("after a key") << limit << qint64(0) << u"'O''Hara'"_s << from + u" WHERE LOGID > 'O''Hara' ORDER BY LOGID LIMIT 500"_s;
    QTest::newRow("SQL Server first page") << fetch << qint64(0) << QString() << from + u" ORDER BY LOGID OFFSET 0 ROWS FETCH NEXT 500 ROWS ONLY"_s;
    QTest::newRow("SQL Server jump") << fetch << qint64(1500) << QString() << from + u" ORDER BY LOGID OFFSET 1500 ROWS FETCH NEXT 500 ROWS ONLY"_s;
    QTest::newRow("SQL Server after a key") << fetch << qint64(0) << u"42"_s << from + u" WHERE LOGID > 42 ORDER BY LOGID OFFSET 0 ROWS FETCH NEXT 500 ROWS ONLY"_s;
    QTest::newRow("Sybase: all at once") << none << qint64(0) << QString() << from + u" ORDER BY LOGID"_s;
}

void TestViewerParts::page()
{
    QFETCH(int, paging);
    QFETCH(qint64, offset);
    QFETCH(QString, keyAfter);
    QFETCH(QString, expected);
    QCOMPARE(pageSelect(u"SELECT * FROM YYLOG where Opcode Like '%'"_s, u"LOGID"_s, {}, Paging(paging), {offset, keyAfter, {}}, 500), expected);
}

void TestViewerParts::csv_data()
{
    QTest::addColumn<QList<QStringList>>("rows");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("plain") << QList<QStringList>{{u"LOGID"_s, u"ACCNO"_s}, {u"1"_s, u"11010100000001"_s}}
                           << QByteArray("LOGID,ACCNO\r\n1,11010100000001\r\n");
    QTest::newRow("Chinese in UTF-8") << QList<QStringList>{{u"开户"_s, u"张伟"_s}}
                                      << u"开户,张伟\r\n"_s.toUtf8();
    QTest::newRow("separator quoted") << QList<QStringList>{{u"a,b"_s, u"c"_s}} << QByteArray("\"a,b\",c\r\n");
    QTest::newRow("quote doubled") << QList<QStringList>{{u"say \"x\""_s}} << QByteArray("\"say \"\"x\"\"\"\r\n");
    QTest::newRow("line breaks quoted") << QList<QStringList>{{u"a\nb"_s, u"c\rd"_s}} << QByteArray("\"a\nb\",\"c\rd\"\r\n");
    QTest::newRow("empty fields") << QList<QStringList>{{QString(), QString(), u"x"_s}} << QByteArray(",,x\r\n");
    QTest::newRow("SQL characters plain") << QList<QStringList>{{u"a'b\\c[d]"_s}} << QByteArray("a'b\\c[d]\r\n");
    QTest::newRow("no rows") << QList<QStringList>{} << QByteArray();
}

void TestViewerParts::csv()
{
    QFETCH(QList<QStringList>, rows);
    QFETCH(QByteArray, expected);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CsvWriter writer(buffer);
    for (const QStringList &row : rows)
        writer.writeRow(row);
    QVERIFY(writer.ok());
    QCOMPARE(buffer.data(), QByteArray("\xEF\xBB\xBF") + expected);
}

} // namespace quarry::viewer

QTEST_MAIN(quarry::viewer::TestViewerParts)
#include "tst_viewerparts.moc"
