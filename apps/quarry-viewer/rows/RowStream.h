#pragma once

#include "BackgroundQuery.h"
#include "SelectedCells.h"

#include <QList>
#include <QSqlError>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>

class QThread;

namespace quarry::viewer {

// Where every row of a log comes from for a file: the statement in the
// order on view, and how to open a connection of its own to the station
// that describe() names.
struct RowSource
{
    BackgroundQuery::Opener opener;
    QString select;
    QString station;
    // Only these cells of the rows (in their rows and columns), the
    // statement's first row being the table's row firstRow; none: every
    // row whole.
    std::optional<SelectedCells> selected = std::nullopt;
    qint64 firstRow = 0;
    // Where select runs on a connection already open (which keeps a table
    // it reads); none: on one of the stream's own, which opener opens.
    BackgroundQuery::Lender lender = {};
};

// The rows of a source, read once from the first to the last by one
// statement on a thread and a connection of its own (or lent), and handed
// over a few hundred at a time. Only a few batches wait to be taken, so
// that the memory stays the same whatever the number of rows, and the
// statement can be stopped on the database at any time, even while it
// sorts.
class RowStream
{
public:
    explicit RowStream(const RowSource &source);
    // Stops the statement and waits for its thread.
    ~RowStream();
    RowStream(const RowStream &) = delete;
    RowStream &operator=(const RowStream &) = delete;

    // The next rows, waited for while goOn() (asked every 25 ms)
    // says so, and kept by the stream until the next call. Empty at the
    // end, after a fault (failure()) or when goOn() said no (the statement
    // is then stopped).
    QList<QVariantList> &next(const std::function<bool()> &goOn);
    // The fault of the statement in the operator's words, naming the
    // station; "" while there is none.
    QString failure() const;

private:
    struct Channel;

    void stop();

    const QString m_station;
    BackgroundQuery::Opener m_opener;
    // Shared with the reading, which a lent connection may start after the
    // stream has gone.
    const std::shared_ptr<Channel> m_channel;
    std::unique_ptr<QThread> m_thread; // none on a lent connection
    QList<QVariantList> m_given;
};

} // namespace quarry::viewer
