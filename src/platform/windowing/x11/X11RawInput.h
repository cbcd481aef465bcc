// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DeferredCall.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <cstdint>

namespace orvane {

/// The raw XInput 2 events of all pointers, and of no keyboard. They need no grab, so other
/// programs still get their events. Selects them only while the signal is connected. Owned by the
/// event monitor; main thread. Silent without an X server or without XInput 2.
class X11RawInput final : public QObject, QAbstractNativeEventFilter {
    Q_OBJECT

public:
    X11RawInput();
    ~X11RawInput() override;

Q_SIGNALS:
    /// Emitted from the event loop; once for several events.
    void pointerMoved();

protected:
    void connectNotify(const QMetaMethod& signal) override;
    void disconnectNotify(const QMetaMethod& signal) override;

private:
    void select();
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;

    std::uint32_t m_selected = 0;
    DeferredCall m_deferredSelect;
    DeferredCall m_deferredMove;
};

} // namespace orvane
