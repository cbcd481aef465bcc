// SPDX-License-Identifier: GPL-3.0-or-later
// Switches fifty times between the featured channels in the real player window, and prints what
// that does to memory and threads. Exits with 0 if neither has grown beyond noise since the tenth
// switch.
#include "app/AppDelegate.h"
#include "app/Services.h"
#include "app/WindowCollaborators.h"
#include "model/AppNotification.h"
#include "platform/Memory.h"
#include "platform/VideoView.h"
#include "ui/PlayerContainerView.h"
#include "ui/PlayerWindow.h"

#include <QApplication>
#include <QCoroTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <vector>

using namespace orvane;
using namespace Qt::StringLiterals;

namespace {

constexpr int switches = 50;
constexpr int groupSize = 10;
/// What buffers that happen to be full or empty make of the mean of ten samples.
#ifdef __SANITIZE_ADDRESS__
constexpr qint64 noiseKiB = 1024 * 1024; // The sanitizer keeps what was freed, on purpose.
#else
constexpr qint64 noiseKiB = 10 * 1024;
#endif

struct Sample {
    qint64 memoryKiB = 0;
    qint64 threads = 0;
};

qint64 number(const QString& path, const QByteArray& label) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(label))
            return line.sliced(label.size()).simplified().split(' ').first().toLongLong();
    }
    return -1;
}

Sample sample() {
    return {.memoryKiB = number(u"/proc/self/smaps_rollup"_s, "Pss:"),
            .threads = number(u"/proc/self/status"_s, "Threads:")};
}

/// Switches once and waits for the picture, then for the old player to be gone.
QCoro::Task<bool> switchTo(Services& services, Channel channel) {
    QTimer patience;
    patience.setSingleShot(true);
    bool failed = false;
    const auto stopWaiting = [&](bool hasFailed) {
        failed = hasFailed;
        patience.start(0);
    };
    using namespace AppNotification;
    const auto shown = services.notifications.addObserver(streamResolved,
                                                          [&](const auto&) { stopWaiting(false); });
    const auto refused = services.notifications.addObserver(streamError, [&](const auto& n) {
        std::printf("switch failed: %s\n", qUtf8Printable(std::any_cast<QString>(n.object)));
        stopWaiting(true);
    });
    failed = true;
    patience.start(std::chrono::seconds(30));
    services.player.play(channel);
    co_await patience;
    co_await services.graveyard.empty();
    co_return !failed;
}

QCoro::Task<> run(Services& services, int& exitCode) {
    const QList<Channel> channels = services.registry.featured();
    std::vector<Sample> groups;
    Sample sum;
    for (int i = 1; i <= switches; ++i) {
        const Channel channel = channels.at(i % channels.size());
        const bool played = co_await switchTo(services, channel);
        if (!played)
            break;
        const Sample now = sample();
        sum.memoryKiB += now.memoryKiB;
        sum.threads = std::max(sum.threads, now.threads);
        if (i % groupSize == 0) {
            const Sample group{.memoryKiB = sum.memoryKiB / groupSize, .threads = sum.threads};
            std::printf("switches to %d: %lld KiB (mean), %lld threads (most)\n", i,
                        static_cast<long long>(group.memoryKiB),
                        static_cast<long long>(group.threads));
            groups.push_back(group);
            sum = {};
        }
    }
    if (groups.size() == switches / groupSize && groups.back().threads <= groups.at(1).threads &&
        groups.back().memoryKiB - groups.at(1).memoryKiB < noiseKiB)
        exitCode = 0;
    services.player.stop();
    co_await services.tasks.join();
    co_await services.graveyard.empty();
    // Not quit: that asks the window first, which never closes by itself.
    QCoreApplication::exit(0);
}

} // namespace

int main(int argc, char** argv) {
    limitMemoryArenas();
    const QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    const QTemporaryDir folder;
    const Environment environment = Environment::read();
    Services services(environment, folder.filePath(u"preferences.json"_s),
                      chooseVideoOutput(environment.videoOutput));
    AppDelegate delegate(services);
    PlayerWindow window(playerWindowCollaborators(services, delegate));
    window.show();
    int exitCode = 1;
    run(services, exitCode);
    QApplication::exec();
    return exitCode;
}
