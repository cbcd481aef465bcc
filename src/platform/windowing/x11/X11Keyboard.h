// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/x11/KeyboardLayouts.h"

#include <QAbstractNativeEventFilter>

#include <chrono>
#include <cstdint>
#include <optional>

namespace orvane {

/// The X server's keyboard: its layouts and the timing of its repetitions. Owned by the event
/// monitor; main thread. Without an X server, or without XKB, it is a US keyboard.
class X11Keyboard final : QAbstractNativeEventFilter {
public:
    X11Keyboard();
    ~X11Keyboard() override;

    /// `key` is a key code of the X server, `state` that of a core protocol event.
    [[nodiscard]] KeyEvent keyEvent(std::uint32_t key, std::uint32_t state);
    /// Returns the state of a core protocol event with these modifiers and this layout.
    [[nodiscard]] static std::uint32_t coreState(std::uint32_t modifiers, std::uint32_t layout);

    /// The timing of automatic repetitions.
    struct Repetition {
        std::chrono::milliseconds delay{500};
        std::chrono::milliseconds interval{40};
    };
    /// Returns the user's settings.
    [[nodiscard]] static Repetition repetition();

private:
    [[nodiscard]] bool select();
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;

    /// nullopt when they have changed since they were read.
    std::optional<KeyboardLayouts> m_layouts;
    /// The event type of XKB; 0 without XKB.
    std::uint8_t m_eventType = 0;
};

} // namespace orvane
