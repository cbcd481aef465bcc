// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/x11/KeyboardLayouts.h"

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Returns what the keys at these positions type, a dot for nothing.
QString typed(const char* layouts, xkb_layout_index_t layout, const char* variants = "") {
    auto keymap = KeyboardLayouts::keymap(layouts, variants);
    xkb_keymap* keys = keymap.get();
    const KeyboardLayouts keyboard(std::move(keymap));
    QString text;
    for (const char* place :
         {"AD01", "AC01", "AC05", "AB07", "AC10", "AB08", "AE02", "SPCE", "LFSH"}) {
        const auto key = xkb_keymap_key_by_name(keys, place);
        const QString character = keyboard.charactersIgnoringModifiers(key, layout);
        text += character.isEmpty() ? u"."_s : character;
    }
    return text;
}

TEST(KeyboardLayouts, TypeTheTextOfALatinLayout) {
    EXPECT_EQ(typed("us", 0), u"qagm;,2 ."_s);
    EXPECT_EQ(typed("fr", 0), u"aqg,m;\u00e9 ."_s);
    EXPECT_EQ(typed("us", 0, "dvorak"), u"'aimsw2 ."_s);
    // Without a Latin layout, the US layout is used.
    EXPECT_EQ(typed("ara", 0), u"qagm;,2 ."_s);
    EXPECT_EQ(typed("ru", 0), u"qagm;,2 ."_s);
    // Hebrew has a slash at Q and a comma at the apostrophe.
    EXPECT_EQ(typed("il", 0), u"qagm;,2 ."_s);
    // Otherwise the first Latin layout is used.
    EXPECT_EQ(typed("ara,gr,fr,us", 0), u"aqg,m;\u00e9 ."_s);
    EXPECT_EQ(typed("ara,gr,fr,us", 1), u"aqg,m;\u00e9 ."_s);
    EXPECT_EQ(typed("ara,gr,fr,us", 3), u"qagm;,2 ."_s);
}

TEST(KeyboardLayouts, IdentifyKeysByTheirPosition) {
    for (const char* layout : {"us", "fr", "ara"}) {
        auto keymap = KeyboardLayouts::keymap(layout);
        xkb_keymap* keys = keymap.get();
        const KeyboardLayouts keyboard(std::move(keymap));
        const auto code = [&](const char* place) {
            return std::to_underlying(keyboard.keyCode(xkb_keymap_key_by_name(keys, place)));
        };
        // 1, 2, 3, 4, 6, 5, =, 9, 7
        int expected = 18;
        for (const char* place :
             {"AE01", "AE02", "AE03", "AE04", "AE06", "AE05", "AE12", "AE09", "AE07"})
            EXPECT_EQ(code(place), expected++) << layout << " " << place;
        expected = 123;
        for (const char* place : {"LEFT", "RGHT", "DOWN", "UP"})
            EXPECT_EQ(code(place), expected++) << layout << " " << place;
        EXPECT_EQ(code("ESC"), 53);
        for (const char* place : {"AE08", "AE10", "AD01", "KP1", "KP4"})
            EXPECT_EQ(code(place), std::to_underlying(KeyCode::other)) << place;
    }
}

TEST(KeyboardLayouts, AreAmericanWithoutAKeymapAndIgnoreUnknownKeys) {
    const KeyboardLayouts keyboard(nullptr);
    EXPECT_EQ(keyboard.charactersIgnoringModifiers(24, 0), u"q"_s);
    EXPECT_EQ(keyboard.charactersIgnoringModifiers(24, 3), u"q"_s);
    for (const xkb_keycode_t key : {0U, 7U, 4000U}) {
        EXPECT_EQ(keyboard.keyCode(key), KeyCode::other);
        EXPECT_EQ(keyboard.charactersIgnoringModifiers(key, 0), QString());
    }
}

TEST(ModifierFlags, IgnoreNumLock) {
    using namespace ModifierFlags;
    EXPECT_EQ(modifierFlags(0x10), 0U);
    EXPECT_EQ(modifierFlags(0x2000 | 0xff), shift | capsLock | control | option | command);
    EXPECT_EQ(modifierFlags(0x02), 0x10000U);
    EXPECT_EQ(modifierFlags(0x80), option) << "AltGr";
}

} // namespace
} // namespace orvane
