#include "OwnerlessDialogs.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QWindow>

namespace quarry::apps {

OwnerlessDialogs::OwnerlessDialogs(QObject *parent)
    : QObject(parent)
{
    qApp->installEventFilter(this);
}

bool OwnerlessDialogs::eventFilter(QObject *watched, QEvent *event)
{
    // The show event comes after the native window is made and before it is
    // mapped, which is when X11 reads WM_TRANSIENT_FOR.
    if (event->type() != QEvent::Show)
        return false;
    auto *dialog = qobject_cast<QDialog *>(watched);
    if (!dialog || !dialog->isWindow() || dialog->parentWidget())
        return false;
    ++m_shownCount;
    m_lastShown = dialog;
    if (m_hostWindow && dialog->windowHandle())
        dialog->windowHandle()->setTransientParent(m_hostWindow);
    return false;
}

} // namespace quarry::apps
