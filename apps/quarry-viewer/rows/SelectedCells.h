#pragma once

#include <QItemSelection>
#include <QList>
#include <QVariant>

namespace quarry::viewer {

// The cells of a table's selection, kept as the ranges of rows and columns
// it was made of, so that a selection of every row of a large log costs a
// range, not a number a row; plain numbers, which the thread that reads the
// rows may use. The cells go out in the rows and the columns that hold a
// selected cell, in the table's order; a cell among them not selected is
// empty.
class SelectedCells
{
public:
    SelectedCells() = default;
    explicit SelectedCells(const QItemSelection &selection);

    bool isEmpty() const { return m_spans.isEmpty(); }
    // The rows that hold a selected cell; ranges over the same rows count
    // them once.
    qint64 rowCount() const { return m_rowCount; }
    // The first and the last of them; -1 when nothing is selected.
    int firstRow() const { return m_firstRow; }
    int lastRow() const { return m_lastRow; }
    // The columns that hold a selected cell, in the table's order.
    const QList<int> &columns() const { return m_columns; }
    // The cells of the table's row `row`, whose values (a value a column of
    // the table) are values, as a row of columns() in cells; false when the
    // row holds no selected cell.
    bool take(int row, const QVariantList &values, QVariantList &cells) const;

private:
    struct Span
    {
        int top;
        int bottom;
        int left;
        int right;
    };

    QList<Span> m_spans;
    QList<int> m_columns;
    qint64 m_rowCount = 0;
    int m_firstRow = -1;
    int m_lastRow = -1;
};

} // namespace quarry::viewer
