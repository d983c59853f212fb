#pragma once

#include "LogEntry.h"
#include "platform/SqlLiteral.h"

#include <QString>

namespace quarry::viewer {

// The condition CQuarry handed back, as an auditor reads it:
//
//   " where  ACCNO  LIKE  '1101%'  and Opdate Between '2026-01-01' And '2026-01-31'"
//   账号 以 1101 开头，并且 日期 从 2026-01-01 到 2026-01-31
//
// Columns by the entry's titles, a code of the entry's code lists with its
// description beside it, comparisons in words, parentheses where AND and OR
// mix. Values read as the database reads them on the dialect (a doubled
// quote as one, the dialect's escapes undone); a value that is empty or has
// blanks at an end stands between “ ”. A part it does not recognise stays
// the SQL it is: the words are sometimes less plain, never something else.
// An empty condition reads "全部记录". The statistics' SELECT reads as
// its dates, branch and teller.
QString conditionWords(const QString &condition, const LogEntry &entry, SqlDialect dialect);

} // namespace quarry::viewer
