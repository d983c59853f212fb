#pragma once

#include "LogEntry.h"

#include <QString>

namespace quarry::viewer {

// Asks the operator for the condition of the log as a host does: a new
// CQuarry, showComplex with the log type, the code lists (read already),
// the lengths and the flags, or showComplexEx. "" when the operator
// cancelled. Errors of the component reach the caller as QuarryError.
QString askCondition(const LogEntry &entry);

} // namespace quarry::viewer
