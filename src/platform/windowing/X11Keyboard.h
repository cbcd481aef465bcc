// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/KeyboardLayouts.h"

#include <QAbstractNativeEventFilter>

#include <chrono>
#include <cstdint>
#include <optional>

namespace orvane {

/// The X server's keyboard: the layouts it has now, the one that is chosen, and what is held down,
/// as of the event that is being looked at. Owned by the event monitor; main thread. Without an X
/// server, or without its keyboard extension, it is a US keyboard.
class X11Keyboard final : QAbstractNativeEventFilter {
public:
    X11Keyboard();
    ~X11Keyboard() override;

    /// `key` is a code of the X server, `state` that of an event of the core protocol.
    [[nodiscard]] KeyEvent keyEvent(std::uint32_t key, std::uint32_t state);
    /// With the state as the server has told it last.
    [[nodiscard]] KeyEvent keyEvent(std::uint32_t key);

    /// How a key is repeated that is held down.
    struct Repetition {
        std::chrono::milliseconds delay{500};
        std::chrono::milliseconds interval{40};
    };
    /// As the person has set it.
    [[nodiscard]] static Repetition repetition();

private:
    [[nodiscard]] bool select();
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;

    /// Nothing when it has changed since it was looked at.
    std::optional<KeyboardLayouts> m_layouts;
    std::uint32_t m_state = 0;
    /// Of the extension's events; 0 without it.
    std::uint8_t m_eventType = 0;
};

} // namespace orvane
