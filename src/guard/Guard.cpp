// SPDX-License-Identifier: GPL-3.0-or-later
// Stands between the program and a tool that it starts: becomes the parent of everything the tool
// starts, directly or not, also in sessions of its own, and kills what is left when the tool has
// ended, when it is told to, or when the program is gone, however that ended. Leaves with the
// status of the tool. The process that becomes the guard has asked the kernel for orphans and for a
// signal at the end of the program; both settings outlive exec.
#include "base/GuardProtocol.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>

using namespace orvane;

namespace {

constexpr int notStarted = 127;
enum Argument { reportArgument = 1, folderArgument, toolArgument };

/// Sends SIGKILL to the children of this process; returns whether one of them got it.
bool killChildren() {
    const int file = ::open("/proc/thread-self/children", O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    bool isAny = false;
    pid_t pid = 0;
    std::array<char, 512> text{};
    for (ssize_t size = 0; (size = ::read(file, text.data(), text.size())) > 0;) {
        for (ssize_t i = 0; i < size; ++i) {
            const char c = text[static_cast<std::size_t>(i)];
            if (c >= '0' && c <= '9') {
                pid = pid * 10 + (c - '0');
                continue;
            }
            isAny = (pid > 0 && ::kill(pid, SIGKILL) == 0) || isAny;
            pid = 0;
        }
    }
    ::close(file);
    return isAny;
}

/// Orphans become children of this process, so that this reaches every generation.
void killDescendants() {
    while (killChildren() && ::waitpid(-1, nullptr, 0) > 0) {
    }
}

[[noreturn]] void leaveLike(int status) {
    if (WIFEXITED(status))
        ::_exit(WEXITSTATUS(status));
    const int number = WTERMSIG(status);
    sigset_t one;
    ::sigemptyset(&one);
    ::sigaddset(&one, number);
    ::signal(number, SIG_DFL);
    ::kill(::getpid(), number);
    ::sigprocmask(SIG_UNBLOCK, &one, nullptr);
    ::_exit(notStarted);
}

bool isPending(int number) {
    sigset_t pending;
    ::sigemptyset(&pending);
    ::sigpending(&pending);
    return ::sigismember(&pending, number) == 1;
}

[[noreturn]] void becomeTool(char** arguments, pid_t guard, int report) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != guard)
        ::_exit(notStarted);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::execv(arguments[0], arguments);
    const GuardProtocol::Report error = errno;
    [[maybe_unused]] const ssize_t written = ::write(report, &error, sizeof error);
    ::_exit(notStarted);
}

/// Collects what has ended; returns whether the tool is among it.
bool collect(pid_t tool, int& status) {
    int ended = 0;
    for (pid_t pid = 0; (pid = ::waitpid(-1, &ended, WNOHANG)) > 0;) {
        if (pid == tool) {
            status = ended;
            return true;
        }
    }
    return false;
}

/// Returns the tool's status.
int watch(pid_t tool) {
    sigset_t awaited;
    ::sigemptyset(&awaited);
    ::sigaddset(&awaited, SIGCHLD);
    ::sigaddset(&awaited, GuardProtocol::killSignal);
    int status = SIGKILL;
    while (!collect(tool, status)) {
        if (::sigwaitinfo(&awaited, nullptr) == GuardProtocol::killSignal)
            break;
    }
    return status;
}

/// In a list of processes, the tool appears once.
void hideArguments(int count, char** arguments) {
    char* const begin = arguments[1];
    char* const end = arguments[count - 1] + std::strlen(arguments[count - 1]);
    std::memset(begin, 0, static_cast<std::size_t>(end - begin));
}

} // namespace

int main(int argc, char** argv) {
    if (argc <= toolArgument)
        return notStarted;
    sigset_t all;
    ::sigfillset(&all);
    ::sigprocmask(SIG_SETMASK, &all, nullptr);
    const int report = std::atoi(argv[reportArgument]);
    ::fcntl(report, F_SETFD, FD_CLOEXEC);
    const std::array<char, 4096> folder = [&] {
        std::array<char, 4096> copy{};
        std::strncpy(copy.data(), argv[folderArgument], copy.size() - 1);
        return copy;
    }();
    // The program may have changed its mind already.
    if (isPending(SIGTERM))
        leaveLike(SIGTERM);
    const pid_t self = ::getpid();
    const pid_t tool = ::fork();
    if (tool == 0)
        becomeTool(argv + toolArgument, self, report);
    if (tool < 0) {
        const GuardProtocol::Report error = errno;
        [[maybe_unused]] const ssize_t written = ::write(report, &error, sizeof error);
        ::_exit(notStarted);
    }
    // What the program waits for must end with the tool, not with the guard.
    ::close_range(0, std::numeric_limits<unsigned>::max(), 0);
    hideArguments(argc, argv);
    const int status = watch(tool);
    killDescendants();
    ::rmdir(folder.data());
    leaveLike(status);
}
