#pragma once

#include <QString>

#include <functional>

class QProgressDialog;

namespace quarry::viewer {

// Shows in dialog (modal to its window, once the work has taken half a
// second) how far a work of `steps` steps has come, under label, with a
// button that stops it. The callback, told the steps done, says whether to
// go on.
std::function<bool(qint64)> showProgress(QProgressDialog &dialog, const QString &label,
                                         qint64 steps);

} // namespace quarry::viewer
