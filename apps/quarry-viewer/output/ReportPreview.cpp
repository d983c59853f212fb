#include "ReportPreview.h"

#include "LogReport.h"
#include "output/ExportProgress.h"

#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QProgressDialog>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

void previewReport(const LogReport &report, const QString &title, QWidget *parent)
{
    QPrinter printer;
    QPrintPreviewDialog preview(&printer, parent);
    const QString caption = u"打印预览 — %1"_s.arg(title);
    preview.setWindowTitle(caption);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                     [&](QPrinter *device) {
                         QProgressDialog progress(&preview);
                         const bool whole
                             = report.paint(*device,
                                            showProgress(progress, u"正在生成打印预览…"_s,
                                                         report.progressSteps()));
                         preview.setWindowTitle(whole ? caption : caption + u"（已停止）"_s);
                     });
    preview.exec();
}

} // namespace quarry::viewer
