// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/InhibitionLease.h"
#include "platform/desktop/ScreenSaverInhibitor.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

#include <memory>

namespace orvane {

class MessageBus;

/// Inhibits the desktop's screen saver, or else asks the desktop portal to, or else suspends the X
/// server's own screen saver, which plain sessions use. Owned by `DesktopIntegration`; main thread.
/// Each of them drops an inhibition when the connection of its owner closes, so nothing is left
/// behind when the program dies. A service that restarts is asked again.
class DesktopScreenSaver final : public QObject, public ScreenSaverInhibitor {
    Q_OBJECT

public:
    /// Desktops show `reason` to the user. The bus must outlive this object.
    DesktopScreenSaver(MessageBus& sessionBus, QString program, QString reason);
    ~DesktopScreenSaver() override;

    void inhibit() override;
    void release() override;

private:
    using Way = InhibitionLease::Way;

    void watchServices(const QDBusConnection& bus);
    void followOwner(const QString& service, const QString& before, const QString& after);
    void perform(const InhibitionLease::Commands& commands);
    void ask(const InhibitionLease::Ask& ask);
    void giveBack(const InhibitionLease::Release& held);

    MessageBus& m_bus;
    QString m_program;
    QString m_reason;
    InhibitionLease m_lease;
    std::unique_ptr<QDBusServiceWatcher> m_services;
};

} // namespace orvane
