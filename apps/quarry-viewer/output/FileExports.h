#pragma once

#include <QString>

#include <functional>

class QAbstractItemModel;

namespace quarry::viewer {

class LogReport;
struct ExportHeading;

// The rows as CSV, as the model titles them: UTF-8 with a byte order mark.
// progress(rowsWritten) is told every thousand rows and cancels with false.
// The file appears only once it is whole. Returns the fault in the
// operator's words, empty when written.
QString writeCsv(const QString &path, const QAbstractItemModel &rows,
                 const std::function<bool(qint64)> &progress = {});

// The report as a PDF titled title, likewise; progress is told the
// report's steps (LogReport::progressSteps).
QString writePdf(const QString &path, const LogReport &report, const QString &title,
                 const std::function<bool(qint64)> &progress = {});

// The file its suffix asks for (.csv, .xlsx or .pdf, in any case), by the
// functions above and writeXlsx; progress is told a share of steps, which
// progressSteps() gives.
class FileExport
{
public:
    FileExport(const QAbstractItemModel &rows, const ExportHeading &heading,
               const LogReport &report);

    // Whether path's suffix is one of the three.
    static bool knows(const QString &path);
    qint64 progressSteps(const QString &path) const;
    QString write(const QString &path, const std::function<bool(qint64)> &progress = {}) const;

private:
    const QAbstractItemModel &m_rows;
    const ExportHeading &m_heading;
    const LogReport &m_report;
};

} // namespace quarry::viewer
