#include "SelectedCells.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

QList<int> sortedOnce(QList<int> numbers)
{
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

QString field(const QVariant &value)
{
    QString text = value.toString();
    for (QChar &c : text) {
        if (c == u'\t' || c == u'\n' || c == u'\r')
            c = u' ';
    }
    return text;
}

} // namespace

SelectedCells::SelectedCells(const QAbstractItemModel &source, const QItemSelection &selection,
                             QObject *parent)
    : QAbstractTableModel(parent)
    , m_source(source)
    , m_selection(selection)
{
    for (const QItemSelectionRange &range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            m_rows.append(row);
        for (int column = range.left(); column <= range.right(); ++column)
            m_columns.append(column);
    }
    m_rows = sortedOnce(std::move(m_rows));
    m_columns = sortedOnce(std::move(m_columns));
}

int SelectedCells::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int SelectedCells::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant SelectedCells::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const QModelIndex cell = m_source.index(m_rows[index.row()], m_columns[index.column()]);
    return m_selection.contains(cell) ? cell.data(role) : QVariant();
}

QVariant SelectedCells::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && section >= 0 && section < m_columns.size())
        return m_source.headerData(m_columns[section], orientation, role);
    return QAbstractTableModel::headerData(section, orientation, role);
}

qint64 selectedRows(const QItemSelection &selection)
{
    QList<std::pair<int, int>> spans;
    for (const QItemSelectionRange &range : selection)
        spans.append({range.top(), range.bottom()});
    std::sort(spans.begin(), spans.end());
    qint64 rows = 0;
    int counted = -1; // the last row counted
    for (const auto &[top, bottom] : spans) {
        if (bottom > counted) {
            rows += bottom - qMax(top, counted + 1) + 1;
            counted = bottom;
        }
    }
    return rows;
}

QString tabSeparated(const QAbstractItemModel &cells, bool withTitles)
{
    QStringList lines;
    if (withTitles && cells.columnCount() > 0) {
        QStringList titles;
        for (int c = 0; c < cells.columnCount(); ++c)
            titles.append(field(cells.headerData(c, Qt::Horizontal)));
        lines.append(titles.join(u'\t'));
    }
    for (int r = 0; r < cells.rowCount(); ++r) {
        QStringList fields;
        for (int c = 0; c < cells.columnCount(); ++c)
            fields.append(field(cells.index(r, c).data()));
        lines.append(fields.join(u'\t'));
    }
    return lines.isEmpty() ? QString() : lines.join(u'\n') + u'\n';
}

} // namespace quarry::viewer
