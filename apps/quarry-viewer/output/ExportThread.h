#pragma once

#include <QString>

#include <functional>

namespace quarry::viewer {

// Told the steps done; says whether to go on.
using Progress = std::function<bool(qint64)>;

// Runs work on a thread of its own and returns its answer, while this
// thread goes on with its events (all but the user's input, which progress
// may take, as a progress dialog does) so that a window stays drawn. Every
// few hundredths of a second progress is told, on this thread, the steps
// that work told its own callback; once progress says no, that callback
// says no too.
QString runBeside(const std::function<QString(const Progress &)> &work, const Progress &progress);

} // namespace quarry::viewer
