// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/x11/KeyEvent.h"

#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <optional>

namespace orvane {

/// Translates the key codes of the X server to physical keys and to the text that they type on the
/// user's layouts. For a layout without Latin letters it uses the first one that has some, or else
/// the US layout, so that letters as shortcuts work on all of them. An immutable value; main
/// thread.
class KeyboardLayouts {
public:
    struct Free {
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
    };
    using Keymap = std::unique_ptr<xkb_keymap, Free>;

    /// A null keymap stands for a US keyboard. All keys are unknown where the data files of XKB are
    /// not installed.
    explicit KeyboardLayouts(Keymap keymap);

    /// `layouts` and `variants` are comma-separated XKB names. Returns null for an unknown layout.
    [[nodiscard]] static Keymap keymap(const char* layouts, const char* variants = "");
    [[nodiscard]] static xkb_context* context();

    [[nodiscard]] KeyCode keyCode(xkb_keycode_t key) const;
    /// `layout` counts from 0; numbers beyond the last layout wrap around.
    [[nodiscard]] QString charactersIgnoringModifiers(xkb_keycode_t key,
                                                      xkb_layout_index_t layout) const;

private:
    [[nodiscard]] std::optional<char32_t> onLatinLayout(xkb_keycode_t key) const;

    Keymap m_us;
    Keymap m_keymap;
};

/// Translates `state` of a core protocol event; the five modifiers whose meaning is configurable
/// are taken to have the usual one.
[[nodiscard]] std::uint32_t modifierFlags(std::uint32_t state);

} // namespace orvane
