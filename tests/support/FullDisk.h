// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace orvane::test {

/// While it lives, no file of this process can become larger than this many bytes, as if the disk
/// were full.
class FullDisk {
public:
    explicit FullDisk(rlim_t limit) : m_previousHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_previous);
        const rlimit full{.rlim_cur = limit, .rlim_max = m_previous.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_previousHandler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    void (*m_previousHandler)(int);
    rlimit m_previous{};
};

} // namespace orvane::test
