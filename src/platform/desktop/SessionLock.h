// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QSet>
#include <QVariantMap>

namespace orvane {

class MessageBus;

/// Follows whether the session is locked: by logind's hint for this session, and by the screen
/// savers of the desktops. Owned by `DesktopIntegration`; main thread, which it never blocks.
/// Without these services the session counts as unlocked.
class SessionLock final : public QObject {
    Q_OBJECT

public:
    /// Both outlive it.
    SessionLock(MessageBus& sessionBus, MessageBus& systemBus);

    [[nodiscard]] bool isLocked() const { return !m_lockedBy.isEmpty(); }

Q_SIGNALS:
    void changed(bool isLocked);

private:
    void watchScreenSavers(QDBusConnection bus);
    void watchSession();
    void follow(QDBusConnection bus, const QString& session);
    void set(const QString& source, bool isLocked);
    Q_SLOT void screenSaverChanged(bool isActive, const QDBusMessage& signal);
    Q_SLOT void sessionChanged(const QString& interface, const QVariantMap& properties);

    MessageBus& m_sessionBus;
    MessageBus& m_systemBus;
    /// The interfaces that say so.
    QSet<QString> m_lockedBy;
};

} // namespace orvane
