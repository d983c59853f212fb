#include "LogReport.h"

#include <QAbstractItemModel>
#include <QDate>
#include <QFontMetrics>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QStringList>
#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

// Rows read for the columns' widths.
constexpr int RowsMeasured = 100;

} // namespace

LogReport::LogReport(const QAbstractItemModel &rows, const ExportHeading &heading,
                     const PrintSettings &settings)
    : m_rows(rows)
    , m_heading(heading)
    , m_settings{std::max(settings.rowsPerPage, 1), std::clamp(settings.pointSize, 4, 72)}
{
    m_font.setPointSize(m_settings.pointSize);
}

int LogReport::rowPages() const
{
    return std::max(1, (m_rows.rowCount() + m_settings.rowsPerPage - 1) / m_settings.rowsPerPage);
}

int LogReport::pageCount() const
{
    return rowPages() + (m_picture ? 1 : 0);
}

bool LogReport::paint(QPagedPaintDevice &device, const std::function<bool(qint64)> &progress) const
{
    QPainter painter(&device);
    painter.setFont(m_font);
    const QRect page = painter.viewport();
    for (int number = 1; number <= pageCount(); ++number) {
        const qint64 painted
            = qMin<qint64>(qint64(number - 1) * m_settings.rowsPerPage, m_rows.rowCount());
        if (progress && !progress(painted))
            return false;
        if (number > 1)
            device.newPage();
        const int top = paintHead(painter, page, number);
        const QRect area(page.left(), top, page.width(), page.bottom() - top);
        if (number <= rowPages()) {
            paintRows(painter, area, (number - 1) * m_settings.rowsPerPage);
        } else {
            const QPixmap picture = m_picture->grab();
            const QSize size = picture.size().scaled(area.size(), Qt::KeepAspectRatio);
            painter.drawPixmap(QRect(area.topLeft(), size), picture);
        }
    }
    return true;
}

int LogReport::paintHead(QPainter &painter, const QRect &page, int number) const
{
    const QFontMetrics metrics(painter.font());
    const int line = metrics.lineSpacing();
    QFont title = painter.font();
    title.setPointSize(m_settings.pointSize + 4);
    title.setBold(true);
    painter.save();
    painter.setFont(title);
    const int titleHeight = QFontMetrics(title).lineSpacing();
    painter.drawText(QRect(page.left(), page.top(), page.width(), titleHeight),
                     Qt::AlignLeft | Qt::AlignVCenter, m_heading.log);
    painter.restore();
    int top = page.top() + titleHeight;
    painter.drawText(QRect(page.left(), top, page.width(), line), Qt::AlignLeft,
                     u"站点：%1"_s.arg(m_heading.station));
    painter.drawText(QRect(page.left(), top, page.width(), line), Qt::AlignRight,
                     u"打印日期：%1    第 %2 页，共 %3 页"_s
                         .arg(QDate::currentDate().toString(u"yyyy-MM-dd"_s))
                         .arg(number)
                         .arg(pageCount()));
    top += line;
    if (number == 1)
        top = paintCondition(painter, page, top);
    painter.drawLine(page.left(), top + line / 4, page.right(), top + line / 4);
    return top + line / 2;
}

int LogReport::paintCondition(QPainter &painter, const QRect &page, int top) const
{
    const QString label = u"条件："_s;
    const int indent = painter.fontMetrics().horizontalAdvance(label);
    painter.drawText(QRect(page.left(), top, indent, page.height()), Qt::AlignLeft, label);
    QStringList paragraphs;
    for (const QString &text : {m_heading.conditionWords, m_heading.condition.trimmed()}) {
        if (!text.isEmpty() && !paragraphs.contains(text))
            paragraphs.append(text);
    }
    if (paragraphs.isEmpty())
        paragraphs.append(u"全部记录"_s);
    for (const QString &text : std::as_const(paragraphs)) {
        const QRect bounds = painter.boundingRect(QRect(page.left() + indent, top,
                                                        page.width() - indent, page.height()),
                                                  Qt::TextWordWrap, text);
        painter.drawText(bounds, Qt::TextWordWrap, text);
        top = bounds.bottom() + 1;
    }
    return top;
}

void LogReport::paintRows(QPainter &painter, const QRect &area, int firstRow) const
{
    const int columns = m_rows.columnCount();
    if (columns == 0)
        return;
    const QList<double> shares = columnShares();
    // The titles and the page's rows share the area in equal lines.
    const int height = std::max(1, area.height() / (m_settings.rowsPerPage + 1));
    const auto paintLine = [&](int y, const auto &textOf) {
        double x = area.left();
        for (int c = 0; c < columns; ++c) {
            const double width = shares.at(c) * area.width();
            const QRect cell(int(x), y, int(width) - 4, height);
            painter.drawText(cell, Qt::AlignLeft | Qt::AlignVCenter,
                             painter.fontMetrics().elidedText(textOf(c), Qt::ElideRight,
                                                              cell.width()));
            x += width;
        }
    };
    painter.save();
    QFont bold = painter.font();
    bold.setBold(true);
    painter.setFont(bold);
    paintLine(area.top(), [&](int c) { return m_rows.headerData(c, Qt::Horizontal).toString(); });
    painter.restore();
    const int last = std::min(m_rows.rowCount(), firstRow + m_settings.rowsPerPage);
    for (int r = firstRow; r < last; ++r) {
        const int y = area.top() + (r - firstRow + 1) * height;
        paintLine(y, [&](int c) { return m_rows.index(r, c).data().toString(); });
    }
}

// Each column's part of the page's width, as its widest text among the
// title and the first rows.
QList<double> LogReport::columnShares() const
{
    const QFontMetrics metrics(m_font);
    const int measured = std::min(m_rows.rowCount(), RowsMeasured);
    QList<double> widths;
    double total = 0;
    for (int c = 0; c < m_rows.columnCount(); ++c) {
        int width = metrics.horizontalAdvance(m_rows.headerData(c, Qt::Horizontal).toString());
        for (int r = 0; r < measured; ++r)
            width
                = std::max(width, metrics.horizontalAdvance(m_rows.index(r, c).data().toString()));
        widths.append(width + metrics.averageCharWidth());
        total += widths.constLast();
    }
    for (double &width : widths)
        width /= total;
    return widths;
}

} // namespace quarry::viewer
