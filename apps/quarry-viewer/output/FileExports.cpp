#include "FileExports.h"

#include "ColumnLabels.h"
#include "CsvWriter.h"
#include "ExportThread.h"
#include "catalogue/LabelledRows.h"
#include "LogReport.h"
#include "XlsxExport.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFileInfo>
#include <QPdfWriter>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

constexpr int CsvProgressEvery = 1000;

QString cannotWrite(const QFileDevice &file)
{
    return u"无法写入 %1：%2"_s.arg(QDir::toNativeSeparators(file.fileName()), file.errorString());
}

QString cancelled(const QString &path)
{
    return u"已取消导出，未写入 %1。"_s.arg(QDir::toNativeSeparators(path));
}

// On the export's thread.
QString writeCsvRows(const QString &path, const ColumnLabels &labels, const RowSource &source,
                     const Progress &progress)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return cannotWrite(file);
    CsvWriter csv(file);
    csv.writeRow(labels.titles());
    qint64 written = 0;
    bool stopped = false;
    const auto goOn = [&] { return stopped = !progress(written), !stopped; };
    RowStream stream(source);
    for (QList<QVariantList> *batch = &stream.next(goOn); !batch->isEmpty() && !stopped;
         batch = &stream.next(goOn)) {
        for (QVariantList &row : *batch) {
            // A stop leaves no half file behind.
            if (written % CsvProgressEvery == 0 && !goOn())
                break;
            labels.label(row);
            csv.writeRow(row);
            ++written;
        }
    }
    if (stopped) {
        file.cancelWriting();
        return cancelled(path);
    }
    if (const QString failure = stream.failure(); !failure.isEmpty()) {
        file.cancelWriting();
        return failure;
    }
    if (!csv.ok() || !file.commit())
        return cannotWrite(file);
    return {};
}

} // namespace

QString writeCsv(const QString &path, const LabelledRows &rows, const RowSource &source,
                 const std::function<bool(qint64)> &progress)
{
    const ColumnLabels labels(rows);
    return runBeside([&](const Progress &told) { return writeCsvRows(path, labels, source, told); },
                     progress);
}

QString writePdf(const QString &path, const LogReport &report, const QString &title,
                 const std::function<bool(qint64)> &progress)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return cannotWrite(file);
    bool whole = false;
    QString failure;
    {
        // The writer ends the document when it goes.
        QPdfWriter pdf(&file);
        pdf.setTitle(title);
        whole = report.paint(pdf, progress, &failure);
    }
    // A stop leaves whatever was at path before.
    if (!whole) {
        file.cancelWriting();
        return failure.isEmpty() ? cancelled(path) : failure;
    }
    if (!file.commit())
        return cannotWrite(file);
    return {};
}

FileExport::FileExport(const LabelledRows &rows, const RowSource &source,
                       const ExportHeading &heading, const LogReport &report)
    : m_rows(rows)
    , m_source(source)
    , m_heading(heading)
    , m_report(report)
{
}

bool FileExport::knows(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == u"csv"_s || suffix == u"xlsx"_s || suffix == u"pdf"_s;
}

qint64 FileExport::progressSteps(const QString &path) const
{
    return QFileInfo(path).suffix().toLower() == u"pdf"_s ? m_report.progressSteps()
                                                          : m_rows.rowCount();
}

QString FileExport::write(const QString &path, const std::function<bool(qint64)> &progress) const
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == u"csv"_s)
        return writeCsv(path, m_rows, m_source, progress);
    if (suffix == u"xlsx"_s)
        return writeXlsx(path, m_rows, m_source, m_heading, progress);
    return writePdf(path, m_report, m_heading.log, progress);
}

} // namespace quarry::viewer
