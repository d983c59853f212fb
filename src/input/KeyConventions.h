#pragma once

#include <quarry/quarry_export.h>

class QKeyEvent;

// The keys every condition dialog reads alike.
namespace quarry {

// Return on the main keyboard or Enter on the keypad.
QUARRY_EXPORT bool isEnterKey(const QKeyEvent &event);
// Esc, or the keypad's multiply key, which operators use to cancel. The "*"
// of the main keyboard is not a cancel key: it types the wildcard.
QUARRY_EXPORT bool isCancelKey(const QKeyEvent &event);

} // namespace quarry
