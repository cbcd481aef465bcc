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

/// Offers the program on the session bus as a media player (MPRIS 2.2), under a name of its own
/// where another copy has the usual one. Owned by whoever integrates the program into the desktop;
/// main thread. Without a bus nobody asks for anything, which is no error. Live channels have no
/// length, so nothing can be sought.
class MediaRemote final : public QObject {
    Q_OBJECT

public:
    /// `name` is the last part of the bus name. Both outlive it.
    MediaRemote(QString name, MessageBus& bus, MediaRemoteCommands& commands);
    ~MediaRemote() override;

    /// Announces what has changed.
    void update(const MediaRemoteState& state);

private:
    void appear(QDBusConnection bus);
    void requestName(const QString& name, std::optional<QString> otherwise);
    void announce(const QVariantMap& changed);

    QString m_name;
    MessageBus& m_bus;
    MediaRemoteObject m_object;
};

} // namespace orvane
