#pragma once

#include <quarry/quarry_export.h>

class QWidget;

// Enter and the arrow keys walk a dialog's fields in tab order.
namespace quarry {

// Focus the next push button, combo box, masked box or line edit after the
// dialog's focused control in tab order that is enabled and visible. Nothing
// happens after the last one: the focus does not wrap round.
QUARRY_EXPORT void FocusNextControl(QWidget *dialog);
// The same backwards, stopping at the first control.
QUARRY_EXPORT void FocusPreviousControl(QWidget *dialog);

} // namespace quarry
