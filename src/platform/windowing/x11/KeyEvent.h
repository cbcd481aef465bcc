// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

namespace orvane {

/// The keys that are identified by their position, on any layout. The values are the virtual key
/// codes of macOS, in which the digits are not in order.
enum class KeyCode : std::uint16_t {
    digit1 = 18,
    digit2 = 19,
    digit3 = 20,
    digit4 = 21,
    digit6 = 22,
    digit5 = 23,
    equal = 24,
    digit9 = 25,
    digit7 = 26,
    backspace = 51,
    escape = 53,
    end = 119,
    leftArrow = 123,
    rightArrow = 124,
    downArrow = 125,
    upArrow = 126,
    other = 0xffff
};

/// The modifiers that are held down or locked while a key is pressed. The values are those of macOS
/// too.
namespace ModifierFlags {
inline constexpr std::uint32_t capsLock = 1U << 16;
inline constexpr std::uint32_t shift = 1U << 17;
inline constexpr std::uint32_t control = 1U << 18;
inline constexpr std::uint32_t option = 1U << 19;
inline constexpr std::uint32_t command = 1U << 20;
} // namespace ModifierFlags

/// A key press. An immutable value; any thread.
struct KeyEvent {
    /// Whether this is an automatic repetition of a key that is held down.
    enum class Repeat { first, again };
    /// What has the focus: the player window or no window of this program, a button in the player
    /// window, another of the program's windows, or a text field in one of those.
    enum class Target { elsewhere, button, window, textField };

    KeyCode keyCode = KeyCode::other;
    std::uint32_t modifierFlags = 0;
    /// The text that the key types without modifiers, on the current layout if that has Latin
    /// letters; may be empty.
    QString charactersIgnoringModifiers = {};
    Repeat repeat = Repeat::first;
    Target target = Target::elsewhere;
    /// Whether Escape closes the window that has the focus.
    bool escapeCloses = false;
};

} // namespace orvane
