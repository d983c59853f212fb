#pragma once

#include <quarry/quarry_export.h>

#include <QString>

class QWidget;

// The message boxes of the condition dialogs, modal to the dialog that shows
// them and captioned "提示信息", but for the plain ones.
namespace quarry {

// A validation failure: exclamation icon, OK.
QUARRY_EXPORT void warnOperator(QWidget *dialog, const QString &text);
// Information icon, OK.
QUARRY_EXPORT void informOperator(QWidget *dialog, const QString &text);
// No icon, OK, and the component's name as the caption, as the old dialogs
// showed some of their messages.
QUARRY_EXPORT void tellOperator(QWidget *dialog, const QString &text);
// Question icon, Yes and No with No as the default; true on Yes.
QUARRY_EXPORT bool askOperator(QWidget *dialog, const QString &text);
// Question icon, Yes, No and Cancel; true on Yes only.
QUARRY_EXPORT bool confirmOperator(QWidget *dialog, const QString &text);

} // namespace quarry
