#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace quarry::apps {

// --help and --version, the same in every program: answered from the
// command line alone, before a QApplication, a bus connection or the
// station is touched, so that they work on any machine.

// The two options' lines for a usage text's "选项：" list.
QString standardOptionLines();

// The exit status 0, after printing usage or "PROGRAM VERSION" on standard
// output, when the arguments after the program's name ask for -h, --help,
// -v or --version; nullopt otherwise.
std::optional<int> answerHelpOrVersion(const QStringList &arguments, const QString &usage);

} // namespace quarry::apps
