// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DeferredCall.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>

#include <cstdint>

namespace orvane {

/// The raw XInput 2 events of all pointers and keyboards. They need no grab, so other programs
/// still get their events. Selects only the events of signals that are connected. Owned by the
/// event monitor; main thread. Silent without an X server or without XInput 2.
class X11RawInput final : public QObject, QAbstractNativeEventFilter {
    Q_OBJECT

public:
    X11RawInput();
    ~X11RawInput() override;

Q_SIGNALS:
    /// Emitted from the event loop; once for several events.
    void pointerMoved();
    /// `key` is a key code of the X server. Raw events have no repetitions, so those are generated
    /// here, with the server's timing.
    void keyPressed(std::uint32_t key, bool isRepeat);

protected:
    void connectNotify(const QMetaMethod& signal) override;
    void disconnectNotify(const QMetaMethod& signal) override;

private:
    void select();
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;
    void pressed(std::uint32_t key);
    void released(std::uint32_t key);

    std::uint32_t m_selected = 0;
    DeferredCall m_deferredSelect;
    DeferredCall m_deferredMove;
    std::uint32_t m_heldKey = 0;
    /// Active while a key is held down.
    QTimer m_repetition;
};

} // namespace orvane
