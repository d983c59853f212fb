#pragma once

#include <QString>

class QWidget;

namespace quarry::viewer {

class LogReport;

// The report in Qt's print preview, from where it is printed. Drawing its
// pages shows its progress and can be stopped: the preview then shows the
// pages drawn so far (none when stopped before the first), and says so in
// its title.
void previewReport(const LogReport &report, const QString &title, QWidget *parent);

} // namespace quarry::viewer
