// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/TerminationSignals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>

namespace orvane {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

// A handler can reach nothing else; both ends stay open for the life of the process.
std::array<int, 2> pipeEnds{-1, -1};

void writeToPipe(int number) {
    const char byte = static_cast<char>(number);
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1);
}

int openPipe() {
    if (pipeEnds[0] < 0 && ::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("orvane: no pipe for signals");
    return pipeEnds[0];
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
        while (::read(pipeEnds[0], bytes.data(), bytes.size()) > 0) {
        }
        Q_EMIT received();
    });
    setHandlers(writeToPipe);
}

TerminationSignals::~TerminationSignals() {
    setHandlers(SIG_DFL);
}

} // namespace orvane
