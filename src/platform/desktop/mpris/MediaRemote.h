// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/mpris/MediaRemoteObject.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <optional>

namespace orvane {

class MessageBus;

/// Exports the program on the session bus as a media player (MPRIS 2.2), under a name with the
/// process id where another copy owns the usual one. Owned by `DesktopIntegration`; main thread. It
/// is not an error if there is no bus.
class MediaRemote final : public QObject {
    Q_OBJECT

public:
    /// `name` is the last part of the bus name. `bus` and `commands` must outlive this object.
    MediaRemote(QString name, MessageBus& bus, MediaRemoteCommands& commands);
    ~MediaRemote() override;

    /// Announces the properties that have changed.
    void update(const MediaRemoteState& state);
    /// The position has changed by more than the passing of time.
    void announceJump();

private:
    void appear(QDBusConnection bus);
    void requestName(const QString& name, std::optional<QString> fallback);
    void announce(const QVariantMap& changed);

    QString m_name;
    MessageBus& m_bus;
    MediaRemoteObject m_object;
};

} // namespace orvane
