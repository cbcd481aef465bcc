// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/RecordingActions.h"
#include "support/StateFixture.h"
#include "ui/menus/ContextMenuBuilder.h"
#include "ui/menus/MenuRenderer.h"
#include "ui/menus/StatusMenuBuilder.h"

#include <QMenu>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::string_literals;

namespace {

QString action(const MenuItem& item) {
    switch (item.action) {
    case MenuAction::none:
        return {};
    case MenuAction::channelSelected:
        return u" > channel "_s + item.representedObject;
    case MenuAction::resolutionSelected:
        return u" > resolution "_s + item.representedObject;
    case MenuAction::sleepTimer:
        return u" > sleep %1"_s.arg(item.tag);
    case MenuAction::cancelSleepTimer:
        return u" > cancel"_s;
    case MenuAction::openSettings:
        return u" > settings"_s;
    case MenuAction::addChannel:
        return u" > add"_s;
    case MenuAction::toggleGhostMode:
        return u" > ghost"_s;
    case MenuAction::goBack:
        return u" > back"_s;
    case MenuAction::goLive:
        return u" > live"_s;
    case MenuAction::toggleSoundOnly:
        return u" > sound"_s;
    case MenuAction::showAbout:
        return u" > about"_s;
    case MenuAction::checkForUpdates:
        return u" > updates"_s;
    case MenuAction::terminate:
        return u" > terminate"_s;
    }
    return u" > ?"_s;
}

/// Writes a whole menu as text: one line per item, a bar before those of a submenu, a star for a
/// check mark, a dot per step of indentation, a caret for the Command key.
QString written(const Menu& menu, const QString& before = {}) {
    QString text;
    for (const MenuItem& item : menu) {
        text += u'\n' + before;
        if (item.isSeparator) {
            text += u"---"_s;
            continue;
        }
        text += QString(item.indentationLevel, u'.') + (item.isOn ? u"* "_s : QString());
        text += item.title + action(item) + (item.isEnabled ? QString() : u" (off)"_s);
        if (!item.keyEquivalent.isEmpty())
            text += (item.modifierMask == ModifierMask::command ? u" ^"_s : u" "_s) +
                    item.keyEquivalent;
        text += written(item.submenu, before + u"| "_s);
    }
    return text;
}

std::string replaced(std::string text, std::string_view what, std::string_view by) {
    return text.replace(text.find(what), what.size(), by);
}

class MenuTest : public testing::Test, protected test::StateFixture {
protected:
    [[nodiscard]] std::string status() const {
        return written(StatusMenuBuilder::build(sources)).toStdString();
    }
    [[nodiscard]] std::string
    context(StatusItemPresence statusItem = StatusItemPresence::present) const {
        return written(ContextMenuBuilder::build(sources, statusItem)).toStdString();
    }

    std::optional<int> timer;
    MenuSources sources{.registry = registry,
                        .preferences = preferences,
                        .state = state,
                        .sleepTimerMinutes = [this] { return timer; }};
};

const std::string statusHead = R"(
Orvane
---
👻 Enable Ghost Mode > ghost g
---)"s;

const std::string statusTail = R"(
Add Channel... > add ^n
Settings... > settings ^,
Check for Updates... > updates
About Orvane > about
---
Quit Orvane > terminate ^q)"s;

const std::string contextBody = R"(
Resolution
| 360p > resolution 360p
| * 480p > resolution 480p
| 720p > resolution 720p
| Best > resolution Best
---
👻 Ghost Mode > ghost g
Sound Only > sound (off) s
---
10 Seconds Back > back (off) backspace
Go to Live > live (off) end
---
Sleep Timer
| 15 minutes > sleep 15
| 30 minutes > sleep 30
| 60 minutes > sleep 60
| 90 minutes > sleep 90
| 120 minutes > sleep 120
---)"s;

const std::string contextTail = contextBody + R"(
Settings... > settings ^,
Quit Orvane > terminate ^q)"s;

TEST_F(MenuTest, ChannelsFollowTheirCategories) {
    QStringList ids;
    for (const Channel& channel : registry.all().first(12))
        ids.prepend(channel.id());
    preferences.setFavoriteChannelIDs(ids);
    preferences.addCustomChannel(u"Mine"_s, u"My & own"_s);
    // A favourite that is not shown counts too, so the numbers have gaps.
    preferences.setEnabledChannelIDs(
        {ids.last(), ids.at(10), ids.at(1), u"cgtn"_s, u"custom_mine"_s});
    state.assignCurrentChannel(registry.channel(u"custom_mine"_s));
    const std::string tail = replaced(contextTail, "sound (off)", "sound");
    EXPECT_EQ(status(), statusHead + R"(
مميزة
العربية > channel alarabiya
العربية الحدث > channel alhadath
---
دولي بالإنجليزية
France 24 EN > channel france24en 2
CGTN > channel cgtn
---
قنواتي
* My & own > channel custom_mine
---)"s + statusTail);
    EXPECT_EQ(written(withSubmenus(ContextMenuBuilder::build(sources, StatusItemPresence::present)))
                  .toStdString(),
              R"(
مميزة
| العربية > channel alarabiya
| العربية الحدث > channel alhadath
دولي بالإنجليزية
| France 24 EN > channel france24en
| CGTN > channel cgtn
قنواتي
| * My & own > channel custom_mine
---)"s + tail);
    EXPECT_EQ(context(), R"(
مميزة
.العربية > channel alarabiya
.العربية الحدث > channel alhadath
---
دولي بالإنجليزية
.France 24 EN > channel france24en
.CGTN > channel cgtn
---
قنواتي
.* My & own > channel custom_mine
---)"s + tail);
}

TEST_F(MenuTest, TimeAndSoundCanActWhenThereIsSomethingToActOn) {
    preferences.setEnabledChannelIDs({});
    state.assignCurrentChannel(registry.all().first());
    state.setLivePosition({.behind = std::chrono::seconds(40), .canGoBack = true});
    state.setSoundOnly(true);
    EXPECT_EQ(context(), replaced(replaced(replaced(contextTail, "Sound Only > sound (off)",
                                                    "* Sound Only > sound"),
                                           "> back (off)", "> back"),
                                  "> live (off)", "> live"));
    EXPECT_EQ(status(), replaced(statusHead, "> ghost g\n", "> ghost g\n* Sound Only > sound s\n") +
                            statusTail)
        << "the only menu there is then";
}

TEST_F(MenuTest, EmptyCategoriesHaveNoHeader) {
    preferences.setEnabledChannelIDs({});
    EXPECT_EQ(status(), statusHead + statusTail);
    EXPECT_EQ(context(), contextTail);
}

TEST_F(MenuTest, GhostModeAndARunningTimerShow) {
    preferences.setEnabledChannelIDs({});
    state.setGhostMode(true);
    timer = 30;
    state.setSleepTimerRemaining(61);
    EXPECT_EQ(status(),
              replaced(statusHead, "👻 Enable Ghost Mode", "* ✅ Disable Ghost Mode") + statusTail);
    EXPECT_EQ(context(),
              replaced(replaced(replaced(contextTail, "👻 Ghost Mode", "* 👻 Ghost Mode"),
                                "30 minutes > sleep 30", "* 30 minutes > sleep 30"),
                       "> sleep 120\n",
                       "> sleep 120\n| ---\n| 2 minutes left\n| Cancel Timer > cancel\n"));
}

TEST_F(MenuTest, AnOpenMenuKeepsItsEntriesAndRenewsItsMarks) {
    test::RecordingActions actions;
    preferences.setEnabledChannelIDs({u"alarabiya"_s, u"cgtn"_s});
    QMenu menu;
    renderMenu(StatusMenuBuilder::build(sources), actions, menu);
    const QList<QAction*> entries = menu.actions();
    menu.popup({});
    state.setGhostMode(true);
    state.assignCurrentChannel(registry.channel(u"cgtn"_s));
    renderMenu(StatusMenuBuilder::build(sources), actions, menu);
    EXPECT_EQ(menu.actions(), entries);
    EXPECT_TRUE(entries[2]->isChecked() && entries[2]->text().contains(u"Disable"_s));
    EXPECT_TRUE(entries[8]->isChecked());
    preferences.setEnabledChannelIDs({});
    renderMenu(StatusMenuBuilder::build(sources), actions, menu);
    EXPECT_EQ(menu.actions(), entries);
    menu.hide();
    renderMenu(StatusMenuBuilder::build(sources), actions, menu);
    EXPECT_LT(menu.actions().size(), entries.size());
}

TEST_F(MenuTest, WithoutAStatusItemTheContextMenuIsComplete) {
    preferences.setEnabledChannelIDs({});
    EXPECT_EQ(context(StatusItemPresence::absent), contextBody + statusTail);
}

} // namespace
} // namespace orvane
