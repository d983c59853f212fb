#pragma once

#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

namespace quarry::test {

// Acts on the next modal window that opens while the watch lives, such as
// the dialog a CQuarry operation shows or a message box over that dialog.
// Create it before the call that opens the window (the call blocks until
// the window closes); the action must close the window.
class ModalWatch : public QObject
{
public:
    // Ignores `except` (the dialog under a message box) and acts once, or
    // on each modal window in turn with `every`.
    ModalWatch(QWidget *except, std::function<void(QWidget *)> action, bool every = false);

    bool fired() const { return m_fired; }

private:
    void poll();

    QWidget *m_except;
    std::function<void(QWidget *)> m_action;
    QTimer m_timer;
    bool m_fired = false;
    bool m_every;
};

// What a message box showed.
struct BoxSeen
{
    bool shown = false;
    QString caption;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QStringList buttonTexts;
};

// An action for ModalWatch that records a message box in *seen and answers
// it with `answer` (its default button when it has no such button).
std::function<void(QWidget *)> answerBox(QMessageBox::StandardButton answer, BoxSeen *seen);

} // namespace quarry::test
