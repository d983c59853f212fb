#pragma once

#include "platform/SqlLiteral.h"

#include <quarry/quarry_export.h>

#include <QString>

// What the clauses of the log dialogs share: the rule for the values put
// between quotes, the cheque range and the branch parts.
namespace quarry {

// What the operator typed, safe to stand between quotes: without the
// characters that end a literal or widen a LIKE on one of the dialects
// (dropLiteralBreakers). Every value typed into a box goes through it on its
// way into a clause; the descriptions of the host's lists are data and go
// through literalText instead.
QUARRY_EXPORT QString quotable(const QString &value);
// "%" for a value the operator left empty.
QUARRY_EXPORT QString orAny(const QString &value);

// A range of cheque numbers, compared as text.
struct ChequeRange
{
    QString begin;
    QString end;

    // Binary, character by character: "9" is not before "12".
    bool endBeforeBegin() const { return end < begin; }
};

// The boxes' texts as typed (blanks kept); a box that is blank after
// trimming stands for `length` zeros at the begin and `length` times `high`
// at the end.
QUARRY_EXPORT ChequeRange chequeRange(const QString &beginBox, const QString &endBox, qint32 length,
                                      QChar high);

// "( wdh like '<pattern>')".
QUARRY_EXPORT QString branchLikePart(const QString &pattern);
// "( wdh in (<codes>))", codes being the quoted list of the teller data.
QUARRY_EXPORT QString branchListPart(const QString &quotedCodes);
// "( wdh like '<PATTERN>' or wdh like '<pattern>')": branch codes with
// letters match whichever case the log holds.
QUARRY_EXPORT QString branchBothCasesPart(const QString &pattern);

} // namespace quarry
