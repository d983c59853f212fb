// The viewer's parts that hold no widgets: reading the log catalogue, the
// titles and code descriptions over the rows, the CSV text of an export,
// the rows a model holds before their count and while it bookmarks them, a
// statement stopped on the server; and the program's answers without a display, its exports among them.

#include "output/CsvWriter.h"
#include "output/PassRates.h"
#include "rows/SelectedCells.h"
#include "catalogue/LabelledRows.h"
#include "rows/LogRowsModel.h"
#include "rows/QueryInterrupt.h"
#include "LogCatalogue.h"
#include "QtChinese.h"

#include "ReadRows.h"
#include "TestFiles.h"
#include "NumberFormat.h"
#include "platform/DbConnection.h"

#include <QBuffer>
#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <mutex>
#include <thread>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

QString listText(const CodeListSource &list)
{
    const QString column = list.column.isEmpty() ? QString() : u" in "_s + list.column;
    if (!list.select.isEmpty())
        return u"sql:"_s + list.select + column;
    QStringList entries;
    for (qsizetype i = 0; i < list.ids.size(); ++i)
        entries.append(QString::number(list.ids[i]) + u'=' + list.names[i]);
    return entries.join(u',') + column;
}

// "YYRZ 验印日志 YYLOG complex where A[..] B[..] 4/17/8 WDH YJK -", then
// " ACCNO=账号" per title and " -ID" per hidden column.
QString describe(const LogEntry &e)
{
    QStringList titles;
    for (auto title = e.columnTitles.cbegin(); title != e.columnTitles.cend(); ++title)
        titles.append(title.key() + u'=' + title.value());
    titles.sort();
    QString extra;
    for (const QString &title : std::as_const(titles))
        extra += u' ' + title;
    for (const QString &hidden : e.hiddenColumns)
        extra += u" -"_s + hidden;
    for (auto format = e.columnFormats.cbegin(); format != e.columnFormats.cend(); ++format)
        extra += u' ' + format.key() + u'~' + format.value();
    return u"%1 %2 %3 %4 %5 A[%6] B[%7] %8/%9/%10 %11 %12 %13"_s
        .arg(e.logType, e.title, e.table.isEmpty() ? u"-"_s : e.table,
             e.call == LogEntry::Call::Complex ? u"complex"_s : u"complex-ex"_s,
             e.result == LogEntry::Result::Where ? u"where"_s : u"select"_s, listText(e.listA),
             listText(e.listB))
        .arg(e.clerkLength)
        .arg(e.accLength)
        .arg(e.chequeLength)
        .arg(e.showWdh ? u"WDH"_s : u"-"_s, e.showYjk ? u"YJK"_s : u"-"_s, e.showOpCode ? u"OP"_s : u"-"_s)
        + extra;
}

const QByteArray Head = "[Catalogue]\nLogs=YYRZ\n[YYRZ]\nTitle=验印日志\nKey=LOGID\n";

} // namespace

class TestViewerParts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void catalogue_data();
    void catalogue();
    void csv_data();
    void csv();
    void labelled_data();
    void labelled();
    void formats_data();
    void formats();
    void selectedRows_data();
    void selectedRows();
    void passRates_data();
    void passRates();
    void qtInChinese();
    void rowsBeforeTheCount();
    void bookmarking();
    void stopOnServer();
    void program_data();
    void program();
};

void TestViewerParts::catalogue_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QStringList>("problems");

    QTest::newRow("every key, a length of 0") << Head + "Table=YYLOG\nCall=complex\nResult=where\n"
        "ListA=\"1=自动验印,2=人工验印\"\nListB=\"0=通过,1=不通过\"\nClerkLen=4\nAccLen=17\nChequeLen=0\n"
        "ShowWDH=true\nShowYJK=1\nShowOpCode=false\n"
        << QStringList{u"YYRZ 验印日志 YYLOG complex where A[1=自动验印,2=人工验印] B[0=通过,1=不通过] 4/17/0 WDH YJK -"_s}
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
    QTest::newRow("titles, code columns, hidden columns") << Head + "Table=YYLOG\nListA=\"1=开户\"\nListAColumn=OPTYPE\n"
        "ListBSql=SELECT 1, 'a'\nListBColumn=Result\nColumns=\"ACCNO=账号, opdate = 日期\"\nHide=id, Memo\nFormats=money=0.00\n"
        << QStringList{u"YYRZ 验印日志 YYLOG complex where A[1=开户 in OPTYPE] B[sql:SELECT 1, 'a' in Result] 0/0/0 - - - ACCNO=账号 OPDATE=日期 -ID -MEMO MONEY~0.00"_s}
        << QStringList{};
    QTest::newRow("order of the list") << QByteArray("[Catalogue]\nLogs=B, A\n[A]\nTitle=a\nTable=TA\nKey=ID\n[B]\nTitle=b\nTable=TB\nKey=ID\n")
        << QStringList{u"B b TB complex where A[] B[] 0/0/0 - - -"_s, u"A a TA complex where A[] B[] 0/0/0 - - -"_s}
        << QStringList{};

    const auto faulty = [](const char *tag, const QByteArray &section, const QString &problem) {
        QTest::newRow(tag) << QByteArray("[Catalogue]\nLogs=YYRZ, SJRZ\n[SJRZ]\nTitle=登录日志\nTable=SJLOG\nKey=LOGID\n[YYRZ]\n") + section
                           << QStringList{u"SJRZ 登录日志 SJLOG complex where A[] B[] 0/0/0 - - -"_s}
                           << QStringList{problem};
    };
    faulty("no title", "Table=YYLOG\nKey=LOGID\n", u"cat.ini [YYRZ] Title：未填写"_s);
    faulty("no table", "Title=t\nKey=LOGID\n", u"cat.ini [YYRZ] Table：未填写"_s);
    faulty("key with SQL", "Title=t\nTable=YYLOG\nKey=LOGID DESC\n", u"cat.ini [YYRZ] Key：“LOGID DESC”不是列名"_s);
    faulty("table with SQL", "Title=t\nKey=LOGID\nTable=YYLOG WHERE 1=1\n", u"cat.ini [YYRZ] Table：“YYLOG WHERE 1=1”不是表名"_s);
    faulty("misspelt key", "Title=t\nKey=LOGID\nTable=YYLOG\nTabel=YYLOG\n", u"cat.ini [YYRZ] Tabel：不认识的键"_s);
    faulty("unknown call", "Title=t\nKey=LOGID\nTable=YYLOG\nCall=complexEx\n", u"cat.ini [YYRZ] Call：“complexEx”不是 complex、complex-ex 之一"_s);
    faulty("length not a number", "Title=t\nKey=LOGID\nTable=YYLOG\nAccLen=seventeen\n", u"cat.ini [YYRZ] AccLen：“seventeen”不是长度（0 或更大的整数）"_s);
    faulty("negative length", "Title=t\nKey=LOGID\nTable=YYLOG\nChequeLen=-8\n", u"cat.ini [YYRZ] ChequeLen：“-8”不是长度（0 或更大的整数）"_s);
    faulty("flag not a truth", "Title=t\nKey=LOGID\nTable=YYLOG\nShowWDH=yes\n", u"cat.ini [YYRZ] ShowWDH：“yes”既不是 true 也不是 false"_s);
    faulty("code not a number", "Title=t\nKey=LOGID\nTable=YYLOG\nListA=\"1=开户,x=销户\"\n", u"cat.ini [YYRZ] ListA：“1=开户,x=销户”不是代码表（代码=文字,...）"_s);
    faulty("code without text", "Title=t\nKey=LOGID\nTable=YYLOG\nListB=\"1=\"\n", u"cat.ini [YYRZ] ListB：“1=”不是代码表（代码=文字,...）"_s);
    faulty("code beyond 16 bits", "Title=t\nKey=LOGID\nTable=YYLOG\nListA=\"40000=x\"\n", u"cat.ini [YYRZ] ListA：“40000=x”不是代码表（代码=文字,...）"_s);
    faulty("list twice", "Title=t\nKey=LOGID\nTable=YYLOG\nListA=\"1=a\"\nListASql=SELECT 1, 'a'\n", u"cat.ini [YYRZ] ListA：ListA 和 ListASql 只能给出一个"_s);
    faulty("title without a name", "Title=t\nKey=LOGID\nTable=YYLOG\nColumns=\"ACCNO=账号,=日期\"\n", u"cat.ini [YYRZ] Columns：“=日期”不是列标题（列名=标题）"_s);
    faulty("format not of zeros", "Title=t\nKey=LOGID\nTable=YYLOG\nFormats=\"wdh=0000,money=#.##\"\n", u"cat.ini [YYRZ] Formats：“money=#.##”不是数字格式（列名=0.00）"_s);
    faulty("code column with SQL", "Title=t\nKey=LOGID\nTable=YYLOG\nListAColumn=OPTYPE DESC\n", u"cat.ini [YYRZ] ListAColumn：“OPTYPE DESC”不是列名"_s);
    faulty("hidden column with SQL", "Title=t\nKey=LOGID\nTable=YYLOG\nHide=id)\n", u"cat.ini [YYRZ] Hide：“id)”不是列名"_s);
    faulty("list SQL not a SELECT", "Title=t\nKey=LOGID\nTable=YYLOG\nListASql=DELETE FROM HY\n", u"cat.ini [YYRZ] ListASql：不是 SELECT 语句"_s);
    QTest::newRow("listed without section") << QByteArray("[Catalogue]\nLogs=YYRZ, PJSBRZ\n[YYRZ]\nTitle=t\nTable=YYLOG\nKey=LOGID\n")
        << QStringList{u"YYRZ t YYLOG complex where A[] B[] 0/0/0 - - -"_s}
        << QStringList{u"cat.ini [PJSBRZ]：列在 [Catalogue] Logs 中，却没有这一节"_s};
    QTest::newRow("nothing listed") << QByteArray("[YYRZ]\nTitle=t\nTable=YYLOG\n")
        << QStringList{} << QStringList{u"cat.ini [Catalogue] Logs：没有列出日志类型"_s};
    QTest::newRow("no file") << QByteArray() << QStringList{} << QStringList{u"cat.ini：没有日志目录文件 %1"_s};
}

void TestViewerParts::catalogue()
{
    QFETCH(QByteArray, ini);
    QFETCH(QStringList, entries);
    QFETCH(QStringList, problems);
    QTemporaryDir dir;
    const QString path = dir.filePath(u"cat.ini"_s);
    if (!ini.isNull())
        quarry::test::writeFile(path, ini);

    const LogCatalogue catalogue = LogCatalogue::read(path);
    QStringList read;
    for (const LogEntry &entry : catalogue.entries())
        read.append(describe(entry));
    QCOMPARE(read, entries);
    QCOMPARE(catalogue.problems(), problems.replaceInStrings(u"%1"_s, path));
}

void TestViewerParts::csv_data()
{
    QTest::addColumn<QList<QVariantList>>("rows");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("separator quoted") << QList<QVariantList>{{u"a,b"_s, u"c"_s}} << QByteArray("\"a,b\",c\r\n");
    QTest::newRow("quotes doubled") << QList<QVariantList>{{u"\"x\" said, \"y\""_s}} << QByteArray("\"\"\"x\"\" said, \"\"y\"\"\"\r\n");
    QTest::newRow("line breaks quoted") << QList<QVariantList>{{u"a\nb"_s, u"c\rd"_s}} << QByteArray("\"a\nb\",\"c\rd\"\r\n");
    QTest::newRow("empty fields") << QList<QVariantList>{{QString(), QString(), u"x"_s}, {u"y"_s}} << QByteArray(",,x\r\ny\r\n");
    QTest::newRow("SQL characters plain") << QList<QVariantList>{{u"a'b\\c[d]"_s}} << QByteArray("a'b\\c[d]\r\n");
    QTest::newRow("whole numbers") << QList<QVariantList>{{qlonglong(-9007199254740993), 42}} << QByteArray("-9007199254740993,42\r\n");
    QTest::newRow("nulls empty") << QList<QVariantList>{{QVariant(), QVariant(QMetaType::fromType<qlonglong>())}} << QByteArray(",\r\n");
    QTest::newRow("other kinds as their text") << QList<QVariantList>{{5172.8, QDate(2009, 1, 5), true}} << QByteArray("5172.8,2009-01-05,true\r\n");
    QTest::newRow("beyond ASCII") << QList<QVariantList>{{u"网点"_s, u"\U00020000"_s}} << QByteArray("\xE7\xBD\x91\xE7\x82\xB9,\xF0\xA0\x80\x80\r\n");
    QTest::newRow("no rows") << QList<QVariantList>{} << QByteArray();
}

void TestViewerParts::csv()
{
    QFETCH(QList<QVariantList>, rows);
    QFETCH(QByteArray, expected);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CsvWriter writer(buffer);
    for (const QVariantList &row : rows)
        writer.writeRow(row);
    QVERIFY(writer.ok());
    QCOMPARE(buffer.data(), QByteArray("\xEF\xBB\xBF") + expected);
}

void TestViewerParts::labelled_data()
{
    QTest::addColumn<QStringList>("values"); // of the columns ACCNO, OPTYPE, RESULT
    QTest::addColumn<QString>("shown");      // header, then each value, joined by |

    QTest::newRow("codes described") << QStringList{u"7"_s, u"1"_s, u"4"_s} << u"账号 AccNo OpType 结果|7|1 增加行员|4 人工通过"_s;
    QTest::newRow("code with blanks") << QStringList{u"7"_s, u" 2 "_s, u"0"_s} << u"账号 AccNo OpType 结果|7|2 删除行员|0 通过"_s;
    QTest::newRow("no code of the list") << QStringList{u"1"_s, u"9"_s, u"人工通过"_s} << u"账号 AccNo OpType 结果|1|9|人工通过"_s;
    QTest::newRow("empty") << QStringList{QString(), QString(), QString()} << u"账号 AccNo OpType 结果|||"_s;
}

// Titles over the columns that have one, the name as the tooltip; codes of a
// list's column with their description, any other value as it is.
void TestViewerParts::labelled()
{
    QFETCH(QStringList, values);
    QFETCH(QString, shown);
    QStandardItemModel source(1, 3);
    source.setHorizontalHeaderLabels({u"AccNo"_s, u"OpType"_s, u"Result"_s});
    for (int c = 0; c < 3; ++c)
        source.setItem(0, c, new QStandardItem(values[c]));
    LogEntry entry;
    entry.columnTitles = {{u"ACCNO"_s, u"账号"_s}, {u"RESULT"_s, u"结果"_s}};
    entry.listA = {{1, 2}, {u"增加行员"_s, u"删除行员"_s}, {}, u"OPTYPE"_s};
    entry.listB = {{0, 4}, {u"通过"_s, u"人工通过"_s}, {}, u"result"_s};
    LabelledRows rows;
    rows.setSourceModel(&source);
    rows.setEntry(entry);

    QStringList header;
    for (int c = 0; c < 3; ++c)
        header.append(rows.headerData(c, Qt::Horizontal).toString());
    header.insert(1, rows.headerData(0, Qt::Horizontal, Qt::ToolTipRole).toString());
    QStringList got{header.join(u' ')};
    for (int c = 0; c < 3; ++c)
        got.append(rows.index(0, c).data().toString());
    QCOMPARE(got.join(u'|'), shown);
    QCOMPARE(rows.identifyingColumns(), QList<int>{0}); // the account, in any letter case, for a report's continued pages
}

void TestViewerParts::formats_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("shown");

    QTest::newRow("amount as text") << u"0.00"_s << QVariant(u" 5172.8"_s) << u"5172.80"_s;
    QTest::newRow("amount rounded") << u"0.00"_s << QVariant(0.126) << u"0.13"_s;
    QTest::newRow("negative") << u"0.00"_s << QVariant(-5.5) << u"-5.50"_s;
    QTest::newRow("no negative zero") << u"0.00"_s << QVariant(-0.001) << u"0.00"_s;
    QTest::newRow("code of four digits") << u"0000"_s << QVariant(101) << u"0101"_s;
    QTest::newRow("longer code") << u"0000"_s << QVariant(u"12345"_s) << u"12345"_s;
    QTest::newRow("decimals with leading zeros") << u"00.0"_s << QVariant(1.24) << u"01.2"_s;
    QTest::newRow("no number") << u"0.00"_s << QVariant(u"无"_s) << u"无"_s;
    QTest::newRow("empty") << u"0.00"_s << QVariant() << QString();
    QTest::newRow("no format") << QString() << QVariant(5172.8) << u"5172.8"_s;
}

// A column's numbers as the catalogue's format writes them, wherever the
// rows are read: the table, the report, CSV.
void TestViewerParts::formats()
{
    QFETCH(QString, format);
    QFETCH(QVariant, value);
    QStandardItemModel source(1, 1);
    source.setHorizontalHeaderLabels({u"Money"_s});
    source.setData(source.index(0, 0), value);
    LogEntry entry;
    if (!format.isEmpty())
        entry.columnFormats.insert(u"MONEY"_s, format);
    LabelledRows rows;
    rows.setSourceModel(&source);
    rows.setEntry(entry);
    QTEST(rows.index(0, 0).data().toString(), "shown");
    QCOMPARE(rows.index(0, 0).data(NumberFormatRole).toString(), format);
}

void TestViewerParts::selectedRows_data()
{
    QTest::addColumn<QStringList>("ranges"); // "top-bottom@column"
    QTest::addColumn<qint64>("rows");
    QTest::addColumn<QString>("span"); // "first-last"
    QTest::newRow("none") << QStringList() << qint64(0) << u"-1--1"_s;
    QTest::newRow("one row") << QStringList{u"7-7@0"_s} << qint64(1) << u"7-7"_s;
    QTest::newRow("overlapping") << QStringList{u"3-8@0"_s, u"0-5@1"_s} << qint64(9) << u"0-8"_s;
    QTest::newRow("inside another") << QStringList{u"0-9@1"_s, u"2-3@0"_s} << qint64(10) << u"0-9"_s;
    QTest::newRow("apart") << QStringList{u"10-19@0"_s, u"0-1@0"_s} << qint64(12) << u"0-19"_s;
    QTest::newRow("adjoining") << QStringList{u"0-4@0"_s, u"5-9@1"_s} << qint64(10) << u"0-9"_s;
}

// The rows of a selection, counted before any is read: ranges over the
// same rows count them once; they are read from the first to the last.
void TestViewerParts::selectedRows()
{
    QFETCH(QStringList, ranges);
    QStandardItemModel cells(20, 3);
    QItemSelection selection;
    for (const QString &range : std::as_const(ranges)) {
        const int column = range.section(u'@', 1).toInt();
        selection.append(QItemSelectionRange(cells.index(range.section(u'-', 0, 0).toInt(), column),
                                             cells.index(range.section(u'-', 1).section(u'@', 0, 0).toInt(), column)));
    }
    const quarry::viewer::SelectedCells selected(selection);
    QTEST(selected.rowCount(), "rows");
    QTEST(u"%1-%2"_s.arg(selected.firstRow()).arg(selected.lastRow()), "span");
}

// The statistics' columns are found by name, in any place and letter case;
// a total of 0 gives a rate of 0.
void TestViewerParts::passRates_data()
{
    QTest::addColumn<QString>("headers");
    QTest::addColumn<QString>("rates"); // "" when a column is missing
    QTest::newRow("opcode first") << u"opcode total passed"_s << u"0011 25, 0012 0"_s;
    QTest::newRow("total first, in capitals") << u"TOTAL Passed OpCode id"_s << u"0011 25, 0012 0"_s;
    QTest::newRow("passed first") << u"passed id opcode total"_s << u"0011 25, 0012 0"_s;
    QTest::newRow("no passed column") << u"opcode total id"_s << QString();
}
void TestViewerParts::passRates()
{
    QFETCH(QString, headers);
    const QHash<QString, QStringList> values{{u"opcode"_s, {u"0011"_s, u"0012"_s}}, {u"total"_s, {u"4"_s, u"0"_s}}, {u"passed"_s, {u"1"_s, u"0"_s}}};
    QStandardItemModel model(2, 0);
    for (const QString &header : headers.split(u' ')) {
        const QStringList column = values.value(header.toLower(), {u"1"_s, u"1"_s});
        model.appendColumn({new QStandardItem(column[0]), new QStandardItem(column[1])});
    }
    model.setHorizontalHeaderLabels(headers.split(u' '));
    QStringList rates;
    for (const auto &[opcode, rate] : quarry::viewer::passRates(model).value_or(PassRates()))
        rates.append(u"%1 %2"_s.arg(opcode).arg(rate));
    QTEST(rates.join(u", "_s), "rates");
}

// Qt's own texts (buttons, file dialogs) in Chinese, from Qt's translations.
void TestViewerParts::qtInChinese()
{
    QVERIFY2(apps::useChinese(*QCoreApplication::instance()), "qt6-translations-l10n is not installed");
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), u"取消"_s);
}

// Until the count is in, the rows grow a page at a time as the view asks:
// with the count stopped, the next page asked for is added.
void TestViewerParts::rowsBeforeTheCount()
{
    QUARRY_SAMPLE_DATABASE(station, database, test::Engine::Sqlite, QByteArray());
    LogRowsModel model(10);
    QObject context;
    QObject::connect(&model, &LogRowsModel::rowsShown, &context, [&model] {
        // Time for the count of a few rows to end, as a cancel may come
        // after it has.
        QThread::msleep(300);
        model.cancel();
        model.fetchMore({});
    });
    model.setQuery(database, u"SELECT * FROM YYLOG"_s, u"LOGID"_s);
    QVERIFY(QTest::qWaitFor([&model] { return model.rowCount() > 0 && !model.isBusy(); }, test::WaitLimit));
    QCOMPARE(model.rowCount(), 20);
}

// Counted rows are walked for the bookmarks that jumps start from, which the
// model says (the window's count line tells it) until the walk is done.
void TestViewerParts::bookmarking()
{
    QUARRY_SAMPLE_DATABASE(station, database, test::Engine::Sqlite, QByteArray());
    LogRowsModel model(10, 500);
    QList<bool> atCount;
    QObject::connect(&model, &LogRowsModel::counted, &model,
                     [&] { atCount.append(model.isBookmarking()); });
    model.setQuery(database, u"SELECT * FROM YYLOG"_s, u"LOGID"_s);
    QVERIFY(QTest::qWaitFor([&model] { return model.isCounted() && !model.isBusy(); }, test::WaitLimit));
    QCOMPARE(atCount, QList<bool>{true});
    QVERIFY(!model.isBookmarking());
}

// MariaDB's statement is killed from a second connection, opened on a thread
// of its own (a remote server may take long to answer) for each station;
// when that cannot be opened, or has lost its server (it is opened anew for
// the next stop), the stop is said to have failed, once, and the statement
// runs on.
void TestViewerParts::stopOnServer()
{
    QUARRY_SAMPLE_DATABASE(station, database, test::Engine::MariaDb, QByteArray());
    const QString running = u"SELECT ID FROM information_schema.PROCESSLIST WHERE INFO = CONCAT('SELECT SLEEP', '(2)')"_s;
    const QString refused = u"无法打开验印数据库：127.0.0.1 拒绝连接"_s;
    const auto opener = database.opener();
    BackgroundQuery query;
    QSignalSpy finished(&query, &BackgroundQuery::finished);
    QSignalSpy failed(&query, &BackgroundQuery::stopFailed);
    // Killed, a statement tells the server's "interrupted"; else it slept to the end.
    const auto stopped = [&] {
        finished.clear();
        query.run(u"SELECT SLEEP(2)"_s, -1);
        if (!QTest::qWaitFor([&] { return quarry::test::sealRows(station, running).size() == 1; }, test::WaitLimit))
            return u"never ran"_s;
        query.cancel();
        return finished.wait(test::WaitLimit) ? finished.at(0).at(0).value<QueryResult>().error.nativeErrorCode() : u"never ended"_s;
    };
    for (const bool killerOpens : {true, false}) {
        std::mutex mutex;
        QList<QThread *> openedOn;
        query.setOpener([&](DbConnection &connection) {
            std::lock_guard lock(mutex);
            openedOn.append(QThread::currentThread());
            if (openedOn.size() > 1 && !killerOpens)
                return refused;
            const QString fault = opener(connection);
            if (openedOn.size() == 2 && killerOpens) // the first killer loses its server at once
                QSqlQuery(connection.database()).exec(u"KILL CONNECTION_ID()"_s);
            return fault;
        });
        QCOMPARE(stopped(), QString());
        QCOMPARE(failed.size(), killerOpens ? 1 : 2);
        QCOMPARE(openedOn.size(), 2);
        QVERIFY(openedOn[0] != openedOn[1]);
        QVERIFY(!openedOn.contains(QThread::currentThread()));
        if (killerOpens)
            QCOMPARE(stopped(), u"1317"_s);
    }
    QCOMPARE(failed.at(1).at(0).toString(), refused);

    // A kill that reaches the server before the statement does finds the
    // connection idle, and the server forgets it; it goes again until the
    // statement has ended.
    DbConnection watched;
    QCOMPARE(opener(watched), QString());
    QueryInterrupt interrupt;
    interrupt.watch(watched.database());
    QSqlQuery sleep(watched.database());
    QVERIFY(sleep.prepare(u"SELECT SLEEP(3)"_s) && interrupt.started(sleep, 1));
    std::thread killing([&] {
        DbConnection killer;
        if (opener(killer).isEmpty())
            interrupt.kill(1, killer.database());
    });
    QTest::qWait(500); // the first kill has gone, to a connection that runs nothing
    sleep.exec();
    interrupt.finished();
    killing.join();
    QCOMPARE(sleep.lastError().nativeErrorCode(), u"1317"_s);
    // Stopped before it starts: nothing to kill, and it never starts.
    QVERIFY(!interrupt.interrupt(2) && !interrupt.started(sleep, 2));
}

void TestViewerParts::program_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("said"); // on standard output or error
    QTest::addColumn<QString>("written");  // a text of the file out.*, as a search finds it

    QTest::newRow("help") << QStringList{u"--help"_s} << 0 << QStringList{u"用法：quarry-viewer"_s, u"logs.ini"_s, u"QUARRY_SYSTEM_DIR"_s, u"bash scripts/run.sh --mariadb"_s, u"没有通过票据的操作员"_s} << QString();
    QTest::newRow("unknown option") << QStringList{u"--station"_s} << 2 << QStringList{u"未知的选项：station"_s, u"用法："_s} << QString();
    QTest::newRow("stray argument") << QStringList{u"logs.ini"_s} << 2 << QStringList{u"多余的参数：logs.ini"_s} << QString();

    // Exports of the sample station's log, {dir} the test's folder.
    const QString all = u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    const QStringList yy{u"--catalogue"_s, QString::fromLocal8Bit(qgetenv("QUARRY_SOURCE_DIR")) + u"/data/sample/logs.ini"_s, u"--log"_s, u"yyrz"_s};
    QTest::newRow("export: PDF") << yy + QStringList{u"--where"_s, all, u"--export"_s, u"{dir}/out.PDF"_s} << 0 << QStringList{u"正在写 "_s, u"已把验印日志的 4000 行写到"_s} << u"日期 从 1980-01-01 到 3000-01-01"_s;
    QTest::newRow("export: CSV, condition from a file") << yy + QStringList{u"--where-file"_s, u"{dir}/where.txt"_s, u"--export"_s, u"{dir}/out.csv"_s} << 0 << QStringList{u"行写到"_s} << u"网点号\r\n270,1105060213,"_s; // newest first, as the window shows them
    QTest::newRow("export: Excel") << yy + QStringList{u"--where"_s, all, u"--export"_s, u"{dir}/out.xlsx"_s} << 0 << QStringList{u"4000 行"_s} << QString();
    QTest::newRow("export: no such log") << QStringList{u"--log"_s, u"NOPE"_s, u"--where"_s, all, u"--export"_s, u"{dir}/out.csv"_s} << 1 << QStringList{u"没有日志类型 NOPE"_s} << QString();
    QTest::newRow("export: a condition the database refuses") << yy + QStringList{u"--where"_s, u" where NOCOLUMN = 1"_s, u"--export"_s, u"{dir}/out.csv"_s} << 1 << QStringList{u"上查询失败："_s, u"NOCOLUMN"_s} << QString();
    QTest::newRow("export: no condition file") << yy + QStringList{u"--where-file"_s, u"{dir}/none.txt"_s, u"--export"_s, u"{dir}/out.csv"_s} << 1 << QStringList{u"无法读取"_s, u"none.txt"_s} << QString();
    QTest::newRow("export: an unwritable file") << yy + QStringList{u"--where"_s, all, u"--export"_s, u"{dir}/none/out.csv"_s} << 1 << QStringList{u"无法写入"_s, u"out.csv"_s} << QString();
    QTest::newRow("export: no log") << QStringList{u"--where"_s, all, u"--export"_s, u"{dir}/out.csv"_s} << 2 << QStringList{u"--export 需要 --log"_s, u"用法："_s} << QString();
    QTest::newRow("export: no condition") << QStringList{u"--log"_s, u"YYRZ"_s, u"--export"_s, u"{dir}/out.csv"_s} << 2 << QStringList{u"--where 或 --where-file 之一"_s} << QString();
    QTest::newRow("export: two conditions") << QStringList{u"--log"_s, u"YYRZ"_s, u"--where"_s, all, u"--where-file"_s, u"{dir}/where.txt"_s, u"--export"_s, u"{dir}/out.csv"_s} << 2 << QStringList{u"之一"_s} << QString();
    QTest::newRow("export: an empty condition") << QStringList{u"--log"_s, u"YYRZ"_s, u"--where"_s, u" "_s, u"--export"_s, u"{dir}/out.csv"_s} << 2 << QStringList{u"条件是空的"_s} << QString();
    QTest::newRow("export: another kind of file") << QStringList{u"--log"_s, u"YYRZ"_s, u"--where"_s, all, u"--export"_s, u"{dir}/out.txt"_s} << 2 << QStringList{u".pdf、.xlsx 或 .csv"_s} << QString();
    QTest::newRow("export: a condition without export") << QStringList{u"--log"_s, u"YYRZ"_s, u"--where"_s, all} << 2 << QStringList{u"只与 --export 一起用"_s} << QString();
}

// Answered without a display: the platform asked for has none to offer.
void TestViewerParts::program()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QStringList, said);
    QFETCH(QString, written);
    QUARRY_SAMPLE_STATION(station, test::Engine::Sqlite, QByteArray());
    QTemporaryDir dir;
    test::writeFile(dir.filePath(u"where.txt"_s), " where ACCNO LIKE '1105%'\n");
    arguments.replaceInStrings(u"{dir}"_s, dir.path());
    QProcess viewer;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.remove(u"DISPLAY"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    viewer.setProcessEnvironment(environment);
    viewer.start(QStringLiteral(QUARRY_VIEWER_PROGRAM), arguments);
    QVERIFY2(viewer.waitForFinished(test::WaitLimit), "quarry-viewer ended");
    const QString out = QString::fromUtf8(viewer.readAllStandardOutput() + viewer.readAllStandardError());
    QCOMPARE(viewer.exitStatus(), QProcess::NormalExit);
    QCOMPARE(viewer.exitCode(), status);
    for (const QString &part : std::as_const(said))
        QVERIFY2(out.contains(part), qPrintable(out));
    const QStringList files = QDir(dir.path()).entryList({u"out.*"_s});
    QCOMPARE(files.size(), status == 0 && arguments.contains(u"--export"_s) ? 1 : 0);
    if (written.isEmpty())
        return;
    const QString file = dir.filePath(files.constFirst());
    const QString found = QString::fromUtf8(file.endsWith(u".csv"_s) ? test::readFile(file)
                                                                      : test::programOutput(u"pdftotext"_s, {file, u"-"_s}));
    QVERIFY2(found.contains(written), qPrintable(found.left(2000)));
}

} // namespace quarry::viewer

QTEST_MAIN(quarry::viewer::TestViewerParts)
#include "tst_viewerparts.moc"
