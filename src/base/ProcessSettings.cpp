// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ProcessSettings.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>

namespace orvane::ProcessSettings {

namespace {

constexpr mode_t ownMask = S_IRWXG | S_IRWXO;

/// What the user has set; nullopt as long as that holds.
struct Users {
    mode_t mask = 0;
    rlimit memoryImage{};
};
std::optional<Users> users;

void openStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // The lowest free number is that of the stream.
        if (::fcntl(stream, F_GETFD) < 0)
            ::open("/dev/null", O_RDWR);
    }
}

void failInsteadOfEnding(int signalNumber) {
    struct sigaction action{};
    // Not SIG_IGN, which children would inherit.
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    ::sigaction(signalNumber, &action, nullptr);
}

void set(mode_t mask, rlim_t memoryImage, rlim_t atMost) {
    ::umask(mask);
    const rlimit limit{.rlim_cur = memoryImage, .rlim_max = atMost};
    ::setrlimit(RLIMIT_CORE, &limit);
}

} // namespace

void apply() {
    openStandardStreams();
    failInsteadOfEnding(SIGPIPE);
    failInsteadOfEnding(SIGXFSZ);
    Users& before = users.emplace();
    ::getrlimit(RLIMIT_CORE, &before.memoryImage);
    before.mask = ::umask(ownMask);
    set(ownMask, 0, before.memoryImage.rlim_max);
}

mode_t usersMask() {
    if (users)
        return users->mask;
    const mode_t mask = ::umask(ownMask);
    ::umask(mask);
    return mask;
}

UsersOwn::UsersOwn() {
    if (users)
        set(users->mask, users->memoryImage.rlim_cur, users->memoryImage.rlim_max);
}

UsersOwn::~UsersOwn() {
    if (users)
        set(ownMask, 0, users->memoryImage.rlim_max);
}

} // namespace orvane::ProcessSettings
