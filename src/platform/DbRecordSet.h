#pragma once

#include <quarry/quarry_export.h>

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace quarry {

class DbConnection;

// The database access library's read-only record set. open() runs the query
// and keeps its rows; fields are read by name (without regard to case) as
// text. Values from configuration or operator input are passed as bound
// parameters ("?" placeholders), never pasted into the SQL.
class QUARRY_EXPORT DbRecordSet
{
public:
    // Throws QuarryError (number 2000, source "DbRecordSet.Open()", the
    // driver's error text) when the connection is not open or the query
    // fails; the record set is then empty.
    void open(const QString &sql, const DbConnection &connection, const QVariantList &params = {});
    void close();

    int recordCount() const { return m_columnCount ? int(m_values.size() / m_columnCount) : 0; }
    bool eof() const { return m_row >= recordCount(); }
    // The current row's field as text ("" for NULL; dates as yyyy-mm-dd,
    // times as hh:mm:ss). Throws QuarryError when there is no such field or
    // no current row.
    QString field(const QString &name) const;
    // Past the last row it stays at eof.
    void moveNext();

private:
    QHash<QString, int> m_columns; // lower-cased name -> index
    QStringList m_values;          // row after row, m_columnCount values each
    int m_columnCount = 0;
    int m_row = 0;
};

// A read-only query whose rows are read one at a time as the driver delivers
// them, none kept: for results too large to hold as a record set. Runs,
// binds and fails like DbRecordSet::open(); fields by position, as text like
// DbRecordSet::field().
class QUARRY_EXPORT DbRowReader
{
public:
    DbRowReader(const QString &sql, const DbConnection &connection,
                const QVariantList &params = {});
    ~DbRowReader();
    DbRowReader(const DbRowReader &) = delete;
    DbRowReader &operator=(const DbRowReader &) = delete;

    // Moves to the next row: false past the last one. Throws QuarryError when
    // the driver fails to deliver a row.
    bool next();
    QString field(int column) const;

private:
    struct Running;
    std::unique_ptr<Running> m_running;
};

} // namespace quarry
