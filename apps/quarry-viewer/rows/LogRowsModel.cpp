#include "LogRowsModel.h"

#include "StationDatabase.h"

#include "platform/DbConnection.h"

#include <QScopedValueRollback>
#include <QSqlDriver>
#include <QSqlField>
#include <QSqlQuery>

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

// Enough to fill a tall window several times over, few enough to keep a
// log of millions of rows small in memory.
constexpr int PagesKept = 8;
// The pages last asked for that are read: those on view, while older asks
// (the scroll bar passing by) are dropped.
constexpr int PagesWanted = PagesKept / 2;
// The rows a view is told of in one turn of the event loop. A table's
// header keeps a section of 8 bytes for each row, and after each share
// places every section anew: about twenty milliseconds at ten million
// rows, whatever the share, and little for the share itself.
// Telling them all at once costs more, as the header then takes the memory
// for all of them in one turn.
constexpr int RowsToldAtOnce = 200'000;

// The rows a view can be told of.
int viewRows(qint64 rows)
{
    return int(qMin<qint64>(rows, std::numeric_limits<int>::max()));
}

// Rows read by position are looked up by their keys, in no order of the
// log's file. SQLite's cache (2 MB) cannot hold the inner pages of the
// index of a log of millions of rows, which each look-up then reads from
// the file again; 16 MB holds those of tens of millions, and makes reading
// every row of a sorted log three times as fast.
BackgroundQuery::Opener withLookUpCache(BackgroundQuery::Opener opener)
{
    return [opener = std::move(opener)](DbConnection &connection) {
        const QString fault = opener(connection);
        if (fault.isEmpty() && connection.database().driverName() == "QSQLITE"_L1)
            QSqlQuery(connection.database()).exec(u"PRAGMA cache_size = -16384"_s);
        return fault;
    };
}

} // namespace

LogRowsModel::LogRowsModel(int pageRows, int markRows, int copiedRows, QObject *parent)
    : QAbstractTableModel(parent)
    , m_pageRowsWanted(qMax(pageRows, 1))
    , m_copiedRows(copiedRows)
    , m_marks(markRows)
{
    connect(&m_background, &BackgroundQuery::finished, this, &LogRowsModel::backgroundFinished);
    connect(&m_pageReader, &BackgroundQuery::finished, this, &LogRowsModel::pageRead);
    // Both readers may fail to stop on one server that went away: said once.
    for (BackgroundQuery *reader : {&m_background, &m_pageReader}) {
        connect(reader, &BackgroundQuery::stopFailed, this, [this](const QString &why) {
            if (!std::exchange(m_stopFailureTold, true))
                Q_EMIT stopFailed(why);
        });
    }
    m_telling.setSingleShot(true);
    m_telling.setInterval(0);
    connect(&m_telling, &QTimer::timeout, this, &LogRowsModel::tellRows);
}

LogRowsModel::ReadingAtOnce::ReadingAtOnce(const LogRowsModel &model)
    : m_model(model)
{
    ++m_model.m_readingAtOnce;
}

LogRowsModel::ReadingAtOnce::~ReadingAtOnce()
{
    --m_model.m_readingAtOnce;
}

void LogRowsModel::setQuery(const StationDatabase &station, const QString &select,
                            const QString &key, const RowOrder &own)
{
    // The pages and the step on their way were of the station before.
    m_readingPage.reset();
    m_wanted.clear();
    m_stepping = false;
    m_marks.stop();
    m_positionsRefused = {};
    m_refusalTold = false;
    m_background.setOpener(station.opener());
    m_pageReader.setOpener(withLookUpCache(station.opener()));
    readFirstPage({station.database(), select, key, station.paging(), own, own, own.columns},
                  false);
}

void LogRowsModel::readFirstPage(const Statement &statement, bool reordered)
{
    m_asked = statement;
    m_reordering = reordered;
    if (statement.positions != PositionTable::None) {
        // Sorted where its pages are read: a temporary table lives on the
        // connection that made it. A count under way stops, and starts
        // again with the first page.
        m_reading = Reading::Positions;
        m_background.stop();
        m_readingPage.reset();
        m_wanted.clear();
        m_stepping = false;
        m_marks.stop();
        m_pageReader.run(positionsPage(statement.positions, statement.select, statement.key,
                                       statement.copied, 0, m_pageRowsWanted),
                         m_pageRowsWanted,
                         positionsFill(statement.positions, statement.select, statement.key,
                                       statement.copied, statement.order));
        tellBusy();
        return;
    }
    m_reading = Reading::FirstPage;
    m_background.run(pageSelect(statement.select, statement.key, statement.order, statement.paging,
                                {}, m_pageRowsWanted),
                     statement.paging == Paging::None ? -1 : m_pageRowsWanted);
    tellBusy();
}

// Where an order by a column is kept sorted: SQLite and MySQL (through
// their own drivers) sort into a temporary table.
PositionTable LogRowsModel::positionTable() const
{
    if (m_shown.paging != Paging::LimitOffset || m_positionsRefused.isValid())
        return PositionTable::None;
    const QSqlDriver *driver = m_shown.database.driver();
    if (driver->dbmsType() == QSqlDriver::SQLite)
        return PositionTable::RowId;
    if (driver->dbmsType() == QSqlDriver::MySqlServer
        && m_shown.database.driverName() != "QODBC"_L1)
        return PositionTable::AutoIncrement;
    return PositionTable::None;
}

bool LogRowsModel::isBusy() const
{
    return m_reading != Reading::Nothing || m_readingPage.has_value() || !m_wanted.isEmpty()
        || m_telling.isActive() || !m_marks.isDone();
}

bool LogRowsModel::isCounted() const
{
    return m_counted && m_toldRows == viewRows(m_rowCount);
}

void LogRowsModel::cancel()
{
    m_stopFailureTold = false;
    if (m_reading != Reading::Nothing && m_reading != Reading::Positions)
        m_background.cancel();
    const bool pages = m_readingPage.has_value() || !m_wanted.isEmpty() || !m_marks.isDone();
    if (m_reading == Reading::Positions || m_readingPage.has_value() || m_stepping)
        m_pageReader.cancel();
    m_readingPage.reset();
    m_wanted.clear();
    // The marks walked so far stay: jumps start from them.
    m_stepping = false;
    m_marks.stop();
    // The statement read in the background tells when it has stopped.
    if (pages && m_reading == Reading::Nothing)
        Q_EMIT cancelled();
    tellBusy();
}

void LogRowsModel::tellBusy()
{
    if (isBusy() != m_wasBusy) {
        m_wasBusy = !m_wasBusy;
        Q_EMIT busyChanged(m_wasBusy);
    }
}

void LogRowsModel::clear()
{
    const QScopedValueRollback changing(m_changing, true);
    beginResetModel();
    // What the background still tells is not listened to.
    m_reading = Reading::Nothing;
    m_background.cancel();
    m_pageReader.stop();
    m_asked = {};
    m_shown = {};
    m_columns.clear();
    m_rowCount = 0;
    m_toldRows = 0;
    m_counted = false;
    m_telling.stop();
    forgetPages();
    m_error = {};
    endResetModel();
    tellBusy();
}

void LogRowsModel::forgetPages()
{
    if (m_readingPage.has_value() || m_stepping)
        m_pageReader.stop();
    m_readingPage.reset();
    m_wanted.clear();
    m_stepping = false;
    m_marks.clear();
    m_pages.clear();
    m_recent.clear();
    m_lastRows.clear();
    m_firstRows.clear();
}

QString LogRowsModel::statement() const
{
    return m_shown.database.isValid() ? orderedSelect(m_shown.select, m_shown.key, m_shown.order)
                                      : QString();
}

// The server walks the keys of the rows before first, which an index of the
// order's columns holds; the bookmarks would serve only the order they were
// walked in, going up. While the page reader sorts, the order it keeps is
// about to be another.
LogRowsModel::Part LogRowsModel::statement(qint64 first, int rows) const
{
    if (m_shown.positions != PositionTable::None && m_reading != Reading::Positions) {
        const BackgroundQuery *reader = &m_pageReader;
        return {positionsPage(m_shown.positions, m_shown.select, m_shown.key, m_shown.copied, first,
                              rows),
                first, [reader](BackgroundQuery::Loan loan) { reader->lend(std::move(loan)); }};
    }
    if (m_shown.paging == Paging::None || (first == 0 && rows < 0))
        return {statement(), 0};
    return {pageSelect(m_shown.select, m_shown.key, m_shown.order, m_shown.paging, {first, {}, {}},
                       rows < 0 ? std::numeric_limits<int>::max() : rows),
            first};
}

void LogRowsModel::sort(int column, Qt::SortOrder order)
{
    // A new statement on its way is not given up for the order of the old.
    if (m_reading == Reading::FirstPage || !m_shown.database.isValid()
        || column >= m_columns.count())
        return;
    Statement sorted = m_shown;
    sorted.positions = PositionTable::None; // the own order and the key's have an index
    sorted.copied.clear();
    const QString name = m_columns.fieldName(column);
    if (column < 0) {
        sorted.order = sorted.own;
        sorted.orderFields = sorted.own.columns;
    } else if (name.compare(m_shown.key, Qt::CaseInsensitive) == 0) {
        sorted.order = {{}, order};
        sorted.orderFields = {};
    } else {
        sorted.order
            = {{sorted.database.driver()->escapeIdentifier(name, QSqlDriver::FieldName)}, order};
        sorted.orderFields = {name};
        sorted.positions = positionTable();
        if (m_counted && m_rowCount <= m_copiedRows) {
            for (int c = 0; c < m_columns.count(); ++c)
                sorted.copied.append(
                    sorted.database.driver()->escapeIdentifier(m_columns.fieldName(c),
                                                               QSqlDriver::FieldName));
        }
    }
    if (sorted.order != m_shown.order)
        readFirstPage(sorted, true);
}

void LogRowsModel::backgroundFinished(const QueryResult &result)
{
    const Reading reading = std::exchange(m_reading, Reading::Nothing);
    if (reading == Reading::Nothing)
        return;
    if (result.cancelled)
        Q_EMIT cancelled();
    else if (result.error.isValid())
        Q_EMIT failed(result.error);
    else if (reading == Reading::FirstPage)
        showFirstPage(result);
    else
        showCount(result.rows.value(0).value(0).toLongLong());
    tellBusy();
}

void LogRowsModel::positionsRead(const QueryResult &result)
{
    m_reading = Reading::Nothing;
    if (result.cancelled) {
        Q_EMIT cancelled();
    } else if (result.error.isValid()) {
        // Sorted as every other order then, each page anew; a fault of the
        // statement itself is told when that fails too.
        m_positionsRefused = result.error;
        Statement perPage = m_asked;
        perPage.positions = PositionTable::None;
        readFirstPage(perPage, m_reordering);
        return;
    } else {
        showFirstPage(result);
    }
    tellBusy();
}

void LogRowsModel::showFirstPage(const QueryResult &result)
{
    {
        const QScopedValueRollback changing(m_changing, true);
        beginResetModel();
        m_shown = m_asked;
        m_columns = result.columns;
        forgetPages();
        m_error = {};
        const qint64 read = result.rows.size();
        const bool whole = m_shown.paging == Paging::None;
        // Another order of the same rows keeps their count, and goes on
        // telling of those not yet told of.
        if (whole || !m_reordering || !m_counted) {
            m_rowCount = read;
            m_toldRows = int(read);
            m_counted = whole || read < m_pageRowsWanted;
            m_telling.stop();
        }
        m_pageRows = whole ? qMax<qint64>(read, 1) : m_pageRowsWanted;
        keep(0, result.rows);
        endResetModel();
    }
    if (!m_counted) {
        m_reading = Reading::Count;
        m_background.run(countSelect(m_shown.select), 1);
        m_taking.start();
    } else {
        bookmark();
    }
    Q_EMIT rowsShown();
    if (m_positionsRefused.isValid() && !std::exchange(m_refusalTold, true))
        Q_EMIT sortingEachPage(m_positionsRefused);
}

void LogRowsModel::showCount(qint64 rows)
{
    // Fewer than the rows read already: rows went meanwhile; those read stay.
    m_rowCount = qMax(m_rowCount, rows);
    m_counted = true;
    m_countMs = m_taking.elapsed();
    bookmark();
    tellRows();
}

void LogRowsModel::tellRows()
{
    const int all = viewRows(m_rowCount);
    if (m_toldRows < all) {
        const QScopedValueRollback changing(m_changing, true);
        const int last = int(qMin<qint64>(all, qint64(m_toldRows) + RowsToldAtOnce)) - 1;
        beginInsertRows({}, m_toldRows, last);
        m_toldRows = last + 1;
        endInsertRows();
    }
    if (m_toldRows < all) {
        m_telling.start();
        return;
    }
    Q_EMIT counted();
    tellBusy();
}

// Not from where the fault is met: the view may be painting, and the
// window clears the model when told.
void LogRowsModel::tellFailure() const
{
    auto *self = const_cast<LogRowsModel *>(this);
    QMetaObject::invokeMethod(
        self, [self, error = m_error] { Q_EMIT self->failed(error); }, Qt::QueuedConnection);
}

int LogRowsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_toldRows;
}

int LogRowsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns.count();
}

// A row not in memory has no value in any role, so that it shows empty
// until its page comes.
QVariant LogRowsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    const Page *rows = page(index.row() / m_pageRows);
    const qint64 at = index.row() % m_pageRows;
    if (!rows || at >= rows->size())
        return {};
    return rows->at(at).value(index.column());
}

QVariant LogRowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section < m_columns.count())
        return m_columns.fieldName(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

// Until the count is in, the rows grow by a page as the view reaches the
// last one: a full page may have more after it.
bool LogRowsModel::canFetchMore(const QModelIndex &parent) const
{
    return !parent.isValid() && !m_counted && !m_error.isValid() && m_rowCount > 0
        && m_rowCount % m_pageRows == 0 && m_rowCount < std::numeric_limits<int>::max();
}

void LogRowsModel::fetchMore(const QModelIndex &parent)
{
    if (m_changing || !canFetchMore(parent))
        return;
    // Asked of the background, its rows are added when it comes.
    if (const Page *rows = page(m_rowCount / m_pageRows))
        addRows(rows->size());
}

// The rows of the page after the last one shown; fewer than a page: there
// are no more.
void LogRowsModel::addRows(qint64 read)
{
    const QScopedValueRollback changing(m_changing, true);
    if (read < m_pageRows)
        m_counted = true;
    if (read == 0)
        return;
    beginInsertRows({}, m_toldRows, int(m_toldRows + read - 1));
    m_rowCount += read;
    m_toldRows += int(read);
    endInsertRows();
}

const LogRowsModel::Page *LogRowsModel::page(qint64 number) const
{
    if (const auto found = m_pages.constFind(number); found != m_pages.cend()) {
        m_recent.removeOne(number);
        m_recent.append(number);
        return &*found;
    }
    if (m_error.isValid())
        return nullptr;
    if (m_readingAtOnce == 0) {
        askForPage(number);
        return nullptr;
    }
    Page rows;
    m_error = readPageAtOnce(number, rows);
    if (m_error.isValid()) {
        tellFailure();
        return nullptr;
    }
    return keep(number, rows);
}

const LogRowsModel::Page *LogRowsModel::keep(qint64 number, const Page &rows) const
{
    if (m_pages.size() >= PagesKept)
        m_pages.remove(m_recent.takeFirst());
    m_recent.append(number);
    rememberEdges(number, rows);
    return &*m_pages.insert(number, rows);
}

// Asked from data(), which may be called while the view paints: the read
// starts once the view has asked for all it shows.
void LogRowsModel::askForPage(qint64 number) const
{
    m_wanted.removeOne(number);
    m_wanted.append(number);
    if (m_wanted.size() > PagesWanted)
        m_wanted.removeFirst();
    if (!std::exchange(m_readNextQueued, true)) {
        auto *self = const_cast<LogRowsModel *>(this);
        QMetaObject::invokeMethod(self, &LogRowsModel::readNextPage, Qt::QueuedConnection);
    }
}

// The page asked for last is read first; one being read that is no longer
// asked for is stopped.
void LogRowsModel::readNextPage()
{
    m_readNextQueued = false;
    // The reader sorts: the pages of the order before can wait for it.
    if (m_reading == Reading::Positions)
        return;
    if (m_readingPage && !m_wanted.contains(*m_readingPage)) {
        m_pageReader.stop();
        m_readingPage.reset();
    }
    // A page asked for goes before the step on its way, which is walked
    // again after it.
    if (m_stepping && !m_wanted.isEmpty()) {
        m_pageReader.stop();
        m_stepping = false;
    }
    if (m_stepping || m_readingPage.has_value() || m_error.isValid()) {
        tellBusy();
        return;
    }
    if (!m_wanted.isEmpty()) {
        m_readingPage = m_wanted.last();
        m_pageReader.run(pageStatement(*m_readingPage, m_shown.positions, m_readingReversed),
                         int(m_pageRows));
    } else if (!m_marks.isDone()) {
        // One row, the next mark, after the rows of a step.
        RowOrder up = m_shown.order;
        up.direction = Qt::AscendingOrder;
        m_stepping = true;
        m_pageReader.run(pageSelect(m_shown.select, m_shown.key, up, m_shown.paging,
                                    m_marks.nextStep(), 1),
                         1);
        m_taking.start();
    }
    tellBusy();
}

// The order of the counted rows is walked for its marks where a page is
// read by an offset, and where there are more rows than a step. It is
// walked going up: going down, the rows after a mark are those below it
// or NULL, which neither SQLite nor MariaDB finds as one range of an
// index, and SQLite sorts them all for each step.
void LogRowsModel::bookmark()
{
    if (m_shown.paging == Paging::None || m_shown.positions != PositionTable::None
        || m_rowCount <= m_marks.step())
        return;
    m_marks.walk();
    if (!std::exchange(m_readNextQueued, true))
        QMetaObject::invokeMethod(this, &LogRowsModel::readNextPage, Qt::QueuedConnection);
}

void LogRowsModel::pageRead(const QueryResult &result)
{
    if (m_reading == Reading::Positions) {
        positionsRead(result);
        return;
    }
    if (std::exchange(m_stepping, false)) {
        stepRead(result);
        return;
    }
    // None: given up, and what it read means nothing.
    const std::optional<qint64> reading = std::exchange(m_readingPage, std::nullopt);
    if (!reading)
        return;
    const qint64 number = *reading;
    m_wanted.removeOne(number);
    if (failedRead(result)) {
        m_wanted.clear();
    } else {
        Page rows = result.rows;
        if (m_readingReversed)
            std::reverse(rows.begin(), rows.end());
        showPage(number, rows);
    }
    readNextPage();
}

// Whether a read on the page connection was stopped or failed; a failure
// is kept and told.
bool LogRowsModel::failedRead(const QueryResult &result)
{
    if (result.error.isValid() && !result.cancelled) {
        m_error = result.error;
        Q_EMIT failed(m_error);
    }
    return result.cancelled || result.error.isValid();
}

void LogRowsModel::stepRead(const QueryResult &result)
{
    if (failedRead(result)) {
        m_marks.stop();
    } else {
        // No row: the walk has passed the last one.
        m_marks.add(result.rows.isEmpty() ? PageStart() : edge(result.rows.first()));
        // A step that takes longer than the whole count did had the server
        // sort every row (no index of the order): each step would cost as
        // much as a jump without marks, and the walk ends there.
        if (m_taking.elapsed() > m_countMs)
            m_marks.stop();
    }
    readNextPage();
}

void LogRowsModel::showPage(qint64 number, const Page &rows)
{
    keep(number, rows);
    const qint64 first = number * m_pageRows;
    if (first >= m_rowCount) { // fetchMore's
        addRows(rows.size());
        return;
    }
    // Rows not yet told of are not the view's to update.
    const qint64 last = qMin<qint64>(first + m_pageRows, m_toldRows) - 1;
    if (last >= first)
        Q_EMIT dataChanged(index(viewRows(first), 0),
                           index(viewRows(last), qMax(int(m_columns.count()) - 1, 0)));
}

// A page that follows or precedes one read already starts from that one's
// edge (going the other way for the page before); a jump starts from the
// bookmark before it in the order going up (the reversed order when the
// rows go down), or from the first row of either order when that walks
// fewer rows, so that both ends of a log come at once.
QString LogRowsModel::pageStatement(qint64 number, PositionTable positions, bool &reversed) const
{
    const qint64 first = number * m_pageRows;
    const qint64 size = m_counted ? qMin(m_pageRows, m_rowCount - first) : m_pageRows;
    reversed = false;
    if (positions != PositionTable::None)
        return positionsPage(positions, m_shown.select, m_shown.key, m_shown.copied, first,
                             int(qMax<qint64>(size, 1)));
    RowOrder order = m_shown.order;
    PageStart start;
    if (const auto before = m_lastRows.constFind(number - 1); before != m_lastRows.cend()) {
        start = *before;
    } else if (const auto after = m_firstRows.constFind(number + 1); after != m_firstRows.cend()) {
        start = *after;
        reversed = true;
    } else {
        const qint64 fromEnd = m_rowCount - first - size;
        reversed = m_counted && m_shown.order.direction == Qt::DescendingOrder;
        start = m_marks.start(reversed ? fromEnd : first);
        if (const qint64 other = reversed ? first : fromEnd; m_counted && other < start.offset) {
            start = {other, {}, {}};
            reversed = !reversed;
        }
    }
    if (reversed)
        order.direction
            = order.direction == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    return pageSelect(m_shown.select, m_shown.key, order, m_shown.paging, start,
                      int(qMax<qint64>(size, 1)));
}

QSqlError LogRowsModel::readPageAtOnce(qint64 number, Page &rows) const
{
    bool reversed = false;
    QSqlQuery query(m_shown.database);
    query.setForwardOnly(true);
    // The station's connection has no table of positions.
    if (!query.exec(pageStatement(number, PositionTable::None, reversed)))
        return query.lastError();
    while (query.next()) {
        QVariantList row;
        row.reserve(m_columns.count());
        for (int c = 0; c < m_columns.count(); ++c)
            row.append(query.value(c));
        rows.append(row);
    }
    if (query.lastError().isValid())
        return query.lastError();
    if (reversed)
        std::reverse(rows.begin(), rows.end());
    return {};
}

void LogRowsModel::rememberEdges(qint64 number, const Page &rows) const
{
    if (rows.isEmpty())
        return;
    if (const PageStart last = edge(rows.last()); !last.keyAfter.isEmpty())
        m_lastRows.insert(number, last);
    if (const PageStart first = edge(rows.first()); !first.keyAfter.isEmpty())
        m_firstRows.insert(number, first);
}

// Where the rows after row start: after its key (and values in the order's
// columns); no key when the row does not say.
PageStart LogRowsModel::edge(const QVariantList &row) const
{
    const int key = m_columns.indexOf(m_shown.key);
    if (key < 0 || row.at(key).isNull())
        return {};
    const auto literal = [&](int column) {
        QSqlField field(m_columns.fieldName(column), m_columns.field(column).metaType());
        field.setValue(row.at(column));
        return m_shown.database.driver()->formatValue(field);
    };
    PageStart start{0, literal(key), {}};
    for (const QString &name : m_shown.orderFields) {
        const int column = m_columns.indexOf(name);
        if (column < 0)
            return {};
        start.columnsAfter.append(literal(column));
    }
    return start;
}

} // namespace quarry::viewer
