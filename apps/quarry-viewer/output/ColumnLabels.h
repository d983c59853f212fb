#pragma once

#include "catalogue/LabelledRows.h"

#include <QStandardItemModel>
#include <QStringList>
#include <QVariantList>

namespace quarry::viewer {

// The titles and labels of a log's columns as LabelledRows shows them,
// taken from it on its own thread, so that the rows of a file are labelled
// on another without a call to the window's models. Read-only once made:
// any thread may use it.
class ColumnLabels
{
public:
    explicit ColumnLabels(const LabelledRows &rows);

    const QStringList &titles() const { return m_titles; }
    // The titles of these columns, in this order.
    QStringList titles(const QList<int> &columns) const;
    // The values of row as the table shows them.
    void label(QVariantList &row) const;
    // value of column as the table shows it.
    QVariant labelled(int column, const QVariant &value) const;

private:
    // The statement's column names, over which m_rows labels.
    QStandardItemModel m_names;
    LabelledRows m_rows;
    QStringList m_titles;
    // The columns whose values labelling may change.
    QList<int> m_relabelled;
};

} // namespace quarry::viewer
