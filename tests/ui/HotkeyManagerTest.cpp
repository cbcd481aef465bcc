// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/HotkeyManager.h"

#include "app/Services.h"
#include "state/AppNotification.h"
#include "support/EventLoop.h"
#include "support/FakeEvents.h"
#include "support/RecordingActions.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using enum EventMonitor::Outcome;

namespace {

class HotkeyManagerTest : public testing::Test {
protected:
    HotkeyManagerTest() { keys.start(); }
    ~HotkeyManagerTest() override {
        services.player.stop();
        EXPECT_TRUE(test::runUntil([&] { return services.tasks.count() == 0; }));
    }

    EventMonitor::Outcome press(const KeyEvent& event) { return events.localKeys(event); }
    EventMonitor::Outcome press(const QString& character) {
        return press({.charactersIgnoringModifiers = character});
    }
    EventMonitor::Outcome press(KeyCode code) { return press({.keyCode = code}); }

    [[nodiscard]] QString channel() const {
        const auto& current = services.state.currentChannel();
        return current ? current->id() : QString();
    }

    QTemporaryDir folder;
    Services services{Environment{}, folder.filePath(u"preferences.json"_s), VideoOutput::software};
    test::FakeEvents events;
    test::RecordingActions actions;
    HotkeyManager keys{{.state = services.state,
                        .preferences = services.preferences,
                        .registry = services.registry,
                        .player = services.player,
                        .notifications = services.notifications,
                        .events = events,
                        .actions = actions}};
    QStringList posted;
    const NotificationCenter::Token fullscreen = services.notifications.addObserver(
        AppNotification::toggleFullscreen, [this] { posted += u"fullscreen"_s; });
    const NotificationCenter::Token settings = services.notifications.addObserver(
        AppNotification::openSettings, [this] { posted += u"settings"_s; });
};

TEST_F(HotkeyManagerTest, DigitsPlayFavouritesInTheOrderOfTheirCodes) {
    QStringList ids;
    for (const Channel& channel : services.registry.all().first(9))
        ids += channel.id();
    services.preferences.setFavoriteChannelIDs(ids);
    for (int index = 0; index < 9; ++index) {
        // The digit is never looked at.
        EXPECT_EQ(press({.keyCode = static_cast<KeyCode>(18 + index),
                         .charactersIgnoringModifiers = u"x"_s}),
                  consumed);
        EXPECT_EQ(channel(), ids.at(index));
    }
    ids[1] = u"gone"_s;
    services.preferences.setFavoriteChannelIDs(ids.first(2));
    EXPECT_EQ(press(KeyCode::digit2), passedOn) << "nobody knows this channel";
    EXPECT_EQ(press(KeyCode::digit3), passedOn) << "there is no third";
    EXPECT_EQ(press({.keyCode = KeyCode::digit3, .charactersIgnoringModifiers = u"m"_s}), consumed);
    EXPECT_TRUE(services.state.isMuted()) << "an empty place leaves the key its character";
    EXPECT_EQ(channel(), services.registry.all().at(8).id());
}

TEST_F(HotkeyManagerTest, CharactersAct) {
    for (const QString& character : {u"g"_s, u"q"_s, u"G"_s})
        EXPECT_EQ(press(character), consumed);
    EXPECT_EQ(actions.calls, (QStringList{u"ghost"_s, u"terminate"_s, u"ghost"_s}));
    EXPECT_EQ(press(u"f"_s), consumed);
    EXPECT_EQ(press(u","_s), consumed);
    EXPECT_EQ(posted, (QStringList{u"fullscreen"_s, u"settings"_s}));
    EXPECT_EQ(press(u" "_s), consumed);
    for (const QString& character : {u"x"_s, u"gg"_s, u"1"_s, QString()})
        EXPECT_EQ(press(character), passedOn);

    services.state.setGhostMode(true);
    posted.clear();
    EXPECT_EQ(press(u"f"_s), consumed);
    EXPECT_TRUE(posted.isEmpty());
}

TEST_F(HotkeyManagerTest, EscapeLeavesGhostModeFirst) {
    services.state.setGhostMode(true);
    EXPECT_EQ(press(KeyCode::escape), consumed);
    EXPECT_FALSE(services.state.isGhostMode());
    EXPECT_TRUE(posted.isEmpty());
    EXPECT_EQ(press(KeyCode::escape), passedOn);
    EXPECT_EQ(posted, QStringList{u"fullscreen"_s});
}

TEST_F(HotkeyManagerTest, ArrowsStepThroughTheEnabledChannels) {
    const QList<Channel> all = services.registry.all();
    const QStringList ids{all.at(1).id(), all.at(4).id(), all.at(7).id()};
    services.preferences.setEnabledChannelIDs({ids.begin(), ids.end()});
    // The first one stands for a channel that is not among them.
    EXPECT_EQ(press(KeyCode::rightArrow), consumed);
    EXPECT_EQ(channel(), ids.at(1));
    press(KeyCode::rightArrow);
    press(KeyCode::rightArrow);
    EXPECT_EQ(channel(), ids.at(0)) << "past the end";
    press(KeyCode::leftArrow);
    EXPECT_EQ(channel(), ids.at(2)) << "before the beginning";

    services.preferences.setEnabledChannelIDs({});
    EXPECT_EQ(press(KeyCode::rightArrow), consumed);
    EXPECT_EQ(channel(), ids.at(2));

    press(KeyCode::downArrow);
    EXPECT_FLOAT_EQ(services.state.volume(), 0.9F);
    press(KeyCode::upArrow);
    press(KeyCode::upArrow);
    EXPECT_FLOAT_EQ(services.state.volume(), 1);
}

TEST_F(HotkeyManagerTest, ModifiersLeaveEveryKeyAlone) {
    for (std::uint32_t bit = 16; bit < 32; ++bit) {
        const bool isOfNumberPad = bit == 21;
        EXPECT_EQ(press({.keyCode = KeyCode::digit1,
                         .modifierFlags = 1U << bit,
                         .charactersIgnoringModifiers = u"1"_s}),
                  isOfNumberPad ? consumed : passedOn)
            << bit;
    }
    EXPECT_EQ(press({.modifierFlags = 0xffff, .charactersIgnoringModifiers = u"m"_s}), consumed);
}

TEST_F(HotkeyManagerTest, AKeyThatIsHeldDownActsOnceUnlessItIsAnArrow) {
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
    EXPECT_NEAR(services.state.volume(), 0.7F, 0.001F);
}

TEST_F(HotkeyManagerTest, TextFieldsGetTheirKeysOnlyWhenThatIsWanted) {
    const KeyEvent event{.charactersIgnoringModifiers = u"q"_s,
                         .target = KeyEvent::Target::textField};
    EXPECT_EQ(press(event), consumed);
    services.preferences.setShortcutsInTextFields(false);
    EXPECT_EQ(press(event), passedOn);
    EXPECT_EQ(actions.calls.size(), 1);
    EXPECT_EQ(press(u"q"_s), consumed);
}

TEST_F(HotkeyManagerTest, OtherProgramsAreListenedToOnlyInGhostMode) {
    EXPECT_FALSE(events.globalKeys);
    services.state.setGhostMode(true);
    ASSERT_TRUE(events.globalKeys);
    events.globalKeys({.charactersIgnoringModifiers = u"m"_s});
    EXPECT_TRUE(services.state.isMuted());
    services.state.setGhostMode(false);
    EXPECT_FALSE(events.globalKeys);
    services.state.setGhostMode(true);
    keys.stop();
    EXPECT_FALSE(events.globalKeys || events.localKeys);
    services.state.setGhostMode(true);
    EXPECT_FALSE(events.globalKeys);
    keys.start(); // With ghost mode on already.
    EXPECT_TRUE(events.globalKeys && events.localKeys);
}

} // namespace
} // namespace orvane
