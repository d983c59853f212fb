#include "input/KeyConventions.h"

#include <QKeyEvent>

namespace quarry {

bool isEnterKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool isKeypadMultiply(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Asterisk && event.modifiers().testFlag(Qt::KeypadModifier);
}

bool isCancelKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Escape || isKeypadMultiply(event);
}

} // namespace quarry
