// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/TerminationSignals.h"

#include "base/FileDescriptor.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>

namespace orvane {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

// Globals, because a signal handler has no context.
FileDescriptor readEnd;
FileDescriptor writeEnd;

void writeToPipe(int number) {
    const char byte = static_cast<char>(number);
    [[maybe_unused]] const ssize_t written = ::write(writeEnd.get(), &byte, 1);
}

int openPipe() {
    std::array<int, 2> ends{};
    if (!readEnd.isOpen()) {
        if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
            qFatal("orvane: no pipe for signals");
        readEnd = FileDescriptor(ends[0]);
        writeEnd = FileDescriptor(ends[1]);
    }
    return readEnd.get();
}

void setHandlers(void (*handler)(int)) {
    struct sigaction action{};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int number : handledSignals)
        ::sigaction(number, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent), m_notifier(openPipe(), QSocketNotifier::Read) {
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes{};
        while (::read(readEnd.get(), bytes.data(), bytes.size()) > 0) {
        }
        Q_EMIT received();
    });
    setHandlers(writeToPipe);
}

TerminationSignals::~TerminationSignals() {
    setHandlers(SIG_DFL);
}

} // namespace orvane
