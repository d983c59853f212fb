#pragma once

#include "LogEntry.h"

#include <QHash>
#include <QIdentityProxyModel>

namespace quarry::viewer {

// A log's rows as the operator reads them: the catalogue's column titles
// over the columns (the column's own name as the tooltip), and each code
// of a code list's column with its description beside it ("1 增加行员").
// A value that is no code of the list (a log that stores descriptions)
// shows as it is. A number of a column with a number format is written by
// it (NumberFormatRole gives the format).
class LabelledRows : public QIdentityProxyModel
{
    Q_OBJECT

public:
    using QIdentityProxyModel::QIdentityProxyModel;

    void setEntry(const LogEntry &entry);
    const LogEntry &entry() const { return m_entry; }
    // The columns that tell one row from another: the log's key and the
    // account.
    QList<int> identifyingColumns() const;
    // The columns the entry does not hide.
    QList<int> shownColumns() const;

    // value of column (a value of the source's) as data() shows it.
    QVariant labelled(int column, const QVariant &value) const;
    // Whether labelled() may show a value of column otherwise than as it
    // is: the column has a number format or a code list.
    bool relabels(int column) const;

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QString sourceName(int section) const;

    LogEntry m_entry;
    // Column name in upper case: code as text: description.
    QHash<QString, QHash<QString, QString>> m_codes;
};

} // namespace quarry::viewer
