#pragma once

#include "BackgroundQuery.h"
#include "Bookmarks.h"
#include "LogSelect.h"

#include <QAbstractTableModel>
#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlRecord>
#include <QTimer>
#include <QVariant>

#include <optional>
#include <utility>

namespace quarry::viewer {

class StationDatabase;

// The rows of a log's statement for a view, read a page at a time as the
// view shows them and kept for a few pages only: a log of ten million rows
// opens as fast as one of a thousand, on any engine (the MySQL client would
// otherwise hold the whole result before showing a row). The rows are in
// the log's own order (by columns such as the day and time, then a key
// column), or sorted by a column and then the key, by the database. A
// page next to one already read starts at that page's edge; a jump (the
// scroll bar dragged) starts from an offset, which the server walks: from
// the end of the rows, in the reversed order, when that is nearer, so that
// Ctrl+End reads as fast as the first page. Once the rows are counted, the
// order is walked once (going up), a step of a few thousand rows at a
// time between the pages, and bookmarked at each step: a jump then starts
// from the mark before it and the server walks fewer rows than a step.
//
// A new statement or order is read in the background, on a connection of
// the model's own, while the rows before it stay on view: its first page
// replaces them (rowsShown), and then its rows are counted (counted); until
// the count is in, the view fetches more rows a page at a time. A view keeps
// a header section per row, and making millions of them at once holds the
// window for a second: the counted rows are told of a share at a time, one
// share a turn of the event loop, and counted() follows the last. The pages
// after the first are read in the background too, on a second connection
// of the model's, so that the count does not hold them up: a row whose page
// is not in memory is a placeholder (no value in any role) until its page
// comes (dataChanged). While the scroll bar is dragged only the pages last
// asked for are read; a read of a page no longer asked for is stopped.
// Where the engine allows it, rows sorted by a column are sorted once, into
// a temporary table of their keys (or, when they are few, of the rows
// themselves) by position on that second connection, and every page of
// that order, and every file of it, is read from it by position.
class LogRowsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // While one lives, a row not in memory is read at once, on the
    // station's connection, rather than shown as a placeholder: for whoever
    // goes through every row of a short result (the statistics' pass-rate
    // chart) and cannot wait for the pages to come. Files and the clipboard
    // read their rows through a statement of their own (RowStream).
    class ReadingAtOnce
    {
    public:
        explicit ReadingAtOnce(const LogRowsModel &model);
        ~ReadingAtOnce();
        Q_DISABLE_COPY_MOVE(ReadingAtOnce)

    private:
        const LogRowsModel &m_model;
    };

    // The rows of a page: a tall window's several times over, and few
    // enough that the first page of a condition few rows meet comes soon
    // (the server walks past every row that does not meet it on its way).
    static constexpr int PageRows = 250;
    // The rows between two bookmarks, which a jump walks at most: a step of
    // the walk for them is one statement on the page reader's connection,
    // between the pages (a page asked for stops the step, which is walked
    // again after it).
    static constexpr int MarkRows = 5'000;
    // The counted rows that an order kept sorted holds copies of, some tens
    // of MB on the database at most: its pages and files then read them
    // straight from the copy, as they were when sorted. An order of more
    // rows holds their keys, and each row is looked up in the log wherever
    // it lies in its file.
    static constexpr int CopiedRows = 200'000;

    explicit LogRowsModel(int pageRows = PageRows, int markRows = MarkRows,
                          int copiedRows = CopiedRows, QObject *parent = nullptr);

    // Starts reading the rows of select on the station in their own order:
    // by its columns, then key (a column of the select with one value per
    // row). Holds on to the station's connection until clear().
    void setQuery(const StationDatabase &station, const QString &select, const QString &key,
                  const RowOrder &own = {});
    // Stops the reading in the background (cancelled() tells), pages too:
    // their rows stay placeholders until they are shown again.
    void cancel();
    // Forgets the rows and what is being read, and lets go of the connection.
    void clear();
    // Whether a statement or order is being read, the rows counted or told
    // of, a page read or the order bookmarked.
    bool isBusy() const;
    // Counted, and every row told of.
    bool isCounted() const;
    // Counted, and walking the order for the bookmarks that jumps start
    // from (busy meanwhile).
    bool isBookmarking() const { return isCounted() && !m_marks.isDone(); }
    // A statement for some of the rows shown, where it runs, and the row
    // its first row is.
    struct Part
    {
        QString select;
        qint64 firstRow = 0;
        // None: on a connection other than the model's.
        BackgroundQuery::Lender lender = {};
    };

    // The statement whose rows are shown, in their order.
    QString statement() const;
    // Of those, at most `rows` from row `first` (every row from it for -1),
    // from `first` or from row 0 where the engine cannot start a statement
    // inside an order. An order kept sorted is read by position, on the
    // connection that keeps it, whose pages wait meanwhile.
    Part statement(qint64 first, int rows) const;
    // The fault of the last read; no error while every read worked.
    QSqlError lastError() const { return m_error; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;
    // Reads the rows again in the order of column (then the key); column -1
    // for their own order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

Q_SIGNALS:
    // The first page of a new statement or order is on view.
    void rowsShown();
    void counted();
    // Reading failed: a statement or order (the rows before it stay), or a
    // page of the rows on view (its rows show empty and nothing more is
    // read; sent after the call that asked for the rows has returned).
    void failed(const QSqlError &error);
    // The reading in the background stopped when asked.
    void cancelled();
    // The statement that cancel() stops could not be told to (why).
    void stopFailed(const QString &why);
    // isBusy() changed.
    void busyChanged(bool busy);
    // The rows sorted by a column could not be kept sorted on the database
    // (the login may not create a temporary table): each page of that order
    // and of those after it is sorted anew.
    void sortingEachPage(const QSqlError &why);

private:
    using Page = QList<QVariantList>;

    // What is asked of the database.
    struct Statement
    {
        QSqlDatabase database;
        QString select;
        QString key;
        Paging paging = Paging::LimitOffset;
        RowOrder own;
        RowOrder order;
        QStringList orderFields; // the order's columns as the rows name them
        // Where the order is kept sorted, on the page reader's connection,
        // and the columns of the rows it holds copies of (none: keys).
        PositionTable positions = PositionTable::None;
        QStringList copied = {};
    };
    // Positions: the rows sorted once, and the first page of them, read by
    // the page reader.
    enum class Reading { Nothing, FirstPage, Positions, Count };

    void readFirstPage(const Statement &statement, bool reordered);
    void backgroundFinished(const QueryResult &result);
    void positionsRead(const QueryResult &result);
    PositionTable positionTable() const;
    void showFirstPage(const QueryResult &result);
    void showCount(qint64 rows);
    void tellRows();
    const Page *page(qint64 number) const;
    void askForPage(qint64 number) const;
    const Page *keep(qint64 number, const Page &rows) const;
    void readNextPage();
    void bookmark();
    void pageRead(const QueryResult &result);
    bool failedRead(const QueryResult &result);
    void stepRead(const QueryResult &result);
    void showPage(qint64 number, const Page &rows);
    void addRows(qint64 read);
    void forgetPages();
    QString pageStatement(qint64 number, PositionTable positions, bool &reversed) const;
    QSqlError readPageAtOnce(qint64 number, Page &rows) const;
    void tellBusy();
    void rememberEdges(qint64 number, const Page &rows) const;
    PageStart edge(const QVariantList &row) const;
    void tellFailure() const;

    const int m_pageRowsWanted;
    const int m_copiedRows;
    BackgroundQuery m_background;
    Reading m_reading = Reading::Nothing;
    Statement m_asked; // being read in the background
    Statement m_shown;
    QSqlRecord m_columns;
    qint64 m_rowCount = 0;
    int m_toldRows = 0; // the rows a view knows of
    bool m_counted = false;
    QTimer m_telling;             // the next share of the counted rows
    bool m_reordering = false;    // the statement asked for is the one shown
    QSqlError m_positionsRefused; // why this station's orders are sorted each page
    bool m_refusalTold = false;
    // While the model tells of a change: a view's fetchMore() then waits
    // (the rows it would add would be told of inside that change).
    bool m_changing = false;
    qint64 m_pageRows = 1;
    BackgroundQuery m_pageReader;
    // Pages data() asked for and not in memory, the latest last; the read
    // one, and whether it reads the reversed order.
    mutable QList<qint64> m_wanted;
    mutable bool m_readNextQueued = false;
    std::optional<qint64> m_readingPage;
    bool m_readingReversed = false;
    Bookmarks m_marks;
    bool m_stepping = false; // the page reader walks a step to the next mark
    QElapsedTimer m_taking;  // the count's time, then the step's
    qint64 m_countMs = 0;
    mutable int m_readingAtOnce = 0; // ReadingAtOnce alive
    bool m_stopFailureTold = false;  // since the last cancel()
    bool m_wasBusy = false;
    mutable QHash<qint64, Page> m_pages;
    mutable QList<qint64> m_recent;              // page numbers, the least recently used first
    mutable QHash<qint64, PageStart> m_lastRows; // page number: where the page after it starts
    // page number: where the page before it starts, in the reversed order
    mutable QHash<qint64, PageStart> m_firstRows;
    mutable QSqlError m_error;
};

} // namespace quarry::viewer
