// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/HotkeyManager.h"

#include "state/AppNotification.h"
#include "support/FakeEvents.h"
#include "support/RecordingActions.h"
#include "support/RecordingPlayer.h"
#include "support/StateFixture.h"

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using enum EventMonitor::Outcome;

namespace {

class HotkeyManagerTest : public testing::Test, protected test::StateFixture {
protected:
    HotkeyManagerTest() { keys.start(); }

    EventMonitor::Outcome press(const KeyEvent& event) { return events.localKeys(event); }
    EventMonitor::Outcome press(const QString& character) {
        return press({.charactersIgnoringModifiers = character});
    }
    EventMonitor::Outcome press(KeyCode code) { return press({.keyCode = code}); }

    test::FakeEvents events;
    test::RecordingPlayer player;
    test::RecordingActions actions;
    HotkeyManager keys{{.state = state,
                        .preferences = preferences,
                        .registry = registry,
                        .player = player,
                        .notifications = notifications,
                        .events = events,
                        .actions = actions}};
    QStringList posted;
    const NotificationCenter::Token fullscreen = notifications.addObserver(
        AppNotification::toggleFullscreen, [this] { posted += u"fullscreen"_s; });
    const NotificationCenter::Token settings = notifications.addObserver(
        AppNotification::openSettings, [this] { posted += u"settings"_s; });
};

TEST_F(HotkeyManagerTest, DigitsPlayFavouritesInTheOrderOfTheirCodes) {
    QStringList ids;
    for (const Channel& channel : registry.all().first(9))
        ids += channel.id();
    preferences.setFavoriteChannelIDs(ids);
    for (int index = 0; index < 9; ++index) {
        // The code decides and not the character.
        EXPECT_EQ(press({.keyCode = static_cast<KeyCode>(18 + index),
                         .charactersIgnoringModifiers = u"x"_s}),
                  consumed);
        EXPECT_EQ(player.takeCalls(), QStringList{u"play "_s + ids.at(index)});
    }
    ids[1] = u"gone"_s;
    preferences.setFavoriteChannelIDs(ids.first(2));
    EXPECT_EQ(press(KeyCode::digit2), passedOn) << "the registry does not have this channel";
    EXPECT_EQ(press(KeyCode::digit3), passedOn) << "there is no third";
    EXPECT_EQ(press({.keyCode = KeyCode::digit3, .charactersIgnoringModifiers = u"m"_s}), consumed);
    EXPECT_EQ(player.calls, QStringList{u"mute"_s}) << "without a favourite the character counts";
}

TEST_F(HotkeyManagerTest, EachKeyHasItsAction) {
    struct Case {
        KeyEvent event;
        EventMonitor::Outcome outcome;
        /// What was asked of the player, of the application and of the windows.
        QStringList expected;
    };
    const auto typed = [](const QString& text) {
        return KeyEvent{.charactersIgnoringModifiers = text};
    };
    for (const auto& [event, outcome, expected] : {
             Case{typed(u"g"_s), consumed, {u"ghost"_s}},
             Case{typed(u"G"_s), consumed, {u"ghost"_s}},
             Case{typed(u"m"_s), consumed, {u"mute"_s}},
             Case{typed(u"q"_s), consumed, {u"terminate"_s}},
             Case{typed(u" "_s), consumed, {u"play/pause"_s}},
             Case{typed(u"f"_s), consumed, {u"fullscreen"_s}},
             Case{typed(u","_s), consumed, {u"settings"_s}},
             Case{typed(u"s"_s), consumed, {u"sound"_s}},
             Case{typed(u"x"_s), passedOn, {}},
             Case{typed(u"gg"_s), passedOn, {}},
             Case{typed(u"1"_s), passedOn, {}},
             Case{typed({}), passedOn, {}},
             Case{{.keyCode = KeyCode::escape}, passedOn, {u"fullscreen"_s}},
             Case{{.keyCode = KeyCode::backspace}, consumed, {u"back 10000"_s}},
             Case{{.keyCode = KeyCode::end}, consumed, {u"live"_s}},
             // In dialogs they edit a text, and move in a list.
             Case{{.keyCode = KeyCode::backspace, .target = KeyEvent::Target::textField},
                  passedOn,
                  {}},
             Case{{.keyCode = KeyCode::end, .target = KeyEvent::Target::window}, passedOn, {}},
             Case{{.keyCode = KeyCode::leftArrow}, consumed, {u"previous"_s}},
             Case{{.keyCode = KeyCode::rightArrow}, consumed, {u"next"_s}},
             Case{{.keyCode = KeyCode::downArrow}, consumed, {u"volume -0.10"_s}},
             Case{{.keyCode = KeyCode::upArrow}, consumed, {u"volume 0.10"_s}},
         }) {
        EXPECT_EQ(press(event), outcome);
        EXPECT_EQ(player.takeCalls() + std::exchange(actions.calls, {}) + std::exchange(posted, {}),
                  expected);
    }
}

TEST_F(HotkeyManagerTest, GhostModeChangesFAndEscape) {
    state.setGhostMode(true);
    EXPECT_EQ(press(u"f"_s), consumed);
    EXPECT_TRUE(posted.isEmpty());
    EXPECT_EQ(press(KeyCode::escape), consumed);
    EXPECT_FALSE(state.isGhostMode());
    EXPECT_TRUE(posted.isEmpty());
}

TEST_F(HotkeyManagerTest, KeyEquivalentsOfTheMenusActInTheProgramsWindows) {
    using namespace ModifierFlags;
    for (const auto& [key, expected] :
         {std::pair(u"n"_s, u"add"_s), {u","_s, u"settings"_s}, {u"q"_s, u"terminate"_s}}) {
        KeyEvent event{.modifierFlags = control,
                       .charactersIgnoringModifiers = key,
                       .target = KeyEvent::Target::textField};
        EXPECT_EQ(press(event), consumed);
        EXPECT_EQ(std::exchange(actions.calls, {}), QStringList{expected});
        event.modifierFlags = control | shift;
        EXPECT_EQ(press(event), passedOn);
        EXPECT_TRUE(actions.calls.isEmpty());
    }
}

TEST_F(HotkeyManagerTest, ModifiersDisableEveryKey) {
    for (std::uint32_t bit = 16; bit < 32; ++bit) {
        const bool isNumberPad = bit == 21;
        EXPECT_EQ(press({.keyCode = KeyCode::digit1,
                         .modifierFlags = 1U << bit,
                         .charactersIgnoringModifiers = u"1"_s}),
                  isNumberPad ? consumed : passedOn)
            << bit;
    }
    EXPECT_EQ(press({.modifierFlags = 0xffff, .charactersIgnoringModifiers = u"m"_s}), consumed);
}

TEST_F(HotkeyManagerTest, OnlyArrowsRepeat) {
    KeyEvent event{.charactersIgnoringModifiers = u"g"_s};
    EXPECT_EQ(press(event), consumed);
    event.repeat = KeyEvent::Repeat::again;
    EXPECT_EQ(press(event), consumed);
    EXPECT_EQ(actions.calls.size(), 1);
    press(u"x"_s);
    EXPECT_EQ(press({.charactersIgnoringModifiers = u"x"_s, .repeat = KeyEvent::Repeat::again}),
              passedOn);
    for (int i = 0; i < 3; ++i)
        press({.keyCode = KeyCode::downArrow, .repeat = KeyEvent::Repeat::again});
    EXPECT_EQ(player.calls.size(), 3);
}

TEST_F(HotkeyManagerTest, TextFieldsKeepTheirKeysIfThePreferenceSaysSo) {
    KeyEvent event{.charactersIgnoringModifiers = u"q"_s};
    int lost = 0;
    const auto token =
        notifications.addObserver(AppNotification::textFieldLostKey, [&lost] { ++lost; });
    for (const auto target : {KeyEvent::Target::textField, KeyEvent::Target::window}) {
        event.target = target;
        preferences.setShortcutsInTextFields(true);
        EXPECT_EQ(press(event), consumed);
        preferences.setShortcutsInTextFields(false);
        EXPECT_EQ(press(event), passedOn);
        EXPECT_EQ(std::exchange(actions.calls, {}).size(), 1);
    }
    EXPECT_EQ(lost, 1) << "told of text fields only";
    EXPECT_EQ(press(u"q"_s), consumed);

    // A button of the player window keeps only the space bar.
    event.target = KeyEvent::Target::button;
    EXPECT_EQ(press(event), consumed);
    event.charactersIgnoringModifiers = u" "_s;
    EXPECT_EQ(press(event), passedOn);
}

TEST_F(HotkeyManagerTest, AnEscapeThatClosesAWindowDoesNothingElse) {
    EXPECT_EQ(press({.keyCode = KeyCode::escape, .escapeCloses = true}), passedOn);
    EXPECT_TRUE(posted.isEmpty());
    state.setGhostMode(true);
    EXPECT_EQ(press({.keyCode = KeyCode::escape, .escapeCloses = true}), consumed);
}

TEST_F(HotkeyManagerTest, ListensToOtherProgramsOnlyInGhostModeAndWithPermission) {
    namespace Topics = AppNotification;
    EXPECT_FALSE(events.globalKeys);
    state.setGhostMode(true);
    ASSERT_TRUE(events.globalKeys) << "without a tray icon Escape is the way out";
    EXPECT_EQ(events.globalKeys({.charactersIgnoringModifiers = u"m"_s}), passedOn);
    notifications.post(Topics::statusItemShownChanged, true);
    EXPECT_FALSE(events.globalKeys);
    preferences.setShortcutsInGhostMode(true);
    notifications.post(Topics::shortcutsInGhostModeChanged, true);
    ASSERT_TRUE(events.globalKeys);
    notifications.post(Topics::sessionLockChanged, true);
    EXPECT_FALSE(events.globalKeys);
    notifications.post(Topics::sessionLockChanged, false);
    ASSERT_TRUE(events.globalKeys);
    events.globalKeys({.charactersIgnoringModifiers = u"m"_s});
    EXPECT_EQ(player.calls, QStringList{u"mute"_s});
    state.setGhostMode(false);
    EXPECT_FALSE(events.globalKeys);
    state.setGhostMode(true);
    keys.stop();
    EXPECT_FALSE(events.globalKeys || events.localKeys);
    state.setGhostMode(true);
    EXPECT_FALSE(events.globalKeys);
    keys.start(); // Ghost mode is on already.
    EXPECT_TRUE(events.globalKeys && events.localKeys);
}

} // namespace
} // namespace orvane
