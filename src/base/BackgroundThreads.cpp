// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/BackgroundThreads.h"

#include "base/Logging.h"

#include <system_error>

namespace orvane {

BackgroundThreads::BackgroundThreads(std::size_t limit) : m_limit(limit) {}

BackgroundThreads::~BackgroundThreads() {
    waitForDone();
}

void BackgroundThreads::start(std::function<void()> function) {
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back(std::move(function));
    m_ended.clear();
    if (m_threads.size() < m_limit)
        addThread();
}

void BackgroundThreads::addThread() {
    const auto thread = m_threads.emplace(m_threads.end());
    try {
        *thread = std::jthread([this, thread] {
            std::unique_lock lock(m_mutex);
            work(lock);
            m_ended.splice(m_ended.end(), m_threads, thread);
            m_threadEnded.notify_all();
        });
    } catch (const std::system_error& error) {
        m_threads.erase(thread);
        qCWarning(logProcess, "no thread: %s", error.what());
    }
}

void BackgroundThreads::waitForDone() {
    std::unique_lock lock(m_mutex);
    m_threadEnded.wait(lock, [this] { return m_threads.empty(); });
    work(lock);
    m_ended.clear();
}

void BackgroundThreads::work(std::unique_lock<std::mutex>& lock) {
    while (!m_waiting.empty()) {
        const std::function<void()> function = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        function();
        lock.lock();
    }
}

} // namespace orvane
