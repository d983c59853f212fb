#pragma once

#include "ModalWatch.h"

#include <QMessageBox>
#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace quarry::test {

// seal.ini in folder for bank profile `mode` ("" for the default) and
// QueryHintMode, and $QUARRY_SYSTEM_DIR pointed at folder, so that the next
// configuration object reads it. The double-seal quota is set, so that
// reading it needs no database.
void writeSealIni(const QString &folder, const QString &mode, int queryHintMode);

// One operator step in a dialog: "Name=text" types into a box (or an
// editable list) from its start, "=text" into the box that has the focus,
// "Name^text" pastes text into a box with Ctrl+V, "Name" puts the focus
// there, "Name!" clicks it, "Name~" presses the space bar on it (ticks a
// check box whatever its row stretches to), "Name#n" presses Down n + 1
// times in a list, "Name@n" clicks entry n of a list's popup, the focus
// staying where it is, and Return, PadEnter, Up, Down, Esc or Pad* press
// that key where the focus is.
void step(QWidget *dialog, const QString &action);

// What the operator saw of a dialog.
struct Outcome
{
    bool shown = false;
    QString dialog; // its name; "" unless it was modal and had no owner
    BoxSeen box;    // the message box over it, if any
    // After the last step: the focused control ("closed" when the dialog
    // had closed), and the text of the labels that describe a code or give
    // a hint, where they show any.
    QString after;
};

// Runs call, which is to show a modal dialog, takes the steps in it and
// answers a message box with answer; inspect looks at the dialog after the
// last step. Whatever is left open is closed.
Outcome operate(const std::function<void()> &call, const QStringList &steps,
                QMessageBox::StandardButton answer = QMessageBox::Ok,
                const std::function<void(QWidget *)> &inspect = {});

} // namespace quarry::test
