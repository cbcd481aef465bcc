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

/// Asks the desktop's screen saver to wait, or else the desktop portal, or else the X server, which
/// blanks the screen by itself in plain sessions. Owned by whoever integrates the program into the
/// desktop; main thread. All of them release what a program holds whose connection closes, so it
/// comes to no harm when the program dies; and a service that starts anew is asked anew.
class DesktopScreenSaver final : public QObject, public ScreenSaverInhibitor {
    Q_OBJECT

public:
    /// `reason` is for people; desktops show it. The bus outlives it.
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
