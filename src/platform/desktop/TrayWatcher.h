// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

namespace orvane {

/// Tells whether the desktop has a tray for status icons, of the kind that is spoken to over the
/// session bus or of the older one that embeds X11 windows. Owned by the status item; main thread,
/// which it never blocks: right after its making it knows of no tray on the bus. Without a bus, or
/// without X11, there is no tray of that kind.
class TrayWatcher final : public QObject, QAbstractNativeEventFilter {
    Q_OBJECT

public:
    TrayWatcher();
    ~TrayWatcher() override;

    [[nodiscard]] bool hasTray() const;

Q_SIGNALS:
    /// A tray has come, or another one has taken its place; once for one that was there already.
    void trayAppeared();

private:
    void watchBus();
    [[nodiscard]] static bool hasEmbedder();
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;

    bool m_isOnBus = false;
};

} // namespace orvane
