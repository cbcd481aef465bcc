// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/x11/KeyboardLayouts.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace orvane {

namespace {

/// The XKB names of the positions on the keyboard, which are the same in all keymaps.
constexpr std::array<std::pair<std::string_view, KeyCode>, 16> places{{
    {"AE01", KeyCode::digit1},
    {"AE02", KeyCode::digit2},
    {"AE03", KeyCode::digit3},
    {"AE04", KeyCode::digit4},
    {"AE05", KeyCode::digit5},
    {"AE06", KeyCode::digit6},
    {"AE07", KeyCode::digit7},
    {"AE09", KeyCode::digit9},
    {"AE12", KeyCode::equal},
    {"BKSP", KeyCode::backspace},
    {"ESC", KeyCode::escape},
    {"END", KeyCode::end},
    {"LEFT", KeyCode::leftArrow},
    {"RGHT", KeyCode::rightArrow},
    {"DOWN", KeyCode::downArrow},
    {"UP", KeyCode::upArrow},
}};

/// Keys that type letters on every layout that has any.
constexpr std::array homeRow{"AC01", "AC02", "AC03"};

constexpr auto noKeys =
    "xkb_keymap { xkb_keycodes {}; xkb_types {}; xkb_compat {}; xkb_symbols {}; };";

std::string_view name(xkb_keymap* keymap, xkb_keycode_t key) {
    const char* name = xkb_keymap_key_get_name(keymap, key);
    return name != nullptr ? name : std::string_view();
}

/// Returns the character that a key types without modifiers.
std::optional<char32_t> character(xkb_keymap* keymap, xkb_keycode_t key,
                                  xkb_layout_index_t layout) {
    const xkb_layout_index_t count = xkb_keymap_num_layouts_for_key(keymap, key);
    if (count == 0)
        return std::nullopt;
    const xkb_keysym_t* symbols = nullptr;
    const int symbolCount =
        xkb_keymap_key_get_syms_by_level(keymap, key, layout % count, 0, &symbols);
    const char32_t typed = symbolCount > 0 ? xkb_keysym_to_utf32(symbols[0]) : U'\0';
    return typed != U'\0' ? std::optional(typed) : std::nullopt;
}

bool hasLatinLetters(xkb_keymap* keymap, xkb_layout_index_t layout) {
    return std::ranges::all_of(homeRow, [&](const char* place) {
        const auto typed = character(keymap, xkb_keymap_key_by_name(keymap, place), layout);
        return typed && QChar::script(*typed) == QChar::Script_Latin;
    });
}

} // namespace

xkb_context* KeyboardLayouts::context() {
    static const std::unique_ptr<xkb_context, Free> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    return context.get();
}

KeyboardLayouts::Keymap KeyboardLayouts::keymap(const char* layouts, const char* variants) {
    const xkb_rule_names names{
        .rules = "evdev", .model = "pc105", .layout = layouts, .variant = variants, .options = ""};
    return Keymap(xkb_keymap_new_from_names(context(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

KeyboardLayouts::KeyboardLayouts(Keymap keymap) : m_us(KeyboardLayouts::keymap("us")) {
    if (!m_us) // The data files are missing.
        m_us.reset(xkb_keymap_new_from_string(context(), noKeys, XKB_KEYMAP_FORMAT_TEXT_V1,
                                              XKB_KEYMAP_COMPILE_NO_FLAGS));
    m_keymap = keymap ? std::move(keymap) : Keymap(xkb_keymap_ref(m_us.get()));
}

KeyCode KeyboardLayouts::keyCode(xkb_keycode_t key) const {
    const std::string_view place = name(m_keymap.get(), key);
    const auto* const found =
        std::ranges::find(places, place, &std::pair<std::string_view, KeyCode>::first);
    return found != places.end() ? found->second : KeyCode::other;
}

QString KeyboardLayouts::charactersIgnoringModifiers(xkb_keycode_t key,
                                                     xkb_layout_index_t layout) const {
    const auto typed = hasLatinLetters(m_keymap.get(), layout)
                           ? character(m_keymap.get(), key, layout)
                           : onLatinLayout(key);
    return typed ? QString::fromUcs4(&*typed, 1) : QString();
}

std::optional<char32_t> KeyboardLayouts::onLatinLayout(xkb_keycode_t key) const {
    const xkb_layout_index_t count = xkb_keymap_num_layouts(m_keymap.get());
    for (xkb_layout_index_t layout = 0; layout < count; ++layout) {
        if (hasLatinLetters(m_keymap.get(), layout))
            return character(m_keymap.get(), key, layout);
    }
    const char* place = xkb_keymap_key_get_name(m_keymap.get(), key);
    if (place == nullptr)
        return std::nullopt;
    return character(m_us.get(), xkb_keymap_key_by_name(m_us.get(), place), 0);
}

std::uint32_t modifierFlags(std::uint32_t state) {
    using namespace ModifierFlags;
    // Alt and AltGr correspond to Option, and Super to Command.
    constexpr std::array<std::pair<std::uint32_t, std::uint32_t>, 6> flags{{{1U << 0, shift},
                                                                            {1U << 1, capsLock},
                                                                            {1U << 2, control},
                                                                            {1U << 3, option},
                                                                            {1U << 6, command},
                                                                            {1U << 7, option}}};
    std::uint32_t result = 0;
    for (const auto& [bit, flag] : flags)
        result |= (state & bit) != 0 ? flag : 0;
    return result;
}

} // namespace orvane
