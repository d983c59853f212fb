#pragma once

#include <quarry/quarry_export.h>

class QKeyEvent;

// The keys every condition dialog reads alike.
namespace quarry {

// Return on the main keyboard or Enter on the keypad.
QUARRY_EXPORT bool isEnterKey(const QKeyEvent &event);
// The keypad's multiply key. The "*" of the main keyboard is another key:
// it types the wildcard.
QUARRY_EXPORT bool isKeypadMultiply(const QKeyEvent &event);
// Esc, or the keypad's multiply key, which operators use to cancel.
QUARRY_EXPORT bool isCancelKey(const QKeyEvent &event);

} // namespace quarry
