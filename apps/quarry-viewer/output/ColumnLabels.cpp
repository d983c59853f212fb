#include "ColumnLabels.h"

namespace quarry::viewer {

ColumnLabels::ColumnLabels(const LabelledRows &rows)
{
    QStringList names;
    for (int c = 0; c < rows.columnCount(); ++c) {
        names.append(rows.headerData(c, Qt::Horizontal, Qt::ToolTipRole).toString());
        m_titles.append(rows.headerData(c, Qt::Horizontal).toString());
    }
    m_names.setHorizontalHeaderLabels(names);
    m_rows.setSourceModel(&m_names);
    m_rows.setEntry(rows.entry());
    for (int c = 0; c < m_titles.size(); ++c) {
        if (m_rows.relabels(c))
            m_relabelled.append(c);
    }
}

QStringList ColumnLabels::titles(const QList<int> &columns) const
{
    QStringList titles;
    for (const int c : columns)
        titles.append(m_titles.value(c));
    return titles;
}

void ColumnLabels::label(QVariantList &row) const
{
    for (int c : m_relabelled)
        row[c] = m_rows.labelled(c, row.value(c));
}

QVariant ColumnLabels::labelled(int column, const QVariant &value) const
{
    return m_rows.labelled(column, value);
}

} // namespace quarry::viewer
