// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>

#include <cstdint>

namespace orvane {

/// What the X server tells of all pointers and keyboards to whoever asks, without a grab, so that
/// the other programs miss nothing. It asks only for what somebody is connected to. Owned by the
/// event monitor; main thread. Silent where there is no X server, or none with that extension.
class X11RawInput final : public QObject, QAbstractNativeEventFilter {
    Q_OBJECT

public:
    X11RawInput();
    ~X11RawInput() override;

Q_SIGNALS:
    /// Soon after it has; once for a burst.
    void pointerMoved();
    /// `key` is a code of the X server. The server tells of no repetitions, so those are made here,
    /// at its pace.
    void keyPressed(std::uint32_t key, bool isRepeat);

protected:
    void connectNotify(const QMetaMethod& signal) override;
    void disconnectNotify(const QMetaMethod& signal) override;

private:
    void select();
    void selectSoon();
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;
    void moved();
    void pressed(std::uint32_t key);
    void released(std::uint32_t key);

    std::uint32_t m_selected = 0;
    bool m_isSelectionDue = false;
    bool m_isMoveDue = false;
    std::uint32_t m_heldKey = 0;
    /// Runs while a key is held down.
    QTimer m_repetition;
};

} // namespace orvane
