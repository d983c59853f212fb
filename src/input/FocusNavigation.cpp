#include "input/FocusNavigation.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>

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

void moveFocus(QWidget *dialog, int step)
{
    const QList<QWidget *> controls = controlsInTabOrder(dialog);
    const qsizetype current = controls.indexOf(controlOf(dialog->focusWidget()));
    if (current < 0)
        return;
    for (qsizetype i = current + step; i >= 0 && i < controls.size(); i += step) {
        if (takesFocusFromKeys(controls[i])) {
            controls[i]->setFocus(step > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return;
        }
    }
}

} // namespace

void FocusNextControl(QWidget *dialog)
{
    moveFocus(dialog, 1);
}

void FocusPreviousControl(QWidget *dialog)
{
    moveFocus(dialog, -1);
}

} // namespace quarry
