// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/KeyEvent.h"

#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <optional>

namespace orvane {

/// What the keys of a keyboard mean: which physical key a code of the X server is, and what it
/// types on the layouts that the person has chosen. Where such a layout has no Latin letters, a key
/// means what it does on the first one that has, or else on the US layout, so that shortcuts that
/// are letters work on all of them. An immutable value; main thread.
class KeyboardLayouts {
public:
    struct Free {
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
    };
    using Keymap = std::unique_ptr<xkb_keymap, Free>;

    /// A null keymap stands for a US keyboard. Nothing is known of any key where the data of the
    /// keyboard's extension is not installed.
    explicit KeyboardLayouts(Keymap keymap);

    /// `layouts` and `variants` are comma-separated names as the X server knows them. Null where
    /// there is no such layout.
    [[nodiscard]] static Keymap keymap(const char* layouts, const char* variants = "");
    [[nodiscard]] static xkb_context* context();

    [[nodiscard]] KeyCode keyCode(xkb_keycode_t key) const;
    /// `layout` counts from 0; what is beyond the last one is as the keyboard has it.
    [[nodiscard]] QString charactersIgnoringModifiers(xkb_keycode_t key,
                                                      xkb_layout_index_t layout) const;

private:
    [[nodiscard]] std::optional<char32_t> onLatinLayout(xkb_keycode_t key) const;

    Keymap m_us;
    Keymap m_keymap;
};

/// `state` is the one of the core protocol: shift, lock, control and five that are freely assigned,
/// of which the usual assignment is meant.
[[nodiscard]] std::uint32_t modifierFlags(std::uint32_t state);

} // namespace orvane
