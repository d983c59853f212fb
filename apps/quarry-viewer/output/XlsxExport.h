#pragma once

#include "rows/RowStream.h"

#include <QString>

#include <functional>

namespace quarry::viewer {

class LabelledRows;

// What an export says of its rows, so that a file handed on still tells
// where they came from.
struct ExportHeading
{
    QString log;
    QString condition;
    QString station;
    QString sql;
    // The condition as an auditor reads it (conditionWords).
    QString conditionWords = {};
};

// The most rows a sheet of Excel holds, its title row included.
constexpr qint64 ExcelSheetRows = 1048576;

// Writes every row of source to an Excel workbook at path (or its selected
// cells, in their rows and columns): a first sheet "说明" with the heading,
// then the rows under the titles of rows, labelled as rows shows them, on
// sheets of at most sheetRows rows each (the title row frozen on each).
// Text stays text, so account numbers, cheque numbers and codes keep their
// leading zeros and every digit; dates (and texts that are yyyy-mm-dd
// dates) are dates; numbers are numbers unless they have more digits than
// a spreadsheet keeps, and a column with a number format shows them by it.
// The rows are read as they are written, in one pass on threads of their
// own, in constant memory whatever their number, while this thread serves
// its events: progress(rowsWritten) is told on this thread every few
// hundredths of a second (runBeside) and cancels with false. The file
// appears only once it is whole: a failed or cancelled export leaves
// whatever was at path before. Returns the fault in the operator's words,
// empty when written.
QString writeXlsx(const QString &path, const LabelledRows &rows, const RowSource &source,
                  const ExportHeading &heading, const std::function<bool(qint64)> &progress = {},
                  qint64 sheetRows = ExcelSheetRows);

} // namespace quarry::viewer
