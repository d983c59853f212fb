// The Excel export read back as a spreadsheet reads it (the cells' kinds
// and values in the sheets' XML), the printed report's pages, and copied
// cells.

#include "LogReport.h"
#include "SelectedCells.h"
#include "TestFiles.h"
#include "XlsxExport.h"

#include <QDate>
#include <QDir>
#include <QLabel>
#include <QPdfWriter>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;
using namespace quarry::viewer;

namespace {

QByteArray member(const QString &xlsx, const QString &name)
{
    QProcess unzip;
    unzip.start(u"unzip"_s, {u"-p"_s, xlsx, name});
    unzip.waitForFinished(quarry::test::WaitLimit);
    return unzip.readAllStandardOutput();
}

// The cells of a sheet by reference ("A2"): "text <t>", "number <v>", or
// "date <v>" for a number with a format.
QHash<QString, QString> cells(const QString &xlsx, int sheet)
{
    QStringList shared;
    QXmlStreamReader strings(member(xlsx, u"xl/sharedStrings.xml"_s));
    while (!strings.atEnd()) {
        if (strings.readNext() == QXmlStreamReader::StartElement && strings.name() == "t"_L1)
            shared.append(strings.readElementText());
    }
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
            found[reference] = type == "s"_L1 ? u"text "_s + shared.value(value.toInt())
                : type == "inlineStr"_L1 || type == "str"_L1 ? u"text "_s + value
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

} // namespace

class TestExports : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cellsKeepWhatTheyAre()
    {
        QStandardItemModel model;
        model.setHorizontalHeaderLabels({u"帐号"_s, u"代码"_s, u"日期"_s, u"文本日期"_s, u"张数"_s, u"长整数"_s, u"空"_s});
        model.appendRow(row({u"01234567890123456789"_s, u"0101"_s, QDate(2009, 1, 5), u"2009-01-06"_s, 42,
                             qlonglong(1234567890123456789), QVariant()}));
        model.appendRow(row({u"2"_s}));
        model.appendRow(row({u"3"_s}));
        QTemporaryDir dir;
        const QString path = dir.filePath(u"log.xlsx"_s);
        // Two rows to a sheet under its titles: the third continues on a second sheet.
        QCOMPARE(writeXlsx(path, model, {u"业务日志"_s, u" where 1=1"_s, u"SEAL"_s, u"SELECT"_s, u"全部"_s}, {}, 3), QString());

        QVERIFY(member(path, u"xl/workbook.xml"_s).contains(u"<sheet name=\"说明\" sheetId=\"1\" r:id=\"rId1\"/><sheet name=\"数据\" sheetId=\"2\" r:id=\"rId2\"/><sheet name=\"数据2\""_s.toUtf8()));
        const QHash<QString, QString> about = cells(path, 1);
        QCOMPARE(about.value(u"B1"_s), u"text 业务日志"_s);
        QCOMPARE(about.value(u"B3"_s), u"text 全部"_s);
        QCOMPARE(about.value(u"B7"_s), u"text 3"_s);
        const QHash<QString, QString> first = cells(path, 2);
        QCOMPARE(first.value(u"A1"_s), u"text 帐号"_s);
        QCOMPARE(first.value(u"A2"_s), u"text 01234567890123456789"_s);
        QCOMPARE(first.value(u"B2"_s), u"text 0101"_s);
        QCOMPARE(first.value(u"C2"_s), u"date 39818"_s);
        QCOMPARE(first.value(u"D2"_s), u"date 39819"_s);
        QCOMPARE(first.value(u"E2"_s), u"number 42"_s);
        QCOMPARE(first.value(u"F2"_s), u"text 1234567890123456789"_s);
        QVERIFY(!first.contains(u"G2"_s));
        QCOMPARE(first.value(u"A3"_s), u"text 2"_s);
        QVERIFY(member(path, u"xl/worksheets/sheet2.xml"_s).contains("state=\"frozen\""));
        QCOMPARE(cells(path, 3).value(u"A2"_s), u"text 3"_s);
    }

    // A cancelled export leaves the file that was there.
    void cancelled()
    {
        QStandardItemModel model(6000, 1);
        QTemporaryDir dir;
        const QString path = dir.filePath(u"log.xlsx"_s);
        quarry::test::writeFile(path, "old");
        qint64 seen = 0;
        const QString fault = writeXlsx(path, model, {}, [&](qint64 rows) {
            seen = rows;
            return false;
        });
        QVERIFY(fault.contains(u"已取消"_s));
        QCOMPARE(seen, 5000);
        QCOMPARE(quarry::test::readFile(path), "old");
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{u"log.xlsx"_s});
    }

    void copiedCells_data()
    {
        QTest::addColumn<QList<QPoint>>("cells"); // (column, row), in the order chosen
        QTest::addColumn<bool>("titles");
        QTest::addColumn<QString>("text");
        QTest::newRow("a block, chosen backwards") << QList<QPoint>{{1, 1}, {0, 1}, {1, 0}, {0, 0}} << false << u"A0\tB0\nA1\tB1\n"_s;
        QTest::newRow("with titles") << QList<QPoint>{{2, 0}} << true << u"三\nC 0\n"_s;
        QTest::newRow("a gap stays a cell") << QList<QPoint>{{0, 0}, {2, 1}} << false << u"A0\t\n\tC 1\n"_s;
        QTest::newRow("nothing") << QList<QPoint>{} << true << QString();
    }
    // Copied cells paste as a table: tabs between, lines after, a tab or
    // break inside a value made a blank.
    void copiedCells()
    {
        QFETCH(QList<QPoint>, cells);
        QFETCH(bool, titles);
        QStandardItemModel model(2, 3);
        model.setHorizontalHeaderLabels({u"一"_s, u"二"_s, u"三"_s});
        for (int r = 0; r < 2; ++r) {
            model.setData(model.index(r, 0), u"A%1"_s.arg(r));
            model.setData(model.index(r, 1), u"B%1"_s.arg(r));
            model.setData(model.index(r, 2), u"C\t%1"_s.arg(r));
        }
        QItemSelection chosen;
        for (const QPoint &cell : cells)
            chosen.select(model.index(cell.y(), cell.x()), model.index(cell.y(), cell.x()));
        QTEST(tabSeparated(SelectedCells(model, chosen), titles), "text");
    }

    void reportPages_data()
    {
        QTest::addColumn<int>("rowsPerPage");
        QTest::addColumn<int>("rows");
        QTest::addColumn<bool>("chart");
        QTest::addColumn<int>("pages");
        QTest::newRow("60 a page") << 60 << 130 << false << 3;
        QTest::newRow("65 a page") << 65 << 130 << false << 2;
        QTest::newRow("no rows") << 60 << 0 << false << 1;
        QTest::newRow("a chart after the rows") << 65 << 130 << true << 3;
    }
    // The station's rows to a page decide the pages of the PDF.
    void reportPages()
    {
        QFETCH(int, rowsPerPage);
        QFETCH(int, rows);
        QFETCH(bool, chart);
        QStandardItemModel model(rows, 3);
        QLabel picture(u"图"_s);
        LogReport report(model, {u"业务日志"_s, u" where 1=1"_s, u"SEAL"_s, {}}, {rowsPerPage, 9});
        if (chart)
            report.setPicture(&picture);
        QTemporaryDir dir;
        const QString path = dir.filePath(u"report.pdf"_s);
        {
            QPdfWriter pdf(path);
            QVERIFY(report.paint(pdf));
            QPdfWriter stopped(dir.filePath(u"stopped.pdf"_s)); // after the first page
            QCOMPARE(report.paint(stopped, [](qint64 painted) { return painted == 0; }), report.pageCount() == 1);
        }
        static const QRegularExpression page(u"/Type\\s*/Page[^s]"_s);
        QTEST(int(QString::fromLatin1(quarry::test::readFile(path)).count(page)), "pages");
    }
};

QTEST_MAIN(TestExports)
#include "tst_exports.moc"
