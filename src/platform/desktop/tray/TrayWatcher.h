// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DeferredCall.h"

#include <QAbstractNativeEventFilter>
#include <QDBusConnection>
#include <QObject>

namespace orvane {

class MessageBus;

/// Detects whether the desktop has a tray for status icons: StatusNotifierItem on the session bus,
/// or the older system tray protocol, which embeds X11 windows. Owned by the status item; main
/// thread, which it never blocks, so a tray on the bus is not known immediately after construction.
/// Without a bus, or without X11, there is no tray of that kind.
class TrayWatcher final : public QObject, QAbstractNativeEventFilter {
    Q_OBJECT

public:
    /// `sessionBus` outlives it.
    explicit TrayWatcher(MessageBus& sessionBus);
    ~TrayWatcher() override;

    [[nodiscard]] bool hasTray() const;

Q_SIGNALS:
    /// A tray has appeared or was replaced. Also emitted once for a tray that was there before.
    void trayAppeared();
    /// The last tray has gone.
    void trayGone();

private:
    void watch(QDBusConnection bus);
    [[nodiscard]] static bool hasEmbedder();
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;

    void appear(const char* kind);
    void notice();

    MessageBus& m_sessionBus;
    bool m_isOnBus = false;
    /// Once this object is constructed, so that its owner can connect first.
    DeferredCall m_findEmbedder;
    bool m_hadTray = false;
    /// After a window of a tray may have gone.
    DeferredCall m_deferredNotice{[this] { notice(); }};
};

} // namespace orvane
