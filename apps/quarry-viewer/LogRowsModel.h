#pragma once

#include "LogSelect.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlRecord>
#include <QVariant>

namespace quarry::viewer {

// The rows of a log's statement for a view, read a page at a time as the
// view shows them and kept for a few pages only: a log of a million rows
// opens with its count and its first page, on any engine (the MySQL client
// would otherwise hold the whole result before showing a row). The rows are
// in the order of a key column, or sorted by a column and then the key, by
// the database. A page that follows one already read starts after that
// page's last row; a jump (the scroll bar dragged) starts from an offset,
// which the server walks.
class LogRowsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit LogRowsModel(int pageRows = 1000, QObject *parent = nullptr);

    // Counts the rows of select and reads its first page, ordered by key
    // (a column of the select with one value per row). Holds on to the
    // connection until clear(). On a fault the model is empty and the
    // fault is returned.
    QSqlError setQuery(const QSqlDatabase &database, const QString &select, const QString &key,
                       Paging paging);
    // Forgets the result and lets go of the connection.
    void clear();
    // The statement whose rows are shown, in their order.
    QString statement() const;
    // The fault of the last read; no error while every read worked.
    QSqlError lastError() const { return m_error; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    // Reads the rows again in the order of column (then the key); a fault
    // is told by readFailed.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

Q_SIGNALS:
    // A page after the first could not be read (the server went away, say):
    // its rows show empty and nothing more is read. Sent once, after the
    // call that asked for the rows has returned.
    void readFailed(const QSqlError &error);

private:
    using Page = QList<QVariantList>;

    const Page *page(qint64 number) const;
    QSqlError readPage(qint64 number, Page &rows, QSqlRecord *columns = nullptr) const;
    QSqlError readFirstPage(QSqlRecord *columns = nullptr);
    void reset();
    void tellFailure() const;

    const int m_pageRowsWanted;
    QSqlDatabase m_database;
    QString m_select;
    QString m_key;
    RowOrder m_order;
    int m_orderColumn = -1; // in m_columns; -1 for the key alone
    Paging m_paging = Paging::LimitOffset;
    QSqlRecord m_columns;
    qint64 m_rowCount = 0;
    qint64 m_pageRows = 1;
    // Read on demand from const data(), as QSqlQueryModel fetches.
    mutable QHash<qint64, Page> m_pages;
    mutable QList<qint64> m_recent;              // page numbers, the least recently used first
    mutable QHash<qint64, PageStart> m_lastRows; // page number: where the page after it starts
    mutable QSqlError m_error;
};

} // namespace quarry::viewer
