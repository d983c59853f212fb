#include "LogReport.h"

#include "catalogue/LabelledRows.h"
#include "output/ReportFont.h"
#include "output/TableLayout.h"

#include <QDate>
#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

// The rows whose text decides the columns' widths: a later value wider
// than its column wraps in it.
constexpr qsizetype SampleRows = 500;

// A value's line breaks as the layout takes them.
QString layoutText(QString text)
{
    return text.replace(u'\n', QChar::LineSeparator);
}

// Text broken into lines no wider than width: at a word or between
// ideographs, and anywhere in a piece wider than the width itself.
std::unique_ptr<QTextLayout> wrap(const QString &text, const QFont &font, QPaintDevice *device,
                                  double width)
{
    auto layout = std::make_unique<QTextLayout>(layoutText(text), font, device);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout->setTextOption(option);
    layout->beginLayout();
    double y = 0;
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, y));
        y += line.height();
    }
    layout->endLayout();
    return layout;
}

// The widest piece of text that no line may break.
double widestPiece(const QString &text, const QFontMetricsF &metrics)
{
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
    double widest = 0;
    qsizetype start = 0;
    while (breaks.toNextBoundary() >= 0) {
        const qsizetype end = breaks.position();
        widest
            = std::max(widest, metrics.horizontalAdvance(text.mid(start, end - start).trimmed()));
        start = end;
    }
    return widest;
}

} // namespace

// A strip of a page, painted below the one before.
struct LogReport::Band
{
    enum class Kind { Words, Titles, Row, SqlTitle, Sql, Space, ChartTitle, Scale, Bar };
    Kind kind;
    int index = 0; // the line of the words or the statement, the row, the bar
    double height = 0;
};

struct LogReport::Plan
{
    QPagedPaintDevice *device = nullptr;
    std::unique_ptr<QPainter> painter; // from the first page painted
    std::function<bool()> goOn;
    QList<int> printed;   // the model's columns the table's columns are
    QStringList titles;   // every column's
    QRectF page;          // in the painter's coordinates
    double available = 0; // the page's height below its head
    QFont font, bold, title, small;
    double line = 0;    // the body's line spacing
    double padding = 0; // beside a cell's text
    double leading = 0; // above and below it
    double headHeight = 0;
    std::unique_ptr<QTextLayout> station;
    QString printedOn;  // the date printed, before the page number
    bool apart = false; // the date and page on a line of their own
    TableLayout table;
    double titlesHeight = 0;
    std::unique_ptr<QTextLayout> words;
    std::unique_ptr<QTextLayout> sql;
    // The chart's bars run from barLeft to barRight, each rate after it.
    double barLeft = 0;
    double barRight = 0;

    // The page being laid out: its group of columns, its bands so far, how
    // far down they reach; the rows its table's bands show; its number.
    int group = 0;
    QList<Band> bands;
    double y = 0;
    QList<QStringList> rows;
    int number = 0;
};

LogReport::LogReport(const LabelledRows &rows, const RowSource &source,
                     const ExportHeading &heading, const PrintSettings &settings)
    : m_rows(rows)
    , m_source(source)
    , m_heading(heading)
    , m_settings{std::max(settings.rowsPerPage, 1), std::clamp(settings.pointSize, 4, 72)}
    , m_font(searchableFont(m_settings.pointSize))
{
}

qint64 LogReport::progressSteps() const
{
    return m_rows.rowCount();
}

bool LogReport::paint(QPagedPaintDevice &device, const std::function<bool(qint64)> &progress,
                      QString *failure) const
{
    RowStream stream(m_source);
    qint64 read = 0;
    bool stopped = false;
    const auto goOn = [&] { return stopped = stopped || (progress && !progress(read)), !stopped; };
    const int columns = m_rows.columnCount();
    const auto next = [&] {
        QList<QStringList> texts;
        for (const QVariantList &row : stream.next(goOn)) {
            QStringList text;
            text.reserve(columns);
            for (int c = 0; c < columns; ++c)
                text.append(m_rows.labelled(c, row.value(c)).toString());
            texts.append(text);
        }
        read += texts.size();
        return texts;
    };
    const bool painted = paintRows(device, next, goOn);
    if (failure)
        *failure = stream.failure();
    return painted && !stopped && stream.failure().isEmpty();
}

QList<ColumnNeed> LogReport::columnNeeds(const Plan &plan, const QList<QStringList> &sample) const
{
    const QFontMetricsF metrics(plan.font, plan.device);
    const QFontMetricsF titleMetrics(plan.bold, plan.device);
    QList<ColumnNeed> needs;
    for (int c : plan.printed) {
        // A title is not broken, the column at least as wide as it.
        const double width = titleMetrics.horizontalAdvance(plan.titles.value(c));
        needs.append({width, width, m_identifying.contains(c)});
    }
    for (const QStringList &row : sample) {
        for (qsizetype c = 0; c < plan.printed.size(); ++c) {
            const QString text = row.value(plan.printed[c]);
            ColumnNeed &need = needs[c];
            const double natural = metrics.horizontalAdvance(text);
            if (natural > need.minimum) // else none of its pieces is wider
                need.minimum = std::max(need.minimum, widestPiece(text, metrics));
            need.natural = std::max(need.natural, natural);
        }
    }
    for (ColumnNeed &need : needs) {
        need.natural += plan.padding;
        need.minimum += plan.padding;
    }
    return needs;
}

// The height of a row of plan.rows (the titles for -1): the most lines any
// of its cells takes in any group.
double LogReport::rowHeight(const Plan &plan, int row, const QFont &font) const
{
    const QFontMetricsF metrics(font, plan.device);
    int most = 1;
    for (const ColumnGroup &group : std::as_const(plan.table.groups)) {
        for (qsizetype i = 0; i < group.columns.size(); ++i) {
            const int column = plan.printed[group.columns[i]];
            const QString &text = row < 0 ? plan.titles.at(column) : plan.rows.at(row).at(column);
            const double width = group.widths[i] - plan.padding;
            if (metrics.horizontalAdvance(text) > width || text.contains(u'\n'))
                most = std::max(most, wrap(text, font, plan.device, width)->lineCount());
        }
    }
    return most * plan.line + plan.leading;
}

// The fonts, the columns' widths from the titles and the sample of the
// first rows, the page's orientation and its head.
void LogReport::setUp(Plan &plan, QPagedPaintDevice &device, const QList<QStringList> &sample) const
{
    plan.device = &device;
    plan.font = m_font;
    plan.bold = m_font;
    plan.bold.setBold(true);
    plan.title = plan.bold;
    plan.title.setPointSize(m_settings.pointSize + 4);
    plan.small = m_font;
    plan.small.setPointSize(std::max(m_settings.pointSize - 2, 4));
    const QFontMetricsF metrics(m_font, &device);
    plan.line = metrics.lineSpacing();
    plan.padding = 2 * metrics.averageCharWidth();
    plan.leading = plan.line / 4;

    for (int c = 0; c < m_rows.columnCount(); ++c)
        plan.titles.append(m_rows.headerData(c, Qt::Horizontal).toString());
    plan.printed = m_columns;
    if (plan.printed.isEmpty()) {
        for (int c = 0; c < m_rows.columnCount(); ++c)
            plan.printed.append(c);
    }
    QPageLayout layout = device.pageLayout();
    const int dpi = device.logicalDpiX();
    layout.setOrientation(QPageLayout::Portrait);
    const double portrait = layout.paintRectPixels(dpi).width();
    layout.setOrientation(QPageLayout::Landscape);
    plan.table
        = layoutTable(columnNeeds(plan, sample), portrait, layout.paintRectPixels(dpi).width());
    device.setPageOrientation(plan.table.landscape ? QPageLayout::Landscape
                                                   : QPageLayout::Portrait);
    plan.page = QRectF(QPointF(0, 0), device.pageLayout().paintRectPixels(dpi).size());
    // The station, and after it (or, when they do not fit beside it, under
    // it) the date and the page number.
    plan.printedOn = u"打印日期：%1    "_s.arg(QDate::currentDate().toString(u"yyyy-MM-dd"_s));
    const double pageWidth = metrics.horizontalAdvance(plan.printedOn + u"第 9999999 页"_s);
    const QString station = u"站点：%1"_s.arg(m_heading.station);
    plan.apart = metrics.horizontalAdvance(station) + plan.padding + pageWidth > plan.page.width();
    plan.station = wrap(station, m_font, &device,
                        plan.apart ? plan.page.width() : plan.page.width() - pageWidth);
    plan.headHeight = QFontMetricsF(plan.title, &device).lineSpacing()
        + plan.station->boundingRect().height() + (plan.apart ? plan.line : 0) + 0.5 * plan.line;
    plan.available = plan.page.height() - plan.headHeight;
    plan.titlesHeight = rowHeight(plan, -1, plan.bold);
    const QString words
        = m_heading.conditionWords.isEmpty() ? u"全部记录"_s : m_heading.conditionWords;
    plan.words = wrap(u"条件：%1"_s.arg(words), m_font, &device, plan.page.width());
    const QString sql = m_heading.sql.isEmpty() ? m_heading.condition : m_heading.sql;
    plan.sql = wrap(sql.trimmed(), plan.small, &device, plan.page.width());
    double labels = 0;
    for (const auto &rate : m_rates)
        labels = std::max(labels, metrics.horizontalAdvance(rate.first));
    plan.barLeft = labels + plan.padding;
    plan.barRight = plan.page.width() - metrics.horizontalAdvance(u"100.00%"_s) - plan.padding;
}

// The bands on the pages: the condition's lines, then the table in slices
// of rows (a slice on one page for each group of columns, the rows at the
// same height on each), the statement, and the chart from a page of its
// own. Each page is painted once laid out.
bool LogReport::paintRows(QPagedPaintDevice &device, const NextRows &next,
                          const std::function<bool()> &goOn) const
{
    // The first rows decide the columns' widths.
    QList<QStringList> ahead;
    while (ahead.size() < SampleRows) {
        const QList<QStringList> rows = next();
        if (rows.isEmpty())
            break;
        ahead.append(rows);
    }
    if (!goOn())
        return false;
    Plan plan;
    plan.goOn = goOn;
    setUp(plan, device, ahead);
    for (int i = 0; i < plan.words->lineCount(); ++i) {
        if (!place(plan, {Band::Kind::Words, i, plan.words->lineAt(i).height()}))
            return false;
    }
    if (!place(plan, {Band::Kind::Space, 0, plan.line / 2}) || !placeTable(plan, next, ahead)
        || !place(plan, {Band::Kind::Space, 0, plan.line})
        || !place(plan, {Band::Kind::SqlTitle, 0, plan.line}))
        return false;
    for (int i = 0; i < plan.sql->lineCount(); ++i) {
        if (!place(plan, {Band::Kind::Sql, i, plan.sql->lineAt(i).height()}))
            return false;
    }
    if (!m_rates.isEmpty() && !placeChart(plan))
        return false;
    paintPage(plan);
    return goOn();
}

bool LogReport::placeTable(Plan &plan, const NextRows &next, QList<QStringList> &ahead) const
{
    const auto more = [&] {
        if (ahead.isEmpty())
            ahead = next();
        return !ahead.isEmpty();
    };
    bool first = true;
    do {
        if (!first && !turnPage(plan))
            return false;
        first = false;
        // The page's rows go with it.
        plan.rows.clear();
        if (more())
            plan.rows.append(ahead.takeFirst());
        const double firstHeight = plan.rows.isEmpty() ? 0 : rowHeight(plan, 0, plan.font);
        if (plan.y + plan.titlesHeight + firstHeight > plan.available && !plan.bands.isEmpty()
            && !turnPage(plan))
            return false;
        const double sliceTop = plan.y;
        QList<Band> slice{{Band::Kind::Titles, 0, plan.titlesHeight}};
        plan.y += plan.titlesHeight;
        if (!plan.rows.isEmpty()) {
            slice.append({Band::Kind::Row, 0, firstHeight});
            plan.y += firstHeight;
        }
        while (plan.rows.size() < m_settings.rowsPerPage && more()) {
            plan.rows.append(ahead.first());
            const int row = int(plan.rows.size() - 1);
            const double height = rowHeight(plan, row, plan.font);
            if (plan.y + height > plan.available) {
                plan.rows.removeLast();
                break;
            }
            ahead.removeFirst();
            slice.append({Band::Kind::Row, row, height});
            plan.y += height;
        }
        plan.bands.append(slice);
        slice.prepend({Band::Kind::Space, 0, sliceTop});
        for (int group = 1; group < plan.table.groups.size(); ++group) {
            if (!turnPage(plan))
                return false;
            plan.group = group;
            plan.bands = slice;
            for (const Band &band : std::as_const(slice))
                plan.y += band.height;
        }
    } while (more());
    return true;
}

// The chart from a page of its own, its scale over the bars on each.
bool LogReport::placeChart(Plan &plan) const
{
    const double scale = 1.5 * plan.line;
    if (!turnPage(plan) || !place(plan, {Band::Kind::ChartTitle, 0, 2 * plan.line})
        || !place(plan, {Band::Kind::Scale, 0, scale}))
        return false;
    for (int i = 0; i < m_rates.size(); ++i) {
        if (plan.y + 1.5 * plan.line > plan.available
            && (!turnPage(plan) || !place(plan, {Band::Kind::Scale, 0, scale})))
            return false;
        if (!place(plan, {Band::Kind::Bar, i, 1.5 * plan.line}))
            return false;
    }
    return true;
}

// band below the page's last, on the next page when it does not fit.
bool LogReport::place(Plan &plan, const Band &band) const
{
    if (plan.y + band.height > plan.available && !plan.bands.isEmpty() && !turnPage(plan))
        return false;
    plan.bands.append(band);
    plan.y += band.height;
    return true;
}

// Paints the page laid out and starts the next; false when stopped.
bool LogReport::turnPage(Plan &plan) const
{
    paintPage(plan);
    plan.bands.clear();
    plan.y = 0;
    plan.group = 0;
    return plan.goOn();
}

void LogReport::paintPage(Plan &plan) const
{
    if (plan.painter)
        plan.device->newPage();
    else
        plan.painter = std::make_unique<QPainter>(plan.device);
    QPainter &painter = *plan.painter;
    const ColumnGroup &group = plan.table.groups.at(plan.group);
    double top = paintHead(painter, plan);
    ++plan.number;
    const double width = plan.page.width();
    for (const Band &band : std::as_const(plan.bands)) {
        switch (band.kind) {
        case Band::Kind::Words:
            painter.setFont(plan.font);
            plan.words->lineAt(band.index)
                .draw(&painter, QPointF(0, top - plan.words->lineAt(band.index).y()));
            break;
        case Band::Kind::Titles:
            painter.setFont(plan.bold);
            paintCells(painter, plan, group, -1, top);
            painter.drawLine(QLineF(0, top + band.height, width, top + band.height));
            break;
        case Band::Kind::Row:
            painter.setFont(plan.font);
            paintCells(painter, plan, group, band.index, top);
            painter.save();
            painter.setPen(QPen(Qt::lightGray, 0));
            painter.drawLine(QLineF(0, top + band.height, width, top + band.height));
            painter.restore();
            break;
        case Band::Kind::SqlTitle:
            painter.setFont(plan.bold);
            painter.drawText(QRectF(0, top, width, band.height), Qt::AlignLeft | Qt::AlignVCenter,
                             u"执行的 SQL："_s);
            break;
        case Band::Kind::Sql:
            painter.setFont(plan.small);
            plan.sql->lineAt(band.index)
                .draw(&painter, QPointF(0, top - plan.sql->lineAt(band.index).y()));
            break;
        case Band::Kind::Space:
            break;
        case Band::Kind::ChartTitle:
            painter.setFont(plan.bold);
            painter.drawText(QRectF(0, top, width, band.height), Qt::AlignCenter,
                             u"各操作员验印通过率"_s);
            break;
        case Band::Kind::Scale:
            painter.setFont(plan.small);
            paintScale(painter, plan, top, band.height);
            break;
        case Band::Kind::Bar:
            painter.setFont(plan.font);
            paintBar(painter, plan, band.index, top, band.height);
            break;
        }
        top += band.height;
    }
}

double LogReport::paintHead(QPainter &painter, const Plan &plan) const
{
    const double width = plan.page.width();
    painter.setFont(plan.title);
    const double titleHeight = QFontMetricsF(plan.title, plan.device).lineSpacing();
    painter.drawText(QRectF(0, 0, width, titleHeight), Qt::AlignLeft | Qt::AlignVCenter,
                     m_heading.log);
    painter.setFont(plan.font);
    plan.station->draw(&painter, QPointF(0, titleHeight));
    const double stationHeight = plan.station->boundingRect().height();
    const double pageTop = plan.apart ? titleHeight + stationHeight : titleHeight;
    painter.drawText(QRectF(0, pageTop, width, plan.line), Qt::AlignRight,
                     plan.printedOn + u"第 %1 页"_s.arg(plan.number + 1));
    const double bottom = plan.headHeight - plan.line / 4;
    painter.drawLine(QLineF(0, bottom, width, bottom));
    return plan.headHeight;
}

// 0 % to 100 % along the bars' span, the labels over the line.
void LogReport::paintScale(QPainter &painter, const Plan &plan, double top, double height) const
{
    const double bottom = top + height - plan.leading;
    painter.drawLine(QLineF(plan.barLeft, bottom, plan.barRight, bottom));
    const double span = plan.barRight - plan.barLeft;
    for (int percent = 0; percent <= 100; percent += 20) {
        const double x = plan.barLeft + span * percent / 100;
        painter.drawLine(QLineF(x, bottom, x, bottom - plan.leading));
        painter.drawText(QRectF(x - span / 10, top, span / 5, height - 2 * plan.leading),
                         Qt::AlignHCenter | Qt::AlignBottom, u"%1%"_s.arg(percent));
    }
}

// An operator, his bar and his rate.
void LogReport::paintBar(QPainter &painter, const Plan &plan, int index, double top,
                         double height) const
{
    const auto &[name, rate] = m_rates.at(index);
    painter.drawText(QRectF(0, top, plan.barLeft, height), Qt::AlignLeft | Qt::AlignVCenter, name);
    const double length = (plan.barRight - plan.barLeft) * std::clamp(rate, 0.0, 100.0) / 100;
    painter.fillRect(QRectF(plan.barLeft, top + height / 6, length, height * 2 / 3),
                     QColor(0x4a, 0x7e, 0xbb));
    painter.drawText(QRectF(plan.barRight + plan.padding / 2, top, plan.page.width(), height),
                     Qt::AlignLeft | Qt::AlignVCenter, QString::number(rate, 'f', 2) + u'%');
}

// A row's cells (the titles for row -1), each wrapped in its width.
void LogReport::paintCells(QPainter &painter, const Plan &plan, const ColumnGroup &group, int row,
                           double top) const
{
    double x = 0;
    for (qsizetype i = 0; i < group.columns.size(); ++i) {
        const int column = plan.printed[group.columns[i]];
        const QString &text = row < 0 ? plan.titles.at(column) : plan.rows.at(row).at(column);
        const double width = group.widths[i] - plan.padding;
        const QPointF at(x + plan.padding / 2, top + plan.leading / 2);
        if (QFontMetricsF(painter.font(), plan.device).horizontalAdvance(text) <= width
            && !text.contains(u'\n')) {
            painter.drawText(QRectF(at, QSizeF(width, plan.line)), Qt::AlignLeft | Qt::AlignVCenter,
                             text);
        } else {
            const auto lines = wrap(text, painter.font(), plan.device, width);
            lines->draw(&painter, at);
        }
        x += group.widths[i];
    }
}

LogReport logReport(const LabelledRows &rows, const RowSource &source, const ExportHeading &heading,
                    const PrintSettings &settings)
{
    LogReport report(rows, source, heading, settings);
    report.setIdentifyingColumns(rows.identifyingColumns());
    report.setColumns(rows.shownColumns());
    if (rows.entry().result == LogEntry::Result::Select)
        report.setRates(passRates(*rows.sourceModel()).value_or(PassRates()));
    return report;
}

} // namespace quarry::viewer
