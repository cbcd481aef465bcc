// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/Resources.h"

#include "language/Translation.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace orvane::Resources {

using namespace Qt::StringLiterals;

namespace {

/// A channel that plays takes about 30 files, switches take more for a while.
constexpr rlim_t leastFiles = 64;
constexpr rlim_t enoughFiles = 1024;
/// A channel that plays takes about 17 threads, a switch half as many more for a while.
constexpr int leastThreads = 24;
constexpr std::size_t stackSize = 64UL * 1024;

/// Threads that exist at the same time, and do nothing.
class Crowd {
public:
    Crowd() = default;
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;
    ~Crowd() {
        {
            const std::scoped_lock lock(m_mutex);
            m_isOver = true;
        }
        m_end.notify_all();
        for (const pthread_t thread : m_threads)
            ::pthread_join(thread, nullptr);
    }

    bool add() {
        pthread_attr_t attributes;
        ::pthread_attr_init(&attributes);
        ::pthread_attr_setstacksize(&attributes, stackSize);
        pthread_t thread{};
        const bool isStarted = ::pthread_create(&thread, &attributes, wait, this) == 0;
        ::pthread_attr_destroy(&attributes);
        if (isStarted)
            m_threads.push_back(thread);
        return isStarted;
    }
    [[nodiscard]] std::size_t size() const { return m_threads.size(); }

private:
    static void* wait(void* crowd) {
        auto* const self = static_cast<Crowd*>(crowd);
        std::unique_lock lock(self->m_mutex);
        self->m_end.wait(lock, [self] { return self->m_isOver; });
        return nullptr;
    }

    std::mutex m_mutex;
    std::condition_variable m_end;
    bool m_isOver = false;
    std::vector<pthread_t> m_threads;
};

/// Returns how many threads can be started, up to `wanted`.
int startableThreads(int wanted) {
    Crowd crowd;
    while (static_cast<int>(crowd.size()) < wanted && crowd.add()) {
    }
    return static_cast<int>(crowd.size());
}

rlim_t raiseFileLimit() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return enoughFiles;
    if (limit.rlim_cur < enoughFiles) {
        limit.rlim_cur = std::min(enoughFiles, limit.rlim_max);
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    return limit.rlim_cur;
}

} // namespace

std::optional<QString> missing() {
    if (const rlim_t files = raiseFileLimit(); files < leastFiles)
        return translated(
                   "CommandLine",
                   "only %1 files may be open at the same time, and Orvane needs %2 (ulimit -n)")
            .arg(localNumber(static_cast<qint64>(files)))
            .arg(localNumber(static_cast<qint64>(leastFiles)));
    if (const int threads = startableThreads(leastThreads); threads < leastThreads)
        return translated("CommandLine",
                          "only %1 more threads can be started, and Orvane needs %2 (ulimit -u)")
            .arg(localNumber(threads))
            .arg(localNumber(leastThreads));
    return std::nullopt;
}

} // namespace orvane::Resources
