#include "RowWindow.h"

#include <QItemSelection>

namespace quarry::viewer {

RowWindow::RowWindow(QAbstractItemModel &source, QObject *parent)
    : QAbstractProxyModel(parent)
{
    QAbstractProxyModel::setSourceModel(&source);
    connect(&source, &QAbstractItemModel::modelAboutToBeReset, this, &RowWindow::beginResetModel);
    connect(&source, &QAbstractItemModel::modelReset, this, [this] {
        m_first = 0;
        m_rows = qMin(m_fitting + 1, sourceRows());
        endResetModel();
        Q_EMIT sourceRowsChanged();
    });
    connect(&source, &QAbstractItemModel::rowsInserted, this, &RowWindow::followSourceRows);
    connect(&source, &QAbstractItemModel::rowsRemoved, this, &RowWindow::followSourceRows);
    connect(&source, &QAbstractItemModel::layoutChanged, this, &RowWindow::followSourceRows);
    connect(&source, &QAbstractItemModel::dataChanged, this, &RowWindow::sourceChanged);
    connect(&source, &QAbstractItemModel::headerDataChanged, this,
            [this](Qt::Orientation orientation, int first, int last) {
                if (orientation == Qt::Horizontal)
                    Q_EMIT headerDataChanged(orientation, first, last);
            });
}

void RowWindow::setFitting(int rows)
{
    rows = qMax(rows, 1);
    if (rows == m_fitting)
        return;
    m_fitting = rows;
    const int first = qMin(m_first, lastFirst());
    const bool moving = first != m_first;
    m_first = first;
    fit();
    if (moving) {
        tellAllChanged();
        Q_EMIT moved();
    }
}

int RowWindow::lastFirst() const
{
    return qMax(0, sourceRows() - m_fitting);
}

void RowWindow::moveTo(int first)
{
    first = qBound(0, first, lastFirst());
    if (first == m_first)
        return;
    m_first = first;
    fit();
    tellAllChanged();
    Q_EMIT moved();
}

QModelIndex RowWindow::index(int row, int column, const QModelIndex &parent) const
{
    if (parent.isValid() || row < 0 || row >= m_rows || column < 0 || column >= columnCount())
        return {};
    return createIndex(row, column);
}

QModelIndex RowWindow::parent(const QModelIndex &) const
{
    return {};
}

int RowWindow::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int RowWindow::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : sourceModel()->columnCount();
}

QModelIndex RowWindow::mapToSource(const QModelIndex &proxyIndex) const
{
    if (!proxyIndex.isValid())
        return {};
    return sourceModel()->index(m_first + proxyIndex.row(), proxyIndex.column());
}

QModelIndex RowWindow::mapFromSource(const QModelIndex &sourceIndex) const
{
    if (!sourceIndex.isValid())
        return {};
    return index(sourceIndex.row() - m_first, sourceIndex.column());
}

QItemSelection RowWindow::mapSelectionToSource(const QItemSelection &selection) const
{
    QItemSelection mapped;
    for (const QItemSelectionRange &range : selection) {
        mapped.append(
            QItemSelectionRange(mapToSource(range.topLeft()), mapToSource(range.bottomRight())));
    }
    return mapped;
}

QItemSelection RowWindow::mapSelectionFromSource(const QItemSelection &selection) const
{
    QItemSelection mapped;
    for (const QItemSelectionRange &range : selection) {
        const int top = qMax(range.top(), m_first) - m_first;
        const int bottom = qMin(range.bottom(), m_first + m_rows - 1) - m_first;
        if (top <= bottom)
            mapped.append(
                QItemSelectionRange(index(top, range.left()), index(bottom, range.right())));
    }
    return mapped;
}

QVariant RowWindow::headerData(int section, Qt::Orientation orientation, int role) const
{
    return sourceModel()->headerData(orientation == Qt::Vertical ? m_first + section : section,
                                     orientation, role);
}

bool RowWindow::canFetchMore(const QModelIndex &parent) const
{
    return !parent.isValid() && m_first + m_rows >= sourceRows() && sourceModel()->canFetchMore({});
}

void RowWindow::fetchMore(const QModelIndex &parent)
{
    if (canFetchMore(parent))
        sourceModel()->fetchMore({});
}

int RowWindow::sourceRows() const
{
    return sourceModel()->rowCount();
}

void RowWindow::fit()
{
    const int rows = qMax(0, qMin(m_fitting + 1, sourceRows() - m_first));
    if (rows > m_rows) {
        beginInsertRows({}, m_rows, rows - 1);
        m_rows = rows;
        endInsertRows();
    } else if (rows < m_rows) {
        beginRemoveRows({}, rows, m_rows - 1);
        m_rows = rows;
        endRemoveRows();
    }
}

void RowWindow::sourceChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                              const QList<int> &roles)
{
    const int top = qMax(topLeft.row(), m_first) - m_first;
    const int bottom = qMin(bottomRight.row(), m_first + m_rows - 1) - m_first;
    if (top <= bottom)
        Q_EMIT dataChanged(index(top, topLeft.column()), index(bottom, bottomRight.column()),
                           roles);
}

// The rows in the window may be others now: the source's count went up as
// it was counted, or down, or the source's rows went elsewhere.
void RowWindow::followSourceRows()
{
    m_first = qMin(m_first, lastFirst());
    fit();
    tellAllChanged();
    Q_EMIT sourceRowsChanged();
}

void RowWindow::tellAllChanged()
{
    if (m_rows == 0)
        return;
    Q_EMIT dataChanged(index(0, 0), index(m_rows - 1, columnCount() - 1));
    Q_EMIT headerDataChanged(Qt::Vertical, 0, m_rows - 1);
}

} // namespace quarry::viewer
