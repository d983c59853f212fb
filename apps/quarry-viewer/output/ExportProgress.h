#pragma once

#include <QString>

#include <functional>

class QProgressDialog;

namespace quarry::viewer {

// Shows in dialog (modal to its window, once the work has taken half a
// second) how far a work of `steps` steps has come, under label, with a
// button that stops it. The callback, told the steps done, says whether to
// go on. A work of 0 steps (not known yet) shows the steps done instead.
std::function<bool(qint64)> showProgress(QProgressDialog &dialog, const QString &label,
                                         qint64 steps);

} // namespace quarry::viewer
