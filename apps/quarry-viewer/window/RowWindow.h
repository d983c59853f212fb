#pragma once

#include <QAbstractProxyModel>

namespace quarry::viewer {

// The rows of a long log that a table shows at a time: rows [first(),
// first() + rowCount()) of the source, as many as fit the table and one more
// for the row cut off at its foot. The table's header then keeps a section
// for each of these rather than for each row of the log, and moving the
// window repaints it without a reset. The vertical header numbers the rows
// as the log does.
class RowWindow : public QAbstractProxyModel
{
    Q_OBJECT

public:
    explicit RowWindow(QAbstractItemModel &source, QObject *parent = nullptr);

    // The source's rows that fit the table whole.
    int fitting() const { return m_fitting; }
    void setFitting(int rows);
    // The source's row on top.
    int first() const { return m_first; }
    // The rows of the source, the whole log.
    int sourceRows() const;
    // The top row that shows the source's last rows.
    int lastFirst() const;
    // Shows the source's rows from first on, held between 0 and
    // lastFirst().
    void moveTo(int first);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QModelIndex mapToSource(const QModelIndex &proxyIndex) const override;
    QModelIndex mapFromSource(const QModelIndex &sourceIndex) const override;
    // Range by range, each cut to the window, so that a selection of a
    // million rows maps as one range.
    QItemSelection mapSelectionToSource(const QItemSelection &selection) const override;
    QItemSelection mapSelectionFromSource(const QItemSelection &selection) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    // Only at the end of the source's rows: a view fetches more while its
    // last row is on view, which the window's always is.
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;

Q_SIGNALS:
    // The window went to other rows of the source.
    void moved();
    // The source has another number of rows.
    void sourceRowsChanged();

private:
    // Inserts or removes the window's rows at its foot to hold what it can.
    void fit();
    void sourceChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                       const QList<int> &roles);
    void followSourceRows();
    void tellAllChanged();

    int m_first = 0;
    int m_fitting = 1;
    int m_rows = 0; // the window's own
};

} // namespace quarry::viewer
