#pragma once

#include "XlsxExport.h"

#include <QFont>
#include <QList>

#include <functional>

class QAbstractItemModel;
class QPagedPaintDevice;
class QPainter;
class QRect;
class QWidget;

namespace quarry::viewer {

// The station's print settings: seal.ini [BANKPARAM] PRINTLINES (rows on a
// page) and PRINTFONT (points).
struct PrintSettings
{
    int rowsPerPage = 60;
    int pointSize = 10;
};

// A log's rows as a printed report: on every page the log's title, the
// station, the date printed and the page number; on the first the
// condition in words and in SQL; then the rows under the model's column
// titles, the station's number of rows to a page. A picture (the
// statistics' chart) may follow the rows on a page of its own.
class LogReport
{
public:
    LogReport(const QAbstractItemModel &rows, const ExportHeading &heading,
              const PrintSettings &settings);

    void setPicture(QWidget *picture) { m_picture = picture; }
    int pageCount() const;
    // Paints every page on device (a printer, a PDF writer); before each,
    // progress (when given) is told the rows painted so far and stops the
    // painting with false. False when stopped.
    bool paint(QPagedPaintDevice &device, const std::function<bool(qint64)> &progress = {}) const;

private:
    int rowPages() const;
    // The page's head; returns the top of what follows it.
    int paintHead(QPainter &painter, const QRect &page, int number) const;
    // "条件：" with the condition in words and, under them, its SQL (once
    // when the words are the SQL); returns the top of what follows.
    int paintCondition(QPainter &painter, const QRect &page, int top) const;
    void paintRows(QPainter &painter, const QRect &area, int firstRow) const;
    QList<double> columnShares() const;

    const QAbstractItemModel &m_rows;
    ExportHeading m_heading;
    PrintSettings m_settings;
    QFont m_font;
    QWidget *m_picture = nullptr;
};

} // namespace quarry::viewer
