#include "XlsxExport.h"

#include "catalogue/LabelledRows.h"
#include "ColumnLabels.h"
#include "ExportThread.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QStringList>

#include <xlsxwriter.h>

#include <algorithm>
#include <filesystem>
#include <memory>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

// A spreadsheet keeps 15 significant digits of a number: a longer integer
// (an account number stored as one) is written as text.
constexpr qint64 ExactInteger = 999'999'999'999'999;
// The longest text a cell holds.
constexpr qsizetype CellText = 32767;
// Rows read for the columns' widths.
constexpr int RowsMeasured = 100;
constexpr int ProgressEvery = 5000;

// Display width in character cells: CJK characters take two.
int cellsOf(const QString &text)
{
    int cells = 0;
    for (QChar c : text)
        cells += c.unicode() >= 0x2E80 ? 2 : 1;
    return cells;
}

// A cell as it is written: the value stored, the value shown, and the
// number format of its column.
struct Cell
{
    QVariant stored;
    QVariant shown;
    QString pattern;
};
using Row = QList<Cell>;
enum class Next { Row, End, Stop };
// Fills the next row; Stop when the rows cannot be read on.
using NextRow = std::function<Next(Row &)>;

struct WorkbookCloser
{
    void operator()(lxw_workbook *workbook) const { workbook_close(workbook); }
};
using Workbook = std::unique_ptr<lxw_workbook, WorkbookCloser>;

class Writer
{
public:
    Writer(lxw_workbook *workbook, const QStringList &titles)
        : m_workbook(workbook)
        , m_titles(titles)
        , m_titleFormat(workbook_add_format(workbook))
        , m_dateFormat(workbook_add_format(workbook))
        , m_dateTimeFormat(workbook_add_format(workbook))
    {
        format_set_bold(m_titleFormat);
        format_set_num_format(m_dateFormat, "yyyy-mm-dd");
        format_set_num_format(m_dateTimeFormat, "yyyy-mm-dd hh:mm:ss");
    }

    lxw_worksheet *addSheet(const QString &name)
    {
        return workbook_add_worksheet(m_workbook, name.toUtf8().constData());
    }

    void writeText(lxw_worksheet *sheet, lxw_row_t row, lxw_col_t column, const QString &text,
                   lxw_format *format = nullptr)
    {
        worksheet_write_string(sheet, row, column, text.left(CellText).toUtf8().constData(),
                               format);
    }

    lxw_format *titleFormat() const { return m_titleFormat; }

    // Columns as wide as their titles and the values of rows.
    void measure(const QList<Row> &rows)
    {
        for (const QString &title : m_titles)
            m_widths.append(cellsOf(title));
        for (const Row &row : rows) {
            for (qsizetype c = 0; c < row.size() && c < m_widths.size(); ++c)
                m_widths[c] = std::max(m_widths[c], cellsOf(row[c].shown.toString()));
        }
    }

    // A sheet of rows: the titles, frozen, and the columns as measured.
    lxw_worksheet *addRowsSheet(const QString &name)
    {
        lxw_worksheet *sheet = addSheet(name);
        for (qsizetype c = 0; c < m_titles.size(); ++c) {
            worksheet_set_column(sheet, lxw_col_t(c), lxw_col_t(c),
                                 std::clamp(m_widths.value(c) + 2, 8, 60), nullptr);
            writeText(sheet, 0, lxw_col_t(c), m_titles[c], m_titleFormat);
        }
        worksheet_freeze_panes(sheet, 1, 0);
        return sheet;
    }

    // A number of a column with a format stays a number, shown by the
    // format.
    void writeCell(lxw_worksheet *sheet, lxw_row_t row, lxw_col_t column, const Cell &cell)
    {
        bool number = false;
        const double value = cell.stored.toString().trimmed().toDouble(&number);
        if (cell.pattern.isEmpty() || !number) {
            writeCell(sheet, row, column, cell.shown);
            return;
        }
        lxw_format *&format = m_numberFormats[cell.pattern];
        if (!format) {
            format = workbook_add_format(m_workbook);
            format_set_num_format(format, cell.pattern.toUtf8().constData());
        }
        worksheet_write_number(sheet, row, column, value, format);
    }

    void writeCell(lxw_worksheet *sheet, lxw_row_t row, lxw_col_t column, const QVariant &value)
    {
        if (value.isNull())
            return;
        switch (value.typeId()) {
        case QMetaType::QDate:
            writeDate(sheet, row, column, value.toDate().startOfDay(), m_dateFormat);
            return;
        case QMetaType::QDateTime:
            writeDate(sheet, row, column, value.toDateTime(), m_dateTimeFormat);
            return;
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong: {
            const bool exact = value.typeId() == QMetaType::ULongLong
                ? value.toULongLong() <= quint64(ExactInteger)
                : qAbs(value.toLongLong()) <= ExactInteger;
            if (exact) {
                worksheet_write_number(sheet, row, column, value.toDouble(), nullptr);
                return;
            }
            break;
        }
        case QMetaType::Double:
        case QMetaType::Float:
            worksheet_write_number(sheet, row, column, value.toDouble(), nullptr);
            return;
        default:
            break;
        }
        const QString text = value.toString();
        // Dates stored as text, as the embedded station keeps them.
        if (text.size() == 10 && text[4] == u'-' && text[7] == u'-') {
            if (const QDate date = QDate::fromString(text, Qt::ISODate); date.isValid()) {
                writeDate(sheet, row, column, date.startOfDay(), m_dateFormat);
                return;
            }
        }
        writeText(sheet, row, column, text);
    }

private:
    static void writeDate(lxw_worksheet *sheet, lxw_row_t row, lxw_col_t column,
                          const QDateTime &when, lxw_format *format)
    {
        lxw_datetime cell{when.date().year(),   when.date().month(),
                          when.date().day(),    when.time().hour(),
                          when.time().minute(), when.time().second() + when.time().msec() / 1000.0};
        worksheet_write_datetime(sheet, row, column, &cell, format);
    }

    lxw_workbook *m_workbook;
    QStringList m_titles;
    QList<int> m_widths;
    lxw_format *m_titleFormat;
    lxw_format *m_dateFormat;
    lxw_format *m_dateTimeFormat;
    QHash<QString, lxw_format *> m_numberFormats; // by pattern
};

} // namespace

namespace {

// The rows that next() gives, under titles.
QString writeWorkbook(const QString &path, const QStringList &titles, const ExportHeading &heading,
                      const NextRow &next, const std::function<bool(qint64)> &progress,
                      qint64 sheetRows)
{
    // Written beside its place and moved there once whole.
    const QString part = path + u".part"_s;
    const QByteArray partName = QFile::encodeName(part);
    lxw_workbook_options options{LXW_TRUE, nullptr, LXW_TRUE};
    Workbook workbook(workbook_new_opt(partName.constData(), &options));
    if (!workbook)
        return u"无法写文件 %1"_s.arg(QDir::toNativeSeparators(path));

    Writer writer(workbook.get(), titles);
    // The first rows are read ahead for the columns' widths.
    QList<Row> ahead;
    Next read = Next::Row;
    for (Row row; ahead.size() < RowsMeasured && (read = next(row)) == Next::Row;)
        ahead.append(row);
    writer.measure(ahead);
    lxw_worksheet *about = writer.addSheet(u"说明"_s);
    worksheet_set_column(about, 0, 0, 10, nullptr);
    worksheet_set_column(about, 1, 1, 100, nullptr);
    const qint64 perSheet = std::max<qint64>(sheetRows - 1, 1);
    lxw_worksheet *sheet = writer.addRowsSheet(u"数据"_s);
    qint64 r = 0;
    for (Row row; read != Next::Stop; ++r) {
        if (r < ahead.size())
            row = ahead[r];
        else if (read == Next::End || (read = next(row)) != Next::Row)
            break;
        const qint64 onSheet = r % perSheet;
        if (onSheet == 0 && r > 0)
            sheet = writer.addRowsSheet(u"数据%1"_s.arg(r / perSheet + 1));
        for (qsizetype c = 0; c < row.size(); ++c)
            writer.writeCell(sheet, lxw_row_t(onSheet + 1), lxw_col_t(c), row[c]);
        if (progress && (r + 1) % ProgressEvery == 0 && !progress(r + 1))
            read = Next::Stop;
    }
    if (read == Next::Stop) {
        workbook.reset();
        QFile::remove(part);
        return u"已取消导出，%1 未写"_s.arg(QDir::toNativeSeparators(path));
    }
    // The heading last: it counts the rows.
    const std::pair<QString, QString> lines[] = {
        {u"日志"_s, heading.log},
        {u"条件"_s, heading.condition},
        {u"条件说明"_s, heading.conditionWords},
        {u"站点"_s, heading.station},
        {u"SQL"_s, heading.sql},
        {u"导出时间"_s, QDateTime::currentDateTime().toString(u"yyyy-MM-dd hh:mm:ss"_s)},
        {u"行数"_s, QString::number(r)},
    };
    lxw_row_t line = 0;
    for (const auto &[label, text] : lines) {
        writer.writeText(about, line, 0, label, writer.titleFormat());
        writer.writeText(about, line++, 1, text);
    }

    const lxw_error closed = workbook_close(workbook.release());
    if (closed != LXW_NO_ERROR) {
        QFile::remove(part);
        return u"无法写文件 %1：%2"_s.arg(QDir::toNativeSeparators(path),
                                          QString::fromUtf8(lxw_strerror(closed)));
    }
    // Replaces an older file in one step.
    std::error_code moved;
    std::filesystem::rename(partName.constData(), QFile::encodeName(path).constData(), moved);
    if (moved) {
        QFile::remove(part);
        return u"无法写文件 %1：%2"_s.arg(QDir::toNativeSeparators(path),
                                          QString::fromLocal8Bit(moved.message()));
    }
    return {};
}

} // namespace

QString writeXlsx(const QString &path, const LabelledRows &rows, const RowSource &source,
                  const ExportHeading &heading, const std::function<bool(qint64)> &progress,
                  qint64 sheetRows)
{
    const ColumnLabels labels(rows);
    QStringList patterns;
    for (int c = 0; c < rows.columnCount(); ++c) {
        const QString name = rows.headerData(c, Qt::Horizontal, Qt::ToolTipRole).toString();
        patterns.append(rows.entry().columnFormats.value(name.toUpper()));
    }
    // The table's column of a value of the source's rows.
    const auto column = [&source](qsizetype value) {
        return source.selected ? source.selected->columns().value(value) : int(value);
    };
    const QStringList titles
        = source.selected ? labels.titles(source.selected->columns()) : labels.titles();
    return runBeside(
        [&](const Progress &told) {
            RowStream stream(source);
            const QList<QVariantList> *batch = nullptr;
            qsizetype at = 0;
            qint64 given = 0;
            bool stopped = false;
            const auto goOn = [&] { return stopped = !told(given), !stopped; };
            const auto next = [&](Row &row) {
                if (!batch || at == batch->size()) {
                    batch = &stream.next(goOn);
                    at = 0;
                    if (batch->isEmpty())
                        return stopped || !stream.failure().isEmpty() ? Next::Stop : Next::End;
                }
                const QVariantList &values = (*batch)[at++];
                row.clear();
                for (qsizetype c = 0; c < values.size(); ++c)
                    row.append({values[c], labels.labelled(column(c), values[c]),
                                patterns.value(column(c))});
                ++given;
                return Next::Row;
            };
            const QString fault = writeWorkbook(path, titles, heading, next, told, sheetRows);
            return stream.failure().isEmpty() ? fault : stream.failure();
        },
        progress);
}

} // namespace quarry::viewer
