#pragma once

#include "rows/RowStream.h"

#include <QString>

#include <functional>

class QAbstractItemModel;

namespace quarry::viewer {

class LabelledRows;
class LogReport;
struct ExportHeading;

// Every row of source as CSV, under the titles of rows and labelled as rows
// shows them (rows' columns are source's): UTF-8 with a byte order mark.
// The rows are read as they are written, in one pass, on threads of their
// own while this thread serves its events (runBeside): progress(rowsWritten)
// is told on this thread every few hundredths of a second, and cancels with
// false. The file appears only once it is whole. Returns the fault in the
// operator's words, empty when written.
QString writeCsv(const QString &path, const LabelledRows &rows, const RowSource &source,
                 const std::function<bool(qint64)> &progress = {});

// The report as a PDF titled title, likewise, its rows read as its pages
// are written.
QString writePdf(const QString &path, const LogReport &report, const QString &title,
                 const std::function<bool(qint64)> &progress = {});

// The file its suffix asks for (.csv, .xlsx or .pdf, in any case), by the
// functions above and writeXlsx; progress is told a share of steps, which
// progressSteps() gives.
class FileExport
{
public:
    FileExport(const LabelledRows &rows, const RowSource &source, const ExportHeading &heading,
               const LogReport &report);

    // Whether path's suffix is one of the three.
    static bool knows(const QString &path);
    qint64 progressSteps(const QString &path) const;
    QString write(const QString &path, const std::function<bool(qint64)> &progress = {}) const;

private:
    const LabelledRows &m_rows;
    const RowSource &m_source;
    const ExportHeading &m_heading;
    const LogReport &m_report;
};

} // namespace quarry::viewer
