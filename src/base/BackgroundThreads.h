// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFuture>
#include <QPromise>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <utility>

namespace orvane {

/// Runs what would block: at most `limit` functions at once, begun in the order of their arrival,
/// each on a thread that ends when nothing is left to do. Usable from any thread. The destructor
/// waits for everything that was started. A function that no thread could be had for waits for the
/// next start, or is run by whoever waits for the end.
/// Not QThreadPool: each of its threads opens an event loop, and the program is ended if no file
/// descriptor is left for that.
class BackgroundThreads {
public:
    /// `limit` is at least 1.
    explicit BackgroundThreads(std::size_t limit);
    ~BackgroundThreads();
    BackgroundThreads(const BackgroundThreads&) = delete;
    BackgroundThreads& operator=(const BackgroundThreads&) = delete;

    /// `function` does not throw.
    void start(std::function<void()> function);

    /// Like start(), and passes on what the function returns.
    template <typename Function>
    [[nodiscard]] auto run(Function function) -> QFuture<std::invoke_result_t<Function>> {
        auto promise = std::make_shared<QPromise<std::invoke_result_t<Function>>>();
        promise->start();
        start([promise, function = std::move(function)] {
            promise->addResult(function());
            promise->finish();
        });
        return promise->future();
    }

    void waitForDone();

private:
    using Threads = std::list<std::jthread>;

    void addThread();
    /// Runs on a thread of this object, or of whoever waits for the end.
    void work(std::unique_lock<std::mutex>& lock);

    const std::size_t m_limit;
    std::mutex m_mutex;
    std::condition_variable m_threadEnded;
    std::deque<std::function<void()>> m_waiting; ///< Guarded by m_mutex.
    Threads m_threads;                           ///< Guarded by m_mutex.
    Threads m_ended;                             ///< Guarded by m_mutex.
};

} // namespace orvane
