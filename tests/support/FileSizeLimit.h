// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace orvane::test {

/// Limits the size of the files this process writes while it lives, to simulate a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t limit) : m_previousHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_previous);
        const rlimit full{.rlim_cur = limit, .rlim_max = m_previous.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_previousHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*m_previousHandler)(int);
    rlimit m_previous{};
};

} // namespace orvane::test
