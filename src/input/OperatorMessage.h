#pragma once

#include <quarry/quarry_export.h>

#include <QString>

class QWidget;

// The message boxes of the condition dialogs, all captioned "提示信息" and
// modal to the dialog that shows them.
namespace quarry {

// A validation failure: exclamation icon, OK.
QUARRY_EXPORT void warnOperator(QWidget *dialog, const QString &text);
// Information icon, OK.
QUARRY_EXPORT void informOperator(QWidget *dialog, const QString &text);
// Question icon, Yes and No with No as the default; true on Yes.
QUARRY_EXPORT bool askOperator(QWidget *dialog, const QString &text);

} // namespace quarry
