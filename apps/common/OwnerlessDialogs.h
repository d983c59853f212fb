#pragma once

#include <QObject>

class QWindow;

namespace quarry::apps {

// Watches the dialogs that CQuarry opens: top-level dialogs with no owner
// widget. Each is made transient for the host's window, when one is set, as
// it is shown, so that the window manager keeps it over the host's window;
// on X11 it opens centred over that window.
// Message boxes over such a dialog have the dialog as their owner and are
// left alone.
class OwnerlessDialogs : public QObject
{
public:
    // Watches every widget of the application while it lives.
    explicit OwnerlessDialogs(QObject *parent = nullptr);

    // nullptr for none; the window must outlive the dialogs shown over it.
    void setHostWindow(QWindow *window) { m_hostWindow = window; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWindow *m_hostWindow = nullptr;
};

} // namespace quarry::apps
