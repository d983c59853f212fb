#pragma once

#include "ExportThread.h"

#include <QString>

namespace quarry::viewer {

class LabelledRows;
struct RowSource;

// The selected cells of source as tab-separated text, one line a row,
// labelled as rows shows them, so that a block pastes into a spreadsheet or
// a mail as a table; with titles, the columns' titles first. Tabs and line
// breaks inside a value become blanks. The rows are read on threads of
// their own while this thread serves its events (runBeside), progress told
// the rows read. Returns the fault in the operator's words (the text is
// then left alone), empty when read.
QString copyCells(const LabelledRows &rows, const RowSource &source, bool withTitles, QString &text,
                  const Progress &progress = {});

} // namespace quarry::viewer
