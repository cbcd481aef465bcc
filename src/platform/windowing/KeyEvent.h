// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

namespace orvane {

/// The keys that are told apart by their place on the keyboard, whatever is printed on them: the
/// virtual key codes that macOS gives them, in which the order of the digits is not that of their
/// values.
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
    escape = 53,
    leftArrow = 123,
    rightArrow = 124,
    downArrow = 125,
    upArrow = 126,
    other = 0xffff
};

/// What is held down, or locked, while a key is pressed; the numbers are those of macOS too.
namespace ModifierFlags {
inline constexpr std::uint32_t capsLock = 1U << 16;
inline constexpr std::uint32_t shift = 1U << 17;
inline constexpr std::uint32_t control = 1U << 18;
inline constexpr std::uint32_t option = 1U << 19;
inline constexpr std::uint32_t command = 1U << 20;
} // namespace ModifierFlags

/// A key that has been pressed. An immutable value; any thread.
struct KeyEvent {
    /// Whether the keyboard repeats a key that is held down.
    enum class Repeat { first, again };
    /// Whether what is typed would go into a text field.
    enum class Target { elsewhere, textField };

    KeyCode keyCode = KeyCode::other;
    std::uint32_t modifierFlags = 0;
    /// What the key types by itself, on the layout in use if that has Latin letters; empty for
    /// nothing.
    QString charactersIgnoringModifiers = {};
    Repeat repeat = Repeat::first;
    Target target = Target::elsewhere;
};

} // namespace orvane
