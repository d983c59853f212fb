#pragma once

#include <QModelIndexList>
#include <QString>

class QAbstractItemModel;

namespace quarry::viewer {

// Selected cells as tab-separated text, one line a row, so that a block
// pastes into a spreadsheet or a mail as a table: the rows and columns that
// hold a selected cell, in the model's order, a cell not selected left
// empty; with titles, the columns' titles first. Tabs and line breaks
// inside a value become blanks.
QString tabSeparated(const QAbstractItemModel &model, const QModelIndexList &cells,
                     bool withTitles);

} // namespace quarry::viewer
