#pragma once

#include "XlsxExport.h"
#include "output/PassRates.h"
#include "rows/PrintSettings.h"
#include "rows/RowStream.h"

#include <QFont>
#include <QList>

#include <functional>

class QPagedPaintDevice;
class QPainter;

namespace quarry::viewer {

class LabelledRows;
struct ColumnGroup;
struct ColumnNeed;

// A log's rows as a printed report. Every page has the log's title, the
// station, the date printed and the page number, and the table's titles;
// the first has the condition in words; the statement that ran follows the
// rows once, in smaller print. Every value is printed whole: the columns
// are as wide as the text of the first rows, the page is turned when they
// need it, a longer value wraps in its cell, and a table too wide for a
// turned page continues on further pages, each with the rows' identifying
// columns, so that a page's rows stand side by side on consecutive pages.
// A page holds at most the station's number of rows. The statistics' pass
// rates may follow as a bar chart, every operator's bar, on as many pages
// as they need, each under the chart's scale.
//
// The rows are those of source, under the titles of rows and labelled as
// rows shows them; they are read in one pass as the pages are painted, and
// only a page's rows are held at a time.
class LogReport
{
public:
    LogReport(const LabelledRows &rows, const RowSource &source, const ExportHeading &heading,
              const PrintSettings &settings);

    void setRates(const PassRates &rates) { m_rates = rates; }
    // The columns printed, in their order; every column when none given.
    void setColumns(const QList<int> &columns) { m_columns = columns; }
    // Columns repeated on every page of a table too wide for one.
    void setIdentifyingColumns(const QList<int> &columns) { m_identifying = columns; }
    // What paint() tells progress as it goes, at its end: the rows.
    qint64 progressSteps() const;
    // Turns the device's pages as the columns need, then paints every page
    // on it (a printer, a PDF writer) as the rows come; on the way,
    // progress (when given) is told the rows read so far, every page and
    // every tenth of a second while the database works, and stops the
    // painting with false. False when stopped or when the rows could not be
    // read; failure (when given) is then the fault in the operator's words,
    // empty for a stop.
    bool paint(QPagedPaintDevice &device, const std::function<bool(qint64)> &progress = {},
               QString *failure = nullptr) const;

private:
    struct Plan;
    struct Band;
    // The next rows' text, every column; empty after the last.
    using NextRows = std::function<QList<QStringList>()>;

    bool paintRows(QPagedPaintDevice &device, const NextRows &next,
                   const std::function<bool()> &goOn) const;
    void setUp(Plan &plan, QPagedPaintDevice &device, const QList<QStringList> &sample) const;
    QList<ColumnNeed> columnNeeds(const Plan &plan, const QList<QStringList> &sample) const;
    double rowHeight(const Plan &plan, int row, const QFont &font) const;
    bool placeTable(Plan &plan, const NextRows &next, QList<QStringList> &ahead) const;
    bool placeChart(Plan &plan) const;
    bool place(Plan &plan, const Band &band) const;
    bool turnPage(Plan &plan) const;
    void paintPage(Plan &plan) const;
    double paintHead(QPainter &painter, const Plan &plan) const;
    void paintCells(QPainter &painter, const Plan &plan, const ColumnGroup &group, int row,
                    double top) const;
    void paintScale(QPainter &painter, const Plan &plan, double top, double height) const;
    void paintBar(QPainter &painter, const Plan &plan, int index, double top, double height) const;

    const LabelledRows &m_rows;
    RowSource m_source;
    ExportHeading m_heading;
    PrintSettings m_settings;
    QFont m_font;
    QList<int> m_identifying;
    QList<int> m_columns;
    PassRates m_rates;
};

// The report of a log's rows: the columns its view shows, the key and the
// account repeated on continued pages, the statistics' pass rates charted.
LogReport logReport(const LabelledRows &rows, const RowSource &source, const ExportHeading &heading,
                    const PrintSettings &settings);

} // namespace quarry::viewer
