// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>

namespace orvane {

/// The keys that are pressed in any program, as raw XInput 2 events, which need no grab. They come
/// through a connection of their own that announces version 2.0 of XInput: to such a client the
/// server sends no raw events while another client has grabbed the keyboard, as lock screens and
/// password prompts do. From version 2.1 on, which Qt announces, it would. The connection exists
/// only while the signal is connected. Owned by the event monitor; main thread. Silent without an X
/// server or without XInput 2.
class X11RawKeys final : public QObject {
    Q_OBJECT

public:
    X11RawKeys();
    ~X11RawKeys() override;

Q_SIGNALS:
    /// `key` is a key code of the X server, `state` that of a core protocol event. Raw events have
    /// no repetitions, so those are generated here, with the server's timing.
    void pressed(std::uint32_t key, std::uint32_t state, bool isRepeat);

protected:
    void connectNotify(const QMetaMethod& signal) override;
    void disconnectNotify(const QMetaMethod& signal) override;

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    void open();
    void close();
    [[nodiscard]] bool select();
    void read();
    void handle(const xcb_generic_event_t& event);
    void repeat();

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::uint8_t m_xInput = 0;
    std::uint8_t m_xkbEvent = 0;
    /// As of the last event of this connection.
    std::uint32_t m_state = 0;
    std::uint32_t m_heldKey = 0;
    /// Active while a key is held down.
    QTimer m_repetition;
};

} // namespace orvane
