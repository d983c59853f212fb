#pragma once

#include <QAbstractTableModel>
#include <QItemSelection>
#include <QList>
#include <QPersistentModelIndex>

namespace quarry::viewer {

// The selected cells of a table as a table of their own, for the clipboard
// and the exports: the rows and columns that hold a selected cell, in the
// source's order, with the source's titles; a cell not selected is empty.
// Built from the selection's ranges, so that a selection of every row of a
// large log costs a number a row, not an index a cell.
class SelectedCells : public QAbstractTableModel
{
    Q_OBJECT

public:
    SelectedCells(const QAbstractItemModel &source, const QItemSelection &selection,
                  QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    const QAbstractItemModel &m_source;
    const QItemSelection m_selection;
    QList<int> m_rows;
    QList<int> m_columns;
};

// The rows that hold a selected cell, counted from the selection's ranges,
// which may overlap, without a list of the rows.
qint64 selectedRows(const QItemSelection &selection);

// The cells as tab-separated text, one line a row, so that a block pastes
// into a spreadsheet or a mail as a table; with titles, the columns' titles
// first. Tabs and line breaks inside a value become blanks.
QString tabSeparated(const QAbstractItemModel &cells, bool withTitles);

} // namespace quarry::viewer
