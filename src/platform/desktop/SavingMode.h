// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QSet>
#include <QString>
#include <QVariantMap>

namespace orvane {

class MessageBus;

/// Follows whether the desktop wants data or power to be saved: the connection is metered, as
/// NetworkManager or the desktop portal says, or the power profile is a saving one. Owned by
/// `DesktopIntegration`; main thread, which it never blocks. Without these services nothing is to
/// be saved.
class SavingMode final : public QObject {
    Q_OBJECT

public:
    /// Both outlive it.
    SavingMode(MessageBus& sessionBus, MessageBus& systemBus);

    [[nodiscard]] bool isOn() const { return !m_reasons.isEmpty(); }

Q_SIGNALS:
    void changed(bool isOn);

private:
    void watch(MessageBus& bus, const QDBusConnection& connection);
    void ask(MessageBus& bus, qsizetype source);
    void askPortal();
    void forget(MessageBus& bus);
    void set(const QString& reason, bool isReason);
    Q_SLOT void propertiesChanged(const QString& interface, const QVariantMap& changes);
    Q_SLOT void portalChanged();

    MessageBus& m_sessionBus;
    MessageBus& m_systemBus;
    /// The interfaces that say so.
    QSet<QString> m_reasons;
};

} // namespace orvane
