// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Clock.h"

#include <QCoroFuture>
#include <QFuture>
#include <QPromise>
#include <QTimer>

#include <ctime>

namespace orvane {

Clock::TimePoint SystemClock::now() const {
    return std::chrono::system_clock::now();
}

std::chrono::milliseconds SystemClock::sinceBoot() const {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

QCoro::Task<> SystemClock::sleep(std::chrono::milliseconds duration, std::stop_token stop) {
    QPromise<void> promise;
    promise.start();
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [&promise] { promise.finish(); });
    timer.start(duration);
    // A zero timeout still goes through the event loop, so a stop never resumes the sleeping
    // coroutine inside the call that requested it.
    const std::stop_callback onStop(stop, [&timer] { timer.start(0); });
    const QFuture<void> slept = promise.future();
    co_await slept;
}

} // namespace orvane
