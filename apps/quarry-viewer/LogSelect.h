#pragma once

#include "LogEntry.h"

#include <QString>

namespace quarry::viewer {

// The statement that shows a log for the condition CQuarry handed back: the
// log table's SELECT with the WHERE clause appended, or the dialog's own
// SELECT. Empty when the condition is (the operator cancelled).
QString logSelect(const LogEntry &entry, const QString &condition);

// The number of rows a statement yields, as one row of one column.
QString countSelect(const QString &select);

} // namespace quarry::viewer
