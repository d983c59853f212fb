#pragma once

#include <quarry/quarry_export.h>

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

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
    // driver's error text) when the connection is not open or the query fails.
    void open(const QString &sql, const DbConnection &connection, const QVariantList &params = {});
    void close();

    int recordCount() const { return int(m_rows.size()); }
    bool bof() const { return m_rows.isEmpty(); }
    bool eof() const { return m_row >= m_rows.size(); }
    // The current row's field as text ("" for NULL). Throws QuarryError when
    // there is no such field or no current row.
    QString field(const QString &name) const;
    void moveNext();

private:
    QHash<QString, int> m_columns; // lower-cased name -> index
    QList<QStringList> m_rows;
    qsizetype m_row = 0;
};

} // namespace quarry
