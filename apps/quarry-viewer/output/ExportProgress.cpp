#include "ExportProgress.h"

#include <QCoreApplication>
#include <QProgressDialog>

#include <algorithm>
#include <climits>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

std::function<bool(qint64)> showProgress(QProgressDialog &dialog, const QString &label,
                                         qint64 steps)
{
    // The dialog counts in int: a longer work is shown in larger steps.
    const qint64 per = std::max<qint64>(1, steps / INT_MAX + 1);
    dialog.setLabelText(label);
    dialog.setCancelButtonText(u"取消"_s);
    dialog.setRange(0, int(steps / per));
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setMinimumDuration(500);
    return [&dialog, per, label, steps](qint64 done) {
        if (steps == 0)
            dialog.setLabelText(u"%1（已写 %2 行）"_s.arg(label).arg(done));
        dialog.setValue(int(done / per));
        // The dialog hears Cancel only when its value moves; a database
        // that sorts before its first row moves nothing.
        if (dialog.isVisible())
            QCoreApplication::processEvents();
        return !dialog.wasCanceled();
    };
}

} // namespace quarry::viewer
