#pragma once

#include <quarry/quarry_export.h>

#include <QString>

class QMessageBox;

namespace quarry {

class QuarryError;

// Gives the box's standard buttons their Chinese texts: the operators read
// Chinese whatever translations the host has loaded, or none.
QUARRY_EXPORT void setChineseButtonTexts(QMessageBox &box);

// Tells the operator something that needs no answer: a modal information box
// when the host runs a QApplication, a line on standard error otherwise, so a
// program without a display never blocks on a box nobody can see.
QUARRY_EXPORT void showSystemMessage(const QString &caption, const QString &text);

// A fault that the configuration classes tell the operator and do not
// raise: "系统提示" and text in a box (see showSystemMessage), and the
// fault, with the number and source of its cause and the box's text, for
// the call under way (FaultWatch).
QUARRY_EXPORT void tellConfigurationFault(const QString &text, const QuarryError &cause);

} // namespace quarry
