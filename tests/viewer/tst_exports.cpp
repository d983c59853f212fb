// The Excel export read back as a spreadsheet reads it (the cells' kinds
// and values in the sheets' XML), the printed report's pages, and copied
// cells.

#include "catalogue/LabelledRows.h"
#include "output/LogReport.h"
#include "output/CopiedCells.h"
#include "rows/BackgroundQuery.h"
#include "rows/SelectedCells.h"
#include "TestDatabases.h"
#include "TestFiles.h"
#include "output/FileExports.h"
#include "output/XlsxExport.h"
#include "output/ReportPreview.h"
#include "output/TableLayout.h"

#include "platform/DbConnection.h"

#include <QElapsedTimer>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <QDate>
#include <QApplication>
#include <QDir>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;
using namespace quarry::viewer;
using quarry::test::Engine;

namespace {

// Values of every kind a log holds, NULLs among them, as each engine keeps
// them in columns of the types the sample schema uses.
const QString TypedRows
    = u"CREATE TABLE TYPED (N INTEGER, B BIGINT, M DECIMAL(12,2), D date, T time, S VARCHAR(40), X text);\n"
      "INSERT INTO TYPED VALUES (1, 12345678901234, 5172.80, '2009-01-05', '08:30:05', '现金支票', 'a,b');\n"
      "INSERT INTO TYPED VALUES (-2, -1, -0.05, '1999-12-31', '23:59:59', '引号\"在中', '两行\n之间');\n"
      "INSERT INTO TYPED VALUES (NULL, NULL, NULL, NULL, NULL, NULL, NULL);\n"
      "INSERT INTO TYPED VALUES (0, 0, 0, '3000-01-01', '00:00:00', '', ' ');\n"_s;
// A database of the engine for one test row, and how a stream reaches it.
struct EngineRows
{
    explicit EngineRows(Engine engine)
        : database(engine, folder.path())
    {
    }
    RowSource source(const QString &select) const
    {
        const auto open = [this](quarry::DbConnection &connection) {
            database.prepare(connection);
            connection.open(database.connectionString(), u"BISOL"_s, u"KORMANTE"_s, true);
            return connection.failed() ? connection.errorText() : QString();
        };
        return {open, select, u"测试站点 "_s + database.server(), std::nullopt, 0, lender};
    }
    BackgroundQuery::Lender lender; // none: the source opens its own connection
    QTemporaryDir folder;
    quarry::test::TestDatabase database;
};

// The values of a row with their types, NULL told apart from empty.
QString described(const QVariantList &row)
{
    QStringList values;
    for (const QVariant &value : row)
        values.append(u"%1%2:%3"_s.arg(QString::fromLatin1(value.typeName()), value.isNull() ? u" null"_s : QString(), value.toString()));
    return values.join(u'|');
}

// The rows of source as QSqlQuery reads them, or the engine's fault.
QStringList queried(const RowSource &source)
{
    quarry::DbConnection connection;
    if (const QString fault = source.opener(connection); !fault.isEmpty())
        return {fault};
    QSqlQuery query(connection.database());
    query.setForwardOnly(true);
    if (!query.exec(source.select))
        return {query.lastError().databaseText()};
    QStringList rows;
    while (query.next()) {
        QVariantList row;
        for (int c = 0; c < query.record().count(); ++c)
            row.append(query.value(c));
        rows.append(described(row));
    }
    return rows;
}

// The rows of source as an export reads them.
QStringList streamed(const RowSource &source)
{
    RowStream stream(source);
    QStringList rows;
    for (QList<QVariantList> batch = stream.next([] { return true; }); !batch.isEmpty(); batch = stream.next([] { return true; })) {
        for (const QVariantList &row : std::as_const(batch))
            rows.append(described(row));
    }
    return rows << stream.failure();
}

QByteArray member(const QString &xlsx, const QString &name)
{
    return quarry::test::programOutput(u"unzip"_s, {u"-p"_s, xlsx, name});
}

// The cells of a sheet by reference ("A2"): "text <t>", "number <v>", or
// "date <v>" for a number with a format.
QHash<QString, QString> cells(const QString &xlsx, int sheet)
{
    QHash<QString, QString> found;
    QXmlStreamReader xml(member(xlsx, u"xl/worksheets/sheet%1.xml"_s.arg(sheet)));
    QString reference, type, style;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == "c"_L1) {
            reference = xml.attributes().value("r"_L1).toString();
            type = xml.attributes().value("t"_L1).toString();
            style = xml.attributes().value("s"_L1).toString();
        } else if (xml.name() == "v"_L1 || xml.name() == "t"_L1) {
            const QString value = xml.readElementText();
            found[reference] = type == "inlineStr"_L1 ? u"text "_s + value
                : style.isEmpty() ? u"number "_s + value
                                  : u"date "_s + value;
        }
    }
    return found;
}

QList<QStandardItem *> row(const QVariantList &values)
{
    QList<QStandardItem *> items;
    for (const QVariant &value : values) {
        auto *item = new QStandardItem;
        item->setData(value, Qt::DisplayRole);
        items.append(item);
    }
    return items;
}

// The numbers 1 to count, and columns more of text.
QString numbered(int count, int columns, const QString &text = {})
{
    return u"WITH RECURSIVE n(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM n WHERE x < %1) "
           "SELECT x%2 FROM n WHERE x <= %1"_s.arg(count).arg(u", '%1'"_s.arg(text).repeated(columns));
}

// A model with these titles, and the viewer's labels of the entry over it.
struct Titled
{
    explicit Titled(const QStringList &titles, const LogEntry &entry = {})
    {
        model.setHorizontalHeaderLabels(titles);
        rows.setSourceModel(&model);
        rows.setEntry(entry);
    }
    QStandardItemModel model;
    LabelledRows rows;
};

// The PDF's text as a reader's search sees it, pages from first to last.
QString pdfText(const QString &pdf, int first = 1, int last = 0)
{
    QStringList arguments{u"-f"_s, QString::number(first)};
    if (last > 0)
        arguments << u"-l"_s << QString::number(last);
    return QString::fromUtf8(quarry::test::programOutput(u"pdftotext"_s, arguments << pdf << u"-"_s));
}

// The report painted in a PDF file of the test's own; "" when that failed.
QString pdfOf(const LogReport &report)
{
    static const QTemporaryDir dir;
    static int made = 0;
    const QString path = dir.filePath(u"report%1.pdf"_s.arg(++made));
    QPdfWriter pdf(path);
    return report.paint(pdf) ? path : QString();
}

// "portrait" or "landscape", then each group as column=width.
QString layoutText(const TableLayout &layout)
{
    QStringList parts{layout.landscape ? u"landscape"_s : u"portrait"_s};
    for (const ColumnGroup &group : layout.groups) {
        QStringList columns;
        for (qsizetype i = 0; i < group.columns.size(); ++i)
            columns.append(u"%1=%2"_s.arg(group.columns[i]).arg(qRound(group.widths[i])));
        parts.append(columns.join(u' '));
    }
    return parts.join(u" | "_s);
}

} // namespace

class TestExports : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A desktop font that draws 日 as the radical ⽇ does: the reports
    // below keep their text searchable all the same.
    void initTestCase() { QApplication::setFont(QFont(u"Noto Sans CJK SC"_s)); }

    // Each cell keeps its kind in Excel: digits that are a code stay text,
    // dates and numbers with a format are numbers shown by the format.
    void cellsKeepWhatTheyAre()
    {
        LogEntry entry;
        entry.columnFormats = {{u"MONEY"_s, u"0.00"_s}, {u"WDH"_s, u"0000"_s}};
        Titled table({u"帐号"_s, u"代码"_s, u"日期"_s, u"文本日期"_s, u"张数"_s, u"长整数"_s, u"空"_s, u"money"_s, u"wdh"_s}, entry);
        const RowSource source = sqliteRows(u"SELECT '01234567890123456789', '0101', date('2009-01-05'), '2009-01-06', 42, "
                                            "1234567890123456789, NULL, 5172.8, 101 UNION ALL SELECT '2', NULL, NULL, NULL, NULL, "
                                            "NULL, NULL, NULL, NULL UNION ALL SELECT '3', NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL"_s);
        const QString path = m_sqlite.folder.filePath(u"kinds.xlsx"_s);
        // Two rows to a sheet under its titles: the third continues on a second sheet.
        QCOMPARE(writeXlsx(path, table.rows, source, {u"业务日志"_s, u" where 1=1"_s, u"SEAL"_s, u"SELECT"_s, u"全部"_s}, {}, 3), QString());

        QVERIFY(member(path, u"xl/workbook.xml"_s).contains(u"<sheet name=\"说明\" sheetId=\"1\" r:id=\"rId1\"/><sheet name=\"数据\" sheetId=\"2\" r:id=\"rId2\"/><sheet name=\"数据2\""_s.toUtf8()));
        const QHash<QString, QString> about = cells(path, 1);
        QCOMPARE(about.value(u"B1"_s), u"text 业务日志"_s);
        QCOMPARE(about.value(u"B3"_s), u"text 全部"_s);
        QCOMPARE(about.value(u"B7"_s), u"text 3"_s);
        const QHash<QString, QString> first = cells(path, 2);
        QStringList values; // row 2's, then A1 and A3; none for an empty value
        for (const QString &cell : u"A2 B2 C2 D2 E2 F2 G2 H2 I2 A1 A3"_s.split(u' '))
            values << first.value(cell, u"none"_s);
        QCOMPARE(values.join(u'|'), u"text 01234567890123456789|text 0101|date 39818|date 39819|number 42|text 1234567890123456789|none|"
                                    "date 5172.8|date 101|text 帐号|text 2"_s);
        // A column with a number format stays numbers, shown by the format.
        const QByteArray styles = member(path, u"xl/styles.xml"_s);
        QVERIFY2(styles.contains("formatCode=\"0.00\"") && styles.contains("formatCode=\"0000\""), styles.constData());
        QVERIFY(member(path, u"xl/worksheets/sheet2.xml"_s).contains("state=\"frozen\""));
        QCOMPARE(cells(path, 3).value(u"A2"_s), u"text 3"_s);
    }

    // The selected cells' workbook holds their rows and columns alone,
    // each column under its title, labelled and formatted as its own.
    void selectionWorkbook()
    {
        LogEntry entry;
        entry.listA = {{1, 2}, {u"增加行员"_s, u"删除行员"_s}, {}, u"OPTYPE"_s};
        entry.columnFormats = {{u"MONEY"_s, u"0.00"_s}};
        Titled table({u"memo"_s, u"OpType"_s, u"money"_s}, entry);
        table.model.setRowCount(4);
        RowSource source = sqliteRows(u"SELECT 'b', 2, 5172.8 UNION ALL SELECT 'c', 9, 3 UNION ALL SELECT 'd', 1, 4"_s);
        source.selected = SelectedCells(QItemSelection(table.model.index(2, 1), table.model.index(3, 2)));
        source.firstRow = 1;
        const QString path = m_sqlite.folder.filePath(u"cells.xlsx"_s);
        QCOMPARE(writeXlsx(path, table.rows, source, {}), QString());
        const QHash<QString, QString> sheet = cells(path, 2);
        QStringList values;
        for (const QString &cell : u"A1 B1 A2 B2 A3 B3 C1 A4"_s.split(u' '))
            values << sheet.value(cell, u"none"_s);
        QCOMPARE(values.join(u'|'), u"text OpType|text money|number 9|date 3|text 1 增加行员|date 4|none|none"_s);
    }

    // A column is as wide as its widest text and two cells more; CJK
    // characters, from U+2E80 on, take two cells.
    void columnWidths_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("width");
        QTest::newRow("U+2E7F, one cell each") << QString(7, QChar(0x2E7F)) << 9;
        QTest::newRow("U+2E80, two cells each") << QString(7, QChar(0x2E80)) << 16;
    }
    void columnWidths()
    {
        QFETCH(QString, text);
        Titled table({u"字"_s});
        const QString path = m_sqlite.folder.filePath(u"log.xlsx"_s);
        QCOMPARE(writeXlsx(path, table.rows, sqliteRows(u"SELECT '%1'"_s.arg(text)), {}), QString());
        static const QRegularExpression width(u"<col min=\"1\" max=\"1\" width=\"(\\d+)\\."_s);
        QTEST(width.match(QString::fromUtf8(member(path, u"xl/worksheets/sheet2.xml"_s))).captured(1).toInt(), "width");
    }

    // The CSV file labels a code list's codes and a number format's
    // numbers as the table shows them, whatever the letter case of the
    // column's name.
    void csvLabelled()
    {
        LogEntry entry;
        entry.listA = {{1, 2}, {u"增加行员"_s, u"删除行员"_s}, {}, u"OPTYPE"_s};
        entry.columnFormats = {{u"MONEY"_s, u"0.00"_s}};
        Titled source({u"OpType"_s, u"money"_s, u"memo"_s}, entry);
        const QString path = m_sqlite.folder.filePath(u"labelled.csv"_s);
        QCOMPARE(writeCsv(path, source.rows, sqliteRows(u"SELECT 2, 5172.8, 2 UNION ALL SELECT 9, 3, '1'"_s)), QString());
        QCOMPARE(quarry::test::readFile(path), "\xEF\xBB\xBFOpType,money,memo\r\n2 删除行员,5172.80,2\r\n9,3.00,1\r\n"_ba);
    }

    // Each engine's rows reach an export as the values QSqlQuery reads, of
    // the same types. A statement that fails says so, with the engine's
    // words, naming the station; a cancelled one is stopped on the database
    // at once and leaves the file that was there. Files are read and
    // written beside the calling thread, whose events go on (a window stays
    // drawn) while a slow statement runs.
    void engineRows_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<bool>("workbook");
        QTest::addColumn<bool>("lent"); // on the connection of a reader in the background
        for (Engine engine : quarry::test::allEngines()) {
            QTest::newRow(quarry::test::engineTag(engine, "csv").constData()) << engine << false << false;
            QTest::newRow(quarry::test::engineTag(engine, "xlsx").constData()) << engine << true << false;
            if (engine != Engine::MariaDbOdbc)
                QTest::newRow(quarry::test::engineTag(engine, "csv, lent").constData()) << engine << false << true;
        }
    }
    void engineRows()
    {
        QFETCH(Engine, engine);
        QFETCH(bool, workbook);
        QFETCH(bool, lent);
        QUARRY_REQUIRE_ENGINE(engine);
        EngineRows rows(engine);
        QVERIFY2(rows.database.isValid() && rows.database.execute(TypedRows), qPrintable(rows.database.errorText()));
        BackgroundQuery reader;
        reader.setOpener(rows.source({}).opener);
        if (lent)
            rows.lender = [&reader](BackgroundQuery::Loan loan) { reader.lend(std::move(loan)); };
        const RowSource typed = rows.source(u"SELECT * FROM TYPED ORDER BY B DESC, N"_s);
        const QStringList expected = queried(typed);
        QCOMPARE(streamed(typed), expected + QStringList{QString()}); // and no fault
        QCOMPARE(streamed(rows.source(u"CREATE TEMPORARY TABLE T2 (A INT)"_s)), QStringList{QString()}); // no result set

        const QString path = rows.folder.filePath(workbook ? u"rows.xlsx"_s : u"rows.csv"_s);
        quarry::test::writeFile(path, "old");
        const auto write = [&](const RowSource &source, const std::function<bool(qint64)> &goOn) {
            return workbook ? writeXlsx(path, LabelledRows(), source, {}, goOn) : writeCsv(path, LabelledRows(), source, goOn);
        };
        const RowSource missing = rows.source(u"SELECT * FROM MISSING"_s);
        QCOMPARE(write(missing, {}), u"在%1上查询失败：%2"_s.arg(missing.station, queried(missing).value(0)));

        int ticks = 0;
        QTimer ticking;
        connect(&ticking, &QTimer::timeout, this, [&ticks] { ++ticks; });
        ticking.start(10);
        const RowSource sorting = rows.source(u"WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c WHERE x < 1000) SELECT a.x FROM c a, c b, c d ORDER BY -a.x * b.x * d.x"_s);
        QElapsedTimer stopping;
        stopping.start();
        const QString cancelled = write(sorting, [&](qint64) { return stopping.elapsed() < 300; });
        QVERIFY2(cancelled.contains(u"已取消"_s), qPrintable(cancelled + QString::number(stopping.elapsed())));
        QVERIFY2(ticks >= 5, qPrintable(QString::number(ticks)));
        QCOMPARE(quarry::test::readFile(path), "old");
        // The statement stopped, not the connection, which reads on.
        QString after = u"no answer"_s;
        connect(&reader, &BackgroundQuery::finished, this, [&after](const QueryResult &result) { after = result.error.text(); });
        reader.run(u"SELECT * FROM TYPED"_s, -1);
        QTRY_COMPARE_WITH_TIMEOUT(after, QString(), quarry::test::WaitLimit);
    }

    void copiedCells_data()
    {
        QTest::addColumn<QList<QPoint>>("cells"); // (column, row of the table), in the order chosen
        QTest::addColumn<int>("firstRow");        // the table's row the statement starts at
        QTest::addColumn<bool>("titles");
        QTest::addColumn<QString>("text");
        QTest::newRow("a block, chosen backwards") << QList<QPoint>{{1, 1}, {0, 1}, {1, 0}, {0, 0}} << 0 << false << u"A0\tB0\nA1\tB1\n"_s;
        QTest::newRow("a gap stays a cell") << QList<QPoint>{{0, 0}, {2, 1}} << 0 << false << u"A0\t\n\tC 1\n"_s;
        QTest::newRow("read from its first row, with titles") << QList<QPoint>{{2, 5}, {1, 3}} << 3 << true << u"二\t三\nB3\t\n\tC 5\n"_s;
        QTest::newRow("nothing") << QList<QPoint>{} << 0 << true << QString();
        QTest::newRow("a fault") << QList<QPoint>{{0, 0}} << -1 << false << u"before"_s;
    }
    // Copied cells paste as a table: tabs between, lines after, a tab or
    // break inside a value made a blank; a fault leaves the text alone.
    void copiedCells()
    {
        QFETCH(QList<QPoint>, cells);
        QFETCH(int, firstRow);
        QFETCH(bool, titles);
        Titled table({u"一"_s, u"二"_s, u"三"_s});
        table.model.setRowCount(8);
        QItemSelection chosen;
        for (const QPoint &cell : cells)
            chosen.select(table.model.index(cell.y(), cell.x()), table.model.index(cell.y(), cell.x()));
        RowSource source = sqliteRows(firstRow < 0 ? u"SELECT * FROM MISSING"_s
                                                   : u"WITH RECURSIVE n(x) AS (SELECT %1 UNION ALL SELECT x + 1 FROM n WHERE x < 7) "
                                                     "SELECT 'A' || x, 'B' || x, 'C' || char(9) || x FROM n"_s.arg(firstRow));
        source.selected = SelectedCells(chosen);
        source.firstRow = firstRow;
        QString text = u"before"_s;
        const QString fault = copyCells(table.rows, source, titles, text);
        QCOMPARE(fault.isEmpty(), firstRow >= 0);
        QTEST(text, "text");
    }

    void tableLayout_data()
    {
        QTest::addColumn<QList<ColumnNeed>>("needs");
        QTest::addColumn<QString>("layout"); // pages 300 wide upright, 500 turned
        const ColumnNeed key{100, 100, true};
        QTest::newRow("upright, to its edge") << QList<ColumnNeed>{{100, 50}, {200, 50}} << u"portrait | 0=100 1=200"_s;
        QTest::newRow("turned") << QList<ColumnNeed>{{100, 50}, {201, 50}} << u"landscape | 0=166 1=334"_s;
        QTest::newRow("turned and wrapped") << QList<ColumnNeed>{{400, 100}, {200, 200}} << u"landscape | 0=300 1=200"_s;
        QTest::newRow("continued, keys and two columns")
            << QList<ColumnNeed>{key, {100, 100}, {100, 100}, {200, 200}, {100, 100, true}}
            << u"landscape | 0=125 4=125 1=125 2=125 | 0=125 4=125 3=250"_s;
        QTest::newRow("continued, a page to its edge")
            << QList<ColumnNeed>{key, {200, 200}, {200, 200}, {300, 300}} << u"landscape | 0=100 1=200 2=200 | 0=125 3=375"_s;
        QTest::newRow("no key to repeat") << QList<ColumnNeed>{{300, 300}, {300, 300}} << u"landscape | 0=500 | 1=500"_s;
        QTest::newRow("a piece wider than a page") << QList<ColumnNeed>{key, {900, 900}} << u"landscape | 0=50 1=450"_s;
    }
    // Upright while the columns fit on one line, turned when they need it,
    // wrapped before continued, continued pages with the identifying columns.
    void tableLayout()
    {
        QFETCH(QList<ColumnNeed>, needs);
        QTEST(layoutText(layoutTable(needs, 300, 500)), "layout");
    }

    // The report of a table too wide for a page: turned, every value whole
    // and found by a search in the PDF, the key and the account on each
    // page that continues a row.
    void reportValuesWhole()
    {
        const QStringList titles{u"序号"_s, u"账号"_s, u"日期"_s, u"时间"_s, u"金额"_s, u"网点号"_s, u"备注"_s};
        const QString memo = u"印鉴卡更换后首次验印，网点主管已复核全部票据要素。"_s.repeated(3);
        QList<QStringList> values;
        QStringList selects;
        for (int r = 0; r < 3; ++r) {
            values.append({QString::number(r + 1), u"1107061012345678%1"_s.arg(r), u"2005-10-2%1"_s.arg(r), u"14:15:3%1"_s.arg(r),
                           u"5172.80"_s, u"0101"_s, memo + u"第%1条"_s.arg(r + 1)});
            selects.append(u"SELECT '"_s + values.last().join(u"', '"_s) + u'\'');
        }
        const QString condition = u" where  ACCNO  LIKE  '1107%'"_s;
        Titled model(titles);
        LogReport report(model.rows, sqliteRows(selects.join(u" UNION ALL "_s)),
                         {u"验印日志"_s, condition, u"SEAL.db"_s, u"SELECT * FROM YYLOG"_s + condition, u"账号 以 1107 开头"_s}, {2, 24});
        report.setIdentifyingColumns({0, 1});
        const QString path = pdfOf(report);
        QVERIFY(!path.isEmpty());
        const QString about = QString::fromUtf8(quarry::test::programOutput(u"pdfinfo"_s, {path}));
        QVERIFY2(about.contains(u"842 x 595 pts"_s), qPrintable(about));
        const QString text = pdfText(path).remove(u'\n').remove(u' ');
        // 日 and 网 read back as themselves, not as the radicals ⽇ and ⽹.
        QVERIFY(text.contains(u"日期"_s) && text.contains(u"网点号"_s));
        QVERIFY(!text.contains(u'…'));
        for (int r = 0; r < 3; ++r) {
            for (int c = 1; c < titles.size() - 1; ++c)
                QVERIFY2(text.contains(values[r][c]), qPrintable(values[r][c]));
            QVERIFY(text.contains(u"第%1条"_s.arg(r + 1)));
        }
        // The rows go on over two pages side by side, each with the key and the account.
        for (int page = 1; page <= 2; ++page) {
            const QString text = pdfText(path, page, page);
            QVERIFY(text.contains(u"序号"_s) && text.contains(u"11070610123456780"_s) && !text.contains(u"第3条"_s));
        }
    }

    // A condition of thousands of branches is carried over pages, in words
    // at the head and once in SQL after the rows.
    void longCondition()
    {
        QStringList branches;
        for (int b = 110000; b <= 113000; ++b)
            branches.append(QString::number(b));
        const QString condition = u" where ( wdh in ('%1'))"_s.arg(branches.join(u"','"_s));
        Titled model({u"网点号"_s});
        const QString path = pdfOf(LogReport(model.rows, sqliteRows(u"SELECT 1"_s), {u"验印日志"_s, condition, u"SEAL"_s, condition, u"网点号 为 "_s + branches.join(u'、')}, {60, 10}));
        QVERIFY(!path.isEmpty());
        QVERIFY(!pdfText(path, 1, 1).contains(u"113000"_s));
        const QString text = pdfText(path).remove(u'\n');
        QCOMPARE(text.count(u"113000"_s), 2);
        QVERIFY(text.indexOf(u"、113000"_s) < text.indexOf(u"执行的 SQL"_s) && text.indexOf(u"执行的 SQL"_s) < text.indexOf(u"'113000'"_s));
    }

    // The statistics' report: every operator's bar, over as many pages as
    // they take, and no column the view hides.
    void statisticsReport()
    {
        LogEntry entry;
        entry.result = LogEntry::Result::Select;
        entry.hiddenColumns = {u"ID"_s};
        Titled source({u"id"_s, u"wdh"_s, u"opcode"_s, u"total"_s, u"passed"_s}, entry);
        for (int i = 0; i < 262; ++i)
            source.model.appendRow(row({u"不应打印"_s, u"0101"_s, u"T%1"_s.arg(i, 4, 10, QChar(u'0')), 10, i % 11}));
        const QString select = u"WITH RECURSIVE n(x) AS (SELECT 0 UNION ALL SELECT x + 1 FROM n WHERE x < 261) "
                               "SELECT '不应打印', '0101', printf('T%04d', x), 10, x % 11 FROM n"_s;
        const QString path = pdfOf(logReport(source.rows, sqliteRows(select), {u"验印结果统计"_s, {}, u"SEAL"_s, {}}, {60, 10}));
        QVERIFY(!path.isEmpty());
        const QString text = pdfText(path);
        QVERIFY(!text.contains(u"不应打印"_s));
        for (int i = 0; i < 262; ++i)
            QCOMPARE(text.count(u"T%1"_s.arg(i, 4, 10, QChar(u'0'))), 2); // in the table and the chart
        QVERIFY(text.contains(u"100.00%"_s) && text.contains(u"0.00%"_s));
        // The chart's pages start with its scale.
        QVERIFY(text.count(u"各操作员验印通过率"_s) == 1 && text.count(u"\n100%"_s) > 3);
    }

    // The print preview's progress stops the drawing, and the preview says
    // so.
    void previewStopped()
    {
        Titled model(QStringList(12, u"账号"_s));
        QString title;
        bool stopped = false;
        int looks = 0;
        QTimer look;
        connect(&look, &QTimer::timeout, this, [&] {
            // The drawing ends after the stop is seen, or else in time.
            const bool drawn = stopped || ++looks > 500;
            for (QWidget *widget : QApplication::allWidgets()) {
                if (auto *progress = qobject_cast<QProgressDialog *>(widget)) {
                    progress->cancel();
                    stopped = true;
                }
                if (auto *dialog = qobject_cast<QPrintPreviewDialog *>(widget); dialog && drawn) {
                    title = dialog->windowTitle();
                    dialog->reject();
                }
            }
        });
        look.start(20);
        previewReport(LogReport(model.rows, sqliteRows(numbered(6000, 11, u"1107061012345678"_s)), {u"验印日志"_s, {}, u"SEAL"_s, {}}, {60, 9}),
                      u"验印日志"_s, nullptr);
        QCOMPARE(title, u"打印预览 — 验印日志（已停止）"_s);
    }

    void pdfFile_data()
    {
        QTest::addColumn<QString>("select");
        QTest::addColumn<qint64>("stopAt"); // the rows told that stop the writing, 0 for none
        QTest::addColumn<QString>("fault");
        QTest::addColumn<qint64>("told"); // the last rows told
        const QString wide = u"印鉴卡更换后首次验印，网点主管已复核全部票据要素"_s.repeated(8);
        QTest::newRow("whole, a late value wider than its column")
            << numbered(699, 1, u"短"_s) + u" UNION ALL SELECT 700, '%1'"_s.arg(wide) << qint64(0) << QString() << qint64(700);
        QTest::newRow("stopped") << numbered(2000, 1) << qint64(500) << u"已取消导出"_s << qint64(500);
        QTest::newRow("failed") << u"SELECT * FROM GONE"_s << qint64(0) << u"上查询失败：no such table: GONE"_s << qint64(0);
    }
    // The report's file has every row, told in rows as they are read, and
    // a value wider than the first rows' wraps whole; a stop or a fault
    // leaves the file that was there.
    void pdfFile()
    {
        QFETCH(QString, select);
        QFETCH(qint64, stopAt);
        QFETCH(QString, fault);
        Titled model({u"序号"_s, u"备注"_s});
        QTemporaryDir dir;
        const QString path = dir.filePath(u"report.pdf"_s);
        quarry::test::writeFile(path, "old");
        qint64 told = -1;
        const QString failed = writePdf(path, LogReport(model.rows, sqliteRows(select), {u"验印日志"_s, {}, u"SEAL"_s, {}}, {60, 10}), u"验印日志"_s,
                                        [&](qint64 rows) {
                                            told = rows;
                                            return stopAt == 0 || rows < stopAt;
                                        });
        QVERIFY2(fault.isEmpty() ? failed.isEmpty() : failed.contains(fault), qPrintable(failed));
        QTEST(told, "told");
        if (!fault.isEmpty()) {
            QCOMPARE(quarry::test::readFile(path), "old");
            return;
        }
        const QString text = pdfText(path).remove(u'\n').remove(u' ');
        QVERIFY(text.contains(select.section(u'\'', -2, -2)));
        QCOMPARE(text.count(u"短"_s), 699);
    }

    void reportPages_data()
    {
        QTest::addColumn<int>("rowsPerPage");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("operators");
        QTest::addColumn<int>("pages");
        QTest::newRow("60 a page") << 60 << 130 << 0 << 3;
        QTest::newRow("65 a page") << 65 << 130 << 0 << 2;
        QTest::newRow("no rows") << 60 << 0 << 0 << 1;
        QTest::newRow("a chart after the rows") << 65 << 130 << 3 << 3;
    }
    // The station's rows to a page decide the pages of the PDF.
    void reportPages()
    {
        QFETCH(int, rowsPerPage);
        QFETCH(int, rows);
        QFETCH(int, operators);
        Titled model({u"序号"_s, u"一"_s, u"二"_s});
        LogReport report(model.rows, sqliteRows(numbered(rows, 2)), {u"业务日志"_s, u" where 1=1"_s, u"SEAL"_s, {}}, {rowsPerPage, 6});
        report.setRates(PassRates(operators, {u"0011"_s, 50.0}));
        const QString path = pdfOf(report);
        QVERIFY(!path.isEmpty());
        static const QRegularExpression page(u"/Type\\s*/Page[^s]"_s);
        QTEST(int(QString::fromLatin1(quarry::test::readFile(path)).count(page)), "pages");
    }

private:
    // The rows of select, read from a database file of the test's own.
    RowSource sqliteRows(const QString &select) const { return m_sqlite.source(select); }

    const EngineRows m_sqlite{Engine::Sqlite};
};

QTEST_MAIN(TestExports)
#include "tst_exports.moc"
