// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/Fuzz.h"

#include "base/Clock.h"
#include "base/TaskScope.h"
#include "platform/bus/MessageBus.h"
#include "platform/desktop/SessionLock.h"
#include "platform/desktop/mpris/MediaRemoteObject.h"

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QRegularExpression>
#include <QUrl>

#include <fuzzer/FuzzedDataProvider.h>

using namespace orvane;

namespace {

class NoCommands final : public MediaRemoteCommands {
public:
    void play() override {}
    void pause() override {}
    void playPause() override {}
    void stop() override {}
    void next() override {}
    void previous() override {}
    void goBack(std::chrono::microseconds) override {}
    [[nodiscard]] std::chrono::microseconds position() const override { return {}; }
    void setVolume(double) override {}
    void raise() override {}
    void quit() override {}
};

QString text(FuzzedDataProvider& input) {
    return QString::fromStdString(input.ConsumeRandomLengthString(64));
}

/// Returns a value of any type that a message may have, also where another is meant.
QVariant value(FuzzedDataProvider& input, int depth = 0) {
    switch (input.ConsumeIntegralInRange(0, depth < 3 ? 7 : 4)) {
    case 0:
        return input.ConsumeBool();
    case 1:
        return input.ConsumeIntegral<qlonglong>();
    case 2:
        return input.ConsumeFloatingPoint<double>();
    case 3:
        return text(input);
    case 4:
        return QVariant::fromValue(QDBusObjectPath(text(input)));
    case 5:
        return QVariant::fromValue(QDBusVariant(value(input, depth + 1)));
    case 6:
        return QVariantList{value(input, depth + 1), value(input, depth + 1)};
    default:
        return QVariantMap{{text(input), value(input, depth + 1)}};
    }
}

bool isObjectPath(const QString& path) {
    static const QRegularExpression pattern(QStringLiteral("^(/[A-Za-z0-9_]+)+$"));
    return pattern.match(path).hasMatch();
}

/// Tells the program that a session has changed, in values of any type.
void changeSession(FuzzedDataProvider& input) {
    SystemClock clock;
    TaskScope tasks;
    MessageBus bus(MessageBus::Kind::session, clock, tasks);
    SessionLock lock(bus, bus);
    const QVariantMap changes{{QStringLiteral("LockedHint"), value(input)},
                              {text(input), value(input)}};
    QMetaObject::invokeMethod(&lock, "sessionChanged", Qt::DirectConnection,
                              Q_ARG(QString, QStringLiteral("org.freedesktop.login1.Session")),
                              Q_ARG(QVariantMap, changes));
    fuzz::require(lock.isLocked() == changes.value(QStringLiteral("LockedHint")).toBool(),
                  "a lock is what the hint says");
}

} // namespace

/// Values from other programs on the bus, of types that they should not have, and what the program
/// tells them of a channel with any id and name.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    NoCommands commands;
    MediaRemoteObject remote(QStringLiteral("orvane"), commands);
    MediaRemoteState state;
    state.track = MediaRemoteState::Track{text(input), text(input), QUrl(text(input))};
    remote.setState(state);
    const QVariant path = remote.metadata().value(QStringLiteral("mpris:trackid"));
    fuzz::require(isObjectPath(path.value<QDBusObjectPath>().path()), "a track has a valid path");
    changeSession(input);
    return 0;
}
