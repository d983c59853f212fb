#include "input/KeyConventions.h"

#include <QKeyEvent>

namespace quarry {

bool isEnterKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool isCancelKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Escape
        || (event.key() == Qt::Key_Asterisk && event.modifiers().testFlag(Qt::KeypadModifier));
}

} // namespace quarry
