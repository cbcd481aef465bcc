// SPDX-License-Identifier: GPL-3.0-or-later
// usage: play_probe COUNT
// Switches between the featured channels, whose addresses are resolved beforehand, in the real
// player window. Every third switch goes to the last of them, whose server is meant never to
// answer. Prints a line for each switch: "played" or "waited", the longest time for which the main
// thread did not respond, and the time to the picture, both in milliseconds.
#include "app/AppDelegate.h"
#include "app/Collaborators.h"
#include "app/Services.h"
#include "platform/media/MpvInstance.h"
#include "platform/media/VideoView.h"
#include "platform/system/Memory.h"
#include "state/AppNotification.h"
#include "ui/player/PlayerWindow.h"

#include <QApplication>
#include <QCoroTimer>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <stop_token>
#include <thread>
#include <tuple>
#include <utility>

using namespace orvane;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Steady = std::chrono::steady_clock;

constexpr auto pollInterval = 1ms;
/// The time after which the user leaves a channel that does not play.
constexpr auto leaveAfter = 50ms;
constexpr auto pictureTimeout = 30s;

/// Posts to the main thread at an interval, from a thread of its own, and keeps the longest time
/// until it responded. Created, read and destroyed on the main thread.
class Heartbeat {
public:
    Heartbeat() : m_thread([this](const std::stop_token& stop) { run(stop); }) {}
    ~Heartbeat() {
        // The thread uses the other members.
        m_thread.request_stop();
        m_thread.join();
    }
    Heartbeat(const Heartbeat&) = delete;
    Heartbeat& operator=(const Heartbeat&) = delete;

    /// Returns the longest response time since the last call in milliseconds.
    [[nodiscard]] double takeLongest() {
        const auto longest = std::exchange(m_longest, Steady::duration::zero());
        return std::chrono::duration<double, std::milli>(longest).count();
    }

private:
    void run(const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            m_hasResponded = false;
            QMetaObject::invokeMethod(
                &m_receiver, [this, posted = Steady::now()] { respond(posted); },
                Qt::QueuedConnection);
            do
                std::this_thread::sleep_for(pollInterval);
            while (!m_hasResponded && !stop.stop_requested());
        }
    }

    void respond(Steady::time_point posted) {
        m_longest = std::max(m_longest, Steady::now() - posted);
        m_hasResponded = true;
    }

    QObject m_receiver;
    Steady::duration m_longest{};
    std::atomic<bool> m_hasResponded{false};
    std::jthread m_thread;
};

/// Switches and waits for the picture, at most for `wait`. Returns false if the channel failed.
QCoro::Task<bool> switchTo(Services& services, Channel channel, std::chrono::milliseconds wait) {
    QTimer timeout;
    timeout.setSingleShot(true);
    bool failed = false;
    using namespace AppNotification;
    const auto shown = services.notifications.addObserver(streamResolved,
                                                          [&](const auto&) { timeout.start(0ms); });
    const auto refused =
        services.notifications.addObserver(streamError, [&](const QString& message) {
            std::fprintf(stderr, "%s\n", qUtf8Printable(message));
            failed = true;
            timeout.start(0ms);
        });
    timeout.start(wait);
    services.player.play(channel);
    co_await timeout;
    co_return !failed;
}

QCoro::Task<bool> learnAddresses(Services& services, QList<Channel> channels) {
    const std::stop_source never;
    for (const Channel& channel : channels) {
        const Resolution resolution = services.state.resolution();
        const std::stop_token stop = never.get_token();
        const StreamResolver::Result address =
            co_await services.resolver.resolve(channel, resolution, stop);
        if (!address)
            co_return false;
    }
    co_return true;
}

QCoro::Task<bool> switchThrough(Services& services, int count) {
    QList<Channel> channels = services.registry.featured();
    const bool isReady = co_await learnAddresses(services, channels);
    if (!isReady)
        co_return false;
    const Channel silent = channels.takeLast();
    Heartbeat heartbeat;
    for (int i = 1; i <= count; ++i) {
        const bool waits = i % 3 == 0;
        const Channel channel = waits ? silent : channels.at(i % channels.size());
        const std::chrono::milliseconds wait = waits ? leaveAfter : pictureTimeout;
        QElapsedTimer timer;
        timer.start();
        std::ignore = heartbeat.takeLongest();
        const bool played = co_await switchTo(services, channel, wait);
        if (!played)
            co_return false;
        const double stall = heartbeat.takeLongest();
        std::printf("%s %.1f %lld\n", waits ? "waited" : "played", stall,
                    static_cast<long long>(timer.elapsed()));
        std::fflush(stdout);
    }
    co_return true;
}

QCoro::Task<> run(Services& services, int count, int& exitCode) {
    const bool succeeded = co_await switchThrough(services, count);
    exitCode = succeeded ? 0 : 1;
    services.player.stop();
    co_await services.tasks.join();
    co_await services.teardown.empty();
    // Not quit(): that asks the window first, which refuses to close.
    QCoreApplication::exit(0);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: play_probe COUNT\n", stderr);
        return 2;
    }
    limitMemoryArenas();
    const QApplication application(argc, argv);
    useNumericCLocale();
    const QTemporaryDir folder;
    const Environment environment = Environment::read();
    Services services(environment, folder.filePath(u"preferences.json"_s),
                      chooseVideoOutput(environment.videoOutput));
    AppDelegate delegate(appDelegateCollaborators(services));
    PlayerWindow window(playerWindowCollaborators(services, delegate, {}));
    window.show();
    int exitCode = 1;
    run(services, QByteArray(argv[1]).toInt(), exitCode);
    QApplication::exec();
    return exitCode;
}
