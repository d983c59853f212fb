#include "HeadlessExport.h"

#include "catalogue/ConditionWords.h"
#include "catalogue/LabelledRows.h"
#include "LogCatalogue.h"
#include "LogReport.h"
#include "rows/LogRowsModel.h"
#include "rows/LogSelect.h"
#include "rows/StationDatabase.h"
#include "output/FileExports.h"

#include "support/ErrorLog.h"

#include <quarry/QuarryError.h>

#include <QEventLoop>
#include <QTextStream>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

int fail(const QString &text)
{
    QTextStream(stderr) << u"quarry-viewer: "_s << text << u'\n';
    try {
        writeErrorLog(u"quarry-viewer"_s, QuarryError::DataError,
                      QString(text).replace(u'\n', u' '));
    } catch (const QuarryError &error) {
        QTextStream(stderr) << u"quarry-viewer: 未能写入错误日志："_s << error.description()
                            << u'\n';
    }
    return 1;
}

QString databaseText(const QSqlError &error)
{
    return error.databaseText().isEmpty() ? error.text() : error.databaseText();
}

// Waits for the rows to be counted (a first page that holds them all
// counts them); the fault when reading them failed.
QSqlError readRows(LogRowsModel &model)
{
    QEventLoop loop;
    QSqlError failed;
    const auto quitWhenDone = [&] {
        if (!model.isBusy())
            loop.quit();
    };
    QObject::connect(&model, &LogRowsModel::rowsShown, &loop, quitWhenDone);
    QObject::connect(&model, &LogRowsModel::counted, &loop, quitWhenDone);
    QObject::connect(&model, &LogRowsModel::failed, &loop, [&](const QSqlError &error) {
        failed = error;
        loop.quit();
    });
    if (model.isBusy())
        loop.exec();
    return failed;
}

} // namespace

int exportWithoutWindow(const LogCatalogue &catalogue, const QString &logType,
                        const QString &condition, const QString &path)
{
    const QList<LogEntry> &entries = catalogue.entries();
    const auto found = std::find_if(entries.cbegin(), entries.cend(), [&](const LogEntry &entry) {
        return entry.logType.compare(logType, Qt::CaseInsensitive) == 0;
    });
    if (found == entries.cend())
        return fail(u"日志目录中没有日志类型 %1"_s.arg(logType));
    LogEntry entry = *found;
    StationDatabase station;
    if (const QString fault = station.findStation(); !fault.isEmpty())
        return fail(fault);
    if (const QString fault = station.open(); !fault.isEmpty())
        return fail(fault);
    for (CodeListSource *list : {&entry.listA, &entry.listB}) {
        if (const QString fault = station.fill(*list); !fault.isEmpty())
            return fail(fault);
    }
    if (entry.result == LogEntry::Result::Select && station.isEmbedded())
        return fail(
            u"%1的语句是为 SQL Server 和 MySQL 站点写的，%2 上运行不了"_s.arg(entry.title,
                                                                              station.describe()));

    const QString select = logSelect(entry, condition);
    QTextStream(stderr) << u"正在%1上查询%2…\n"_s.arg(station.describe(), entry.title);
    LogRowsModel model;
    model.setQuery(station, select, entry.key, newestFirst(entry));
    if (const QSqlError failed = readRows(model); failed.isValid())
        return fail(u"在%1上查询失败：%2"_s.arg(station.describe(), databaseText(failed)));
    LabelledRows rows;
    rows.setSourceModel(&model);
    rows.setEntry(entry);

    const ExportHeading heading{entry.title, condition, station.describe(), select,
                                conditionWords(condition, entry, station.dialect())};
    const RowSource source{station.opener(), model.statement(), station.describe()};
    const LogReport report = logReport(rows, source, heading, station.printSettings());
    const FileExport file(rows, source, heading, report);
    const qint64 steps = std::max<qint64>(file.progressSteps(path), 1);
    int told = -10;
    const QString failed = file.write(path, [&](qint64 done) {
        const int percent = int(done * 100 / steps);
        if (percent / 10 != told / 10) {
            QTextStream(stderr) << u"正在写 %1：%2%\n"_s.arg(path).arg(percent);
            told = percent;
        }
        return true;
    });
    if (!failed.isEmpty())
        return fail(failed);
    QTextStream(stderr)
        << u"已把%1的 %2 行写到 %3\n"_s.arg(entry.title).arg(rows.rowCount()).arg(path);
    return 0;
}

} // namespace quarry::viewer
