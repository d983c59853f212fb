#include "LogRowsModel.h"

#include <QSqlDriver>
#include <QSqlField>
#include <QSqlQuery>

#include <limits>

namespace quarry::viewer {

namespace {

// Enough to fill a tall window several times over, few enough to keep a
// million-row log small in memory.
constexpr int PagesKept = 8;

} // namespace

LogRowsModel::LogRowsModel(int pageRows, QObject *parent)
    : QAbstractTableModel(parent)
    , m_pageRowsWanted(qMax(pageRows, 1))
{
}

QSqlError LogRowsModel::setQuery(const QSqlDatabase &database, const QString &select,
                                 const QString &key, Paging paging)
{
    beginResetModel();
    reset();
    m_database = database;
    m_select = select;
    m_key = key;
    m_paging = paging;
    QSqlQuery count(database);
    count.setForwardOnly(true);
    if (count.exec(countSelect(select)) && count.next()) {
        m_rowCount = count.value(0).toLongLong();
        m_pageRows = paging == Paging::None ? qMax<qint64>(m_rowCount, 1) : m_pageRowsWanted;
        // A key the statement lacks fails here, in the page's ORDER BY.
        m_error = readFirstPage(&m_columns);
    } else {
        m_error = count.lastError();
    }
    const QSqlError error = m_error;
    if (error.isValid())
        reset();
    endResetModel();
    return error;
}

void LogRowsModel::clear()
{
    beginResetModel();
    reset();
    endResetModel();
}

QString LogRowsModel::statement() const
{
    return m_database.isValid() ? orderedSelect(m_select, m_key, m_order) : QString();
}

void LogRowsModel::sort(int column, Qt::SortOrder order)
{
    if (!m_database.isValid() || column < 0 || column >= m_columns.count())
        return;
    const QString name = m_columns.fieldName(column);
    const bool byKey = name.compare(m_key, Qt::CaseInsensitive) == 0;
    beginResetModel();
    m_order
        = {byKey ? QString() : m_database.driver()->escapeIdentifier(name, QSqlDriver::FieldName),
           order};
    m_orderColumn = byKey ? -1 : column;
    m_pages.clear();
    m_recent.clear();
    m_lastRows.clear();
    m_error = readFirstPage();
    endResetModel();
    if (m_error.isValid())
        tellFailure();
}

QSqlError LogRowsModel::readFirstPage(QSqlRecord *columns)
{
    Page first;
    const QSqlError error = readPage(0, first, columns);
    if (!error.isValid()) {
        m_pages.insert(0, first);
        m_recent.append(0);
    }
    return error;
}

void LogRowsModel::reset()
{
    m_database = {};
    m_columns.clear();
    m_order = {};
    m_orderColumn = -1;
    m_rowCount = 0;
    m_pages.clear();
    m_recent.clear();
    m_lastRows.clear();
    m_error = {};
}

// Not from where the fault is met: the view may be painting, and the
// window clears the model when told.
void LogRowsModel::tellFailure() const
{
    auto *self = const_cast<LogRowsModel *>(this);
    QMetaObject::invokeMethod(
        self, [self, error = m_error] { Q_EMIT self->readFailed(error); }, Qt::QueuedConnection);
}

int LogRowsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(qMin<qint64>(m_rowCount, std::numeric_limits<int>::max()));
}

int LogRowsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns.count();
}

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

const LogRowsModel::Page *LogRowsModel::page(qint64 number) const
{
    if (const auto found = m_pages.constFind(number); found != m_pages.cend()) {
        m_recent.removeOne(number);
        m_recent.append(number);
        return &*found;
    }
    if (m_error.isValid())
        return nullptr;
    Page rows;
    m_error = readPage(number, rows);
    if (m_error.isValid()) {
        tellFailure();
        return nullptr;
    }
    if (m_pages.size() >= PagesKept)
        m_pages.remove(m_recent.takeFirst());
    m_recent.append(number);
    return &*m_pages.insert(number, rows);
}

QSqlError LogRowsModel::readPage(qint64 number, Page &rows, QSqlRecord *columns) const
{
    PageStart start;
    if (const auto before = m_lastRows.constFind(number - 1); before != m_lastRows.cend())
        start = *before;
    else
        start.offset = number * m_pageRows;
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(pageSelect(m_select, m_key, m_order, m_paging, start, int(m_pageRows))))
        return query.lastError();
    QSqlRecord record = query.record();
    while (query.next()) {
        QVariantList row;
        row.reserve(record.count());
        for (int c = 0; c < record.count(); ++c)
            row.append(query.value(c));
        rows.append(row);
    }
    if (query.lastError().isValid())
        return query.lastError();
    if (const int key = record.indexOf(m_key); key >= 0 && !rows.isEmpty()) {
        const auto literal = [&](int column) {
            QSqlField field(record.fieldName(column), record.field(column).metaType());
            field.setValue(rows.last().at(column));
            return m_database.driver()->formatValue(field);
        };
        PageStart next{0, literal(key), m_orderColumn >= 0 ? literal(m_orderColumn) : QString()};
        if (!rows.last().at(key).isNull())
            m_lastRows.insert(number, next);
    }
    if (columns)
        *columns = record;
    return {};
}

} // namespace quarry::viewer
