#pragma once

#include "XlsxExport.h"

#include <QFont>
#include <QList>

#include <functional>

class QAbstractItemModel;
class QPagedPaintDevice;
class QPainter;
class QWidget;

namespace quarry::viewer {

struct ColumnGroup;
struct ColumnNeed;

// The station's print settings: seal.ini [BANKPARAM] PRINTLINES (the most
// rows on a page) and PRINTFONT (points).
struct PrintSettings
{
    int rowsPerPage = 60;
    int pointSize = 10;
};

// A log's rows as a printed report. Every page has the log's title, the
// station, the date printed and the page number, and the table's titles;
// the first has the condition in words; the statement that ran follows the
// rows once, in smaller print. Every value is printed whole: the columns
// are as wide as their text, the page is turned when they need it, a long
// value wraps in its cell, and a table too wide for a turned page
// continues on further pages, each with the rows' identifying columns, so
// that a page's rows stand side by side on consecutive pages. A page holds
// at most the station's number of rows. A picture (the statistics' chart)
// may follow on a page of its own.
class LogReport
{
public:
    LogReport(const QAbstractItemModel &rows, const ExportHeading &heading,
              const PrintSettings &settings);

    void setPicture(QWidget *picture) { m_picture = picture; }
    // Columns repeated on every page of a table too wide for one.
    void setIdentifyingColumns(const QList<int> &columns) { m_identifying = columns; }
    // What paint() tells progress as it goes, at its end.
    qint64 progressSteps() const;
    // Turns the device's pages as the columns need, then paints every page
    // on it (a printer, a PDF writer); on the way, progress (when given) is
    // told the steps done so far and stops the painting with false. False
    // when stopped.
    bool paint(QPagedPaintDevice &device, const std::function<bool(qint64)> &progress = {}) const;

private:
    struct Plan;
    struct Band;

    QList<ColumnNeed> columnNeeds(const QPaintDevice &device,
                                  const std::function<bool(qint64)> &progress) const;
    bool planTable(Plan &plan, const std::function<bool(qint64)> &progress) const;
    void planPages(Plan &plan) const;
    void paintPage(QPainter &painter, const Plan &plan, int number) const;
    double paintHead(QPainter &painter, const Plan &plan, int number) const;
    void paintCells(QPainter &painter, const Plan &plan, const ColumnGroup &group, int row,
                    double top) const;
    QString cellText(int row, int column) const;

    const QAbstractItemModel &m_rows;
    ExportHeading m_heading;
    PrintSettings m_settings;
    QFont m_font;
    QList<int> m_identifying;
    QWidget *m_picture = nullptr;
};

} // namespace quarry::viewer
