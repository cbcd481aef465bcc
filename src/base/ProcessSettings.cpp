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

void useOwn(const Users& before) {
    ::umask(ownMask);
    const rlimit none{.rlim_cur = 0, .rlim_max = before.memoryImage.rlim_max};
    ::setrlimit(RLIMIT_CORE, &none);
}

} // namespace

void apply() {
    openStandardStreams();
    failInsteadOfEnding(SIGPIPE);
    failInsteadOfEnding(SIGXFSZ);
    Users before{.mask = ::umask(ownMask)};
    ::getrlimit(RLIMIT_CORE, &before.memoryImage);
    useOwn(before);
    users = before;
}

mode_t usersMask() {
    if (users)
        return users->mask;
    const mode_t mask = ::umask(ownMask);
    ::umask(mask);
    return mask;
}

UsersOwn::UsersOwn() {
    if (!users)
        return;
    ::umask(users->mask);
    ::setrlimit(RLIMIT_CORE, &users->memoryImage);
}

UsersOwn::~UsersOwn() {
    if (users)
        useOwn(*users);
}

} // namespace orvane::ProcessSettings
