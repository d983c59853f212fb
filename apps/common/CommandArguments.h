#pragma once

#include <QStringList>

namespace quarry::apps {

// The command line, the program's name first, read before the
// QApplication exists: --help, --version and bad arguments are then
// answered on a machine without a display too.
QStringList commandArguments(int argc, char *argv[]);

} // namespace quarry::apps
