// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Services.h"
#include "support/EventLoop.h"
#include "ui/menus/ContextMenuBuilder.h"
#include "ui/menus/StatusMenuBuilder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <string_view>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::string_literals;
using test::runUntil;

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
    case MenuAction::showAbout:
        return u" > about"_s;
    case MenuAction::checkForUpdates:
        return u" > updates"_s;
    case MenuAction::terminate:
        return u" > terminate"_s;
    }
    return u" > ?"_s;
}

/// Everything about a menu: a line for each item, those of a submenu behind a bar. A star is a
/// check mark, a dot a step of indentation, a caret the Command key.
QString written(const Menu& menu, const QString& before = {}) {
    QString text;
    for (const MenuItem& item : menu) {
        text += u'\n' + before;
        if (item.isSeparator) {
            text += u"---"_s;
            continue;
        }
        text += QString(item.indentationLevel, u'.') + (item.isOn ? u"* "_s : QString());
        text += item.title + action(item);
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

class MenuTest : public testing::Test {
protected:
    [[nodiscard]] std::string status() const {
        return written(StatusMenuBuilder::build(sources)).toStdString();
    }
    [[nodiscard]] std::string
    context(StatusItemPresence statusItem = StatusItemPresence::present) const {
        return written(ContextMenuBuilder::build(sources, statusItem)).toStdString();
    }

    QTemporaryDir folder;
    Services services{Environment{}, folder.filePath(u"preferences.json"_s), VideoOutput::software};
    MenuSources sources{.registry = services.registry,
                        .preferences = services.preferences,
                        .state = services.state,
                        .sleepTimer = services.sleepTimer};
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

TEST_F(MenuTest, WithFreshPreferences) {
    const std::string channels = R"(
مميزة
العربية > channel alarabiya ^1
العربية الحدث > channel alhadath ^2
الجزيرة > channel aljazeera ^3
الجزيرة مباشر > channel aljazeeralive ^4
---
السعودية والخليج
الإخبارية السعودية > channel saudinews
سكاي نيوز عربية > channel skynewsarabia
تلفزيون الشرق > channel asharqnews
قناة أبوظبي > channel abudhabitv
---
قرآن وسنة
قناة القرآن الكريم > channel saudiquran
قناة السنة النبوية > channel saudisunnah
---
دولي بالإنجليزية
France 24 EN > channel france24en
DW News > channel dwnews
Euronews > channel euronews
TRT World > channel trtworld
ABC News > channel abcnews
NBC News NOW > channel nbcnews
CBS News 24/7 > channel cbsnews
LiveNOW from FOX > channel livenowfox
Sky News UK > channel skynewsuk
CGTN > channel cgtn
WION > channel wion
الجزيرة الوثائقية > channel aljazeeradoc
العربية English > channel alarabiyaen
---)";
    EXPECT_EQ(status(), statusHead + channels + statusTail);
    // The context menu indents the channels and shows no numbers.
    const std::regex channel("\n([^\n]+ > channel [a-z0-9]+)( \\^[0-9]+)?");
    EXPECT_EQ(context(), std::regex_replace(channels, channel, "\n.$1") + contextTail);
}

TEST_F(MenuTest, WithEverythingDisabled) {
    services.preferences.setEnabledChannelIDs({});
    EXPECT_EQ(status(), statusHead + statusTail);
    EXPECT_EQ(context(), contextTail);
}

TEST_F(MenuTest, WithTwelveFavouritesOfWhichSomeAreNotShown) {
    QStringList ids;
    for (const Channel& channel : services.registry.all().first(12))
        ids.prepend(channel.id());
    services.preferences.setFavoriteChannelIDs(ids);
    services.preferences.addCustomChannel(u"Mine"_s, u"My & own"_s);
    services.preferences.setEnabledChannelIDs({ids.last(), ids.at(1), u"custom_mine"_s});
    services.state.assignCurrentChannel(services.registry.channel(u"custom_mine"_s));
    EXPECT_EQ(status(), statusHead + R"(
مميزة
العربية > channel alarabiya ^12
---
دولي بالإنجليزية
France 24 EN > channel france24en ^2
---
قنواتي
* My & own > channel custom_mine
---)"s + statusTail);
    EXPECT_EQ(context(), R"(
مميزة
.العربية > channel alarabiya
---
دولي بالإنجليزية
.France 24 EN > channel france24en
---
قنواتي
.* My & own > channel custom_mine
---)"s + contextTail);
}

TEST_F(MenuTest, InGhostModeAndWithARunningTimer) {
    services.preferences.setEnabledChannelIDs({});
    services.state.setGhostMode(true);
    services.sleepTimer.schedule(30);
    EXPECT_EQ(status(),
              replaced(statusHead, "👻 Enable Ghost Mode", "* ✅ Disable Ghost Mode") + statusTail);
    EXPECT_EQ(context(),
              replaced(replaced(contextTail, "👻 Ghost Mode", "* 👻 Ghost Mode"), "> sleep 120\n",
                       "> sleep 120\n| ---\n| Cancel Timer > cancel\n"));
    services.sleepTimer.cancel();
    EXPECT_FALSE(context().find("Cancel") != std::string::npos);
    ASSERT_TRUE(runUntil([&] { return services.tasks.count() == 0; }));
}

TEST_F(MenuTest, WithoutAStatusItemTheContextMenuHasItAll) {
    services.preferences.setEnabledChannelIDs({});
    EXPECT_EQ(context(StatusItemPresence::absent), contextBody + statusTail);
}

} // namespace
} // namespace orvane
