#include "ModalWatch.h"

#include <QPushButton>
#include <QApplication>
#include <QDialog>

namespace quarry::test {

ModalWatch::ModalWatch(QWidget *except, std::function<void(QWidget *)> action, bool every)
    : m_except(except)
    , m_action(std::move(action))
    , m_every(every)
{
    m_timer.setInterval(5);
    connect(&m_timer, &QTimer::timeout, this, &ModalWatch::poll);
    m_timer.start();
}

void ModalWatch::poll()
{
    QWidget *modal = QApplication::activeModalWidget();
    if (!modal || modal == m_except || !modal->isVisible())
        return;
    m_timer.stop();
    m_fired = true;
    m_action(modal);
    // Whatever the action left open is closed, so a failing test never
    // leaves the operation blocked.
    if (auto *dialog = qobject_cast<QDialog *>(modal); dialog && dialog->isVisible())
        dialog->reject();
    if (m_every)
        m_timer.start();
}

std::function<void(QWidget *)> answerBox(QMessageBox::StandardButton answer, BoxSeen *seen)
{
    return [answer, seen](QWidget *modal) {
        auto *box = qobject_cast<QMessageBox *>(modal);
        if (!box)
            return;
        seen->shown = true;
        seen->caption = box->windowTitle();
        seen->text = box->text();
        seen->icon = box->icon();
        seen->buttons = box->standardButtons();
        seen->defaultButton = box->standardButton(box->defaultButton());
        const QList<QAbstractButton *> buttons = box->buttons();
        for (const QAbstractButton *button : buttons)
            seen->buttonTexts.append(button->text());
        QAbstractButton *button = box->button(answer);
        if (!button)
            button = box->defaultButton();
        button->click();
    };
}

} // namespace quarry::test
