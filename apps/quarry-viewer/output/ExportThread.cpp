#include "ExportThread.h"

#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <memory>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

constexpr auto TellEvery = std::chrono::milliseconds(40);

} // namespace

QString runBeside(const std::function<QString(const Progress &)> &work, const Progress &progress)
{
    std::atomic<qint64> done = 0;
    std::atomic<bool> stopped = false;
    QString answer;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        answer = work([&](qint64 steps) {
            done.store(steps, std::memory_order_relaxed);
            return !stopped.load(std::memory_order_relaxed);
        });
    }));
    thread->setObjectName(u"quarry-export-file"_s);
    QEventLoop loop;
    QObject::connect(thread.get(), &QThread::finished, &loop, &QEventLoop::quit);
    QTimer ticks;
    ticks.setInterval(TellEvery);
    QObject::connect(&ticks, &QTimer::timeout, &loop, [&] {
        if (progress && !stopped && !progress(done.load(std::memory_order_relaxed)))
            stopped = true;
    });
    thread->start();
    ticks.start();
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    thread->wait();
    return answer;
}

} // namespace quarry::viewer
