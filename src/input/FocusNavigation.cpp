#include "input/FocusNavigation.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>

#include <algorithm>

namespace quarry {

namespace {

// The control a focus widget belongs to: the line edit inside an editable
// combo box stands for the combo box.
QWidget *controlOf(QWidget *widget)
{
    if (widget && qobject_cast<QComboBox *>(widget->parentWidget()))
        return widget->parentWidget();
    return widget;
}

// Check boxes, labels and the like are passed over.
bool takesFocusFromKeys(QWidget *widget)
{
    const bool fieldKind = qobject_cast<QPushButton *>(widget) || qobject_cast<QComboBox *>(widget)
        || qobject_cast<QLineEdit *>(widget);
    return fieldKind && widget->isEnabled() && widget->isVisible();
}

// The dialog's controls in tab order, starting after the dialog itself.
QList<QWidget *> controlsInTabOrder(QWidget *dialog)
{
    QList<QWidget *> controls;
    for (QWidget *w = dialog->nextInFocusChain(); w && w != dialog; w = w->nextInFocusChain()) {
        if (dialog->isAncestorOf(w) && controlOf(w) == w)
            controls.append(w);
    }
    return controls;
}

// The next control after the focus one that keys may move to, in tab order
// or against it.
void moveFocus(QWidget *dialog, bool forward)
{
    QList<QWidget *> controls = controlsInTabOrder(dialog);
    if (!forward)
        std::reverse(controls.begin(), controls.end());
    const auto current
        = std::find(controls.cbegin(), controls.cend(), controlOf(dialog->focusWidget()));
    if (current == controls.cend())
        return;
    const auto next = std::find_if(current + 1, controls.cend(), takesFocusFromKeys);
    if (next != controls.cend())
        (*next)->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

} // namespace

void FocusNextControl(QWidget *dialog)
{
    moveFocus(dialog, true);
}

void FocusPreviousControl(QWidget *dialog)
{
    moveFocus(dialog, false);
}

} // namespace quarry
