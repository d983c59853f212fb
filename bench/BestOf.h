#pragma once

#include <QElapsedTimer>

#include <algorithm>
#include <functional>
#include <limits>

namespace quarry::bench {

// The best of `runs` runs, in milliseconds: the one least disturbed by the
// rest of the machine.
inline double bestOf(int runs, const std::function<void()> &run)
{
    qint64 best = std::numeric_limits<qint64>::max();
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        run();
        best = std::min(best, timer.nsecsElapsed());
    }
    return double(best) / 1e6;
}

} // namespace quarry::bench
