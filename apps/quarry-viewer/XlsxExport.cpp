#include "XlsxExport.h"

#include "NumberFormat.h"

#include <QAbstractItemModel>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QHash>

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

struct WorkbookCloser
{
    void operator()(lxw_workbook *workbook) const { workbook_close(workbook); }
};
using Workbook = std::unique_ptr<lxw_workbook, WorkbookCloser>;

class Writer
{
public:
    Writer(lxw_workbook *workbook, const QAbstractItemModel &rows)
        : m_workbook(workbook)
        , m_rows(rows)
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

    // A sheet of rows: the titles, frozen, and columns as wide as their
    // first rows.
    lxw_worksheet *addRowsSheet(const QString &name)
    {
        lxw_worksheet *sheet = addSheet(name);
        const int columns = m_rows.columnCount();
        const int measured = std::min(m_rows.rowCount(), RowsMeasured);
        for (int c = 0; c < columns; ++c) {
            const QString title = m_rows.headerData(c, Qt::Horizontal).toString();
            int width = cellsOf(title);
            for (int r = 0; r < measured; ++r)
                width = std::max(width, cellsOf(m_rows.index(r, c).data().toString()));
            worksheet_set_column(sheet, lxw_col_t(c), lxw_col_t(c), std::clamp(width + 2, 8, 60),
                                 nullptr);
            writeText(sheet, 0, lxw_col_t(c), title, m_titleFormat);
        }
        worksheet_freeze_panes(sheet, 1, 0);
        return sheet;
    }

    // A number of a column with a format stays a number, shown by the
    // format.
    void writeCell(lxw_worksheet *sheet, lxw_row_t row, lxw_col_t column, const QModelIndex &cell)
    {
        const QString pattern = cell.data(NumberFormatRole).toString();
        bool number = false;
        const double value = cell.data(Qt::EditRole).toString().trimmed().toDouble(&number);
        if (pattern.isEmpty() || !number) {
            writeCell(sheet, row, column, cell.data());
            return;
        }
        lxw_format *&format = m_numberFormats[pattern];
        if (!format) {
            format = workbook_add_format(m_workbook);
            format_set_num_format(format, pattern.toUtf8().constData());
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
    const QAbstractItemModel &m_rows;
    lxw_format *m_titleFormat;
    lxw_format *m_dateFormat;
    lxw_format *m_dateTimeFormat;
    QHash<QString, lxw_format *> m_numberFormats; // by pattern
};

} // namespace

QString writeXlsx(const QString &path, const QAbstractItemModel &rows, const ExportHeading &heading,
                  const std::function<bool(qint64)> &progress, qint64 sheetRows)
{
    // Written beside its place and moved there once whole.
    const QString part = path + u".part"_s;
    const QByteArray partName = QFile::encodeName(part);
    lxw_workbook_options options{LXW_TRUE, nullptr, LXW_TRUE};
    Workbook workbook(workbook_new_opt(partName.constData(), &options));
    if (!workbook)
        return u"无法写文件 %1"_s.arg(QDir::toNativeSeparators(path));

    Writer writer(workbook.get(), rows);
    lxw_worksheet *about = writer.addSheet(u"说明"_s);
    worksheet_set_column(about, 0, 0, 10, nullptr);
    worksheet_set_column(about, 1, 1, 100, nullptr);
    const std::pair<QString, QString> lines[] = {
        {u"日志"_s, heading.log},
        {u"条件"_s, heading.condition},
        {u"条件说明"_s, heading.conditionWords},
        {u"站点"_s, heading.station},
        {u"SQL"_s, heading.sql},
        {u"导出时间"_s, QDateTime::currentDateTime().toString(u"yyyy-MM-dd hh:mm:ss"_s)},
        {u"行数"_s, QString::number(rows.rowCount())},
    };
    lxw_row_t line = 0;
    for (const auto &[label, text] : lines) {
        writer.writeText(about, line, 0, label, writer.titleFormat());
        writer.writeText(about, line++, 1, text);
    }

    const qint64 perSheet = std::max<qint64>(sheetRows - 1, 1);
    const int count = rows.rowCount();
    const int columns = rows.columnCount();
    lxw_worksheet *sheet = nullptr;
    for (int r = 0; r < count; ++r) {
        const qint64 onSheet = r % perSheet;
        if (onSheet == 0) {
            const qint64 number = r / perSheet + 1;
            sheet = writer.addRowsSheet(number == 1 ? u"数据"_s : u"数据%1"_s.arg(number));
        }
        for (int c = 0; c < columns; ++c)
            writer.writeCell(sheet, lxw_row_t(onSheet + 1), lxw_col_t(c), rows.index(r, c));
        if (progress && (r + 1) % ProgressEvery == 0 && !progress(r + 1)) {
            workbook.reset();
            QFile::remove(part);
            return u"已取消导出，%1 未写"_s.arg(QDir::toNativeSeparators(path));
        }
    }
    if (count == 0)
        writer.addRowsSheet(u"数据"_s);

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

} // namespace quarry::viewer
