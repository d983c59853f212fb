#pragma once

#include <quarry/quarry_export.h>

#include <QString>

namespace quarry {

// Tells the operator something that needs no answer: a modal information box
// when the host runs a QApplication, a line on standard error otherwise, so a
// program without a display never blocks on a box nobody can see.
QUARRY_EXPORT void showSystemMessage(const QString &caption, const QString &text);

} // namespace quarry
