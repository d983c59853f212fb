#include "ExportProgress.h"

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
    return [&dialog, per](qint64 done) {
        dialog.setValue(int(done / per));
        return !dialog.wasCanceled();
    };
}

} // namespace quarry::viewer
