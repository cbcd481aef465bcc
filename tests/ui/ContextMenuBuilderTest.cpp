// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/ContextMenuBuilder.h"

#include "app/Services.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

class ContextMenuBuilderTest : public testing::Test {
protected:
    [[nodiscard]] Menu build() const {
        return ContextMenuBuilder::build(services.registry, services.preferences, services.state);
    }

    QTemporaryDir folder;
    Services services{Environment{}, folder.filePath(u"preferences.json"_s), VideoOutput::software};
};

TEST_F(ContextMenuBuilderTest, ListsTheEnabledChannelsByCategory) {
    services.preferences.addCustomChannel(u"Mine"_s, u"My & own"_s);
    services.preferences.setEnabledChannelIDs({u"alarabiya"_s, u"custom_mine"_s});
    services.state.assignCurrentChannel(services.registry.channel(u"custom_mine"_s));
    const Menu expected{
        {.title = u"مميزة"_s},
        {.title = u"العربية"_s,
         .action = MenuAction::channelSelected,
         .representedObject = u"alarabiya"_s,
         .indentationLevel = 1},
        MenuItem::separator(),
        {.title = u"قنواتي"_s},
        {.title = u"My & own"_s,
         .action = MenuAction::channelSelected,
         .representedObject = u"custom_mine"_s,
         .isOn = true,
         .indentationLevel = 1},
        MenuItem::separator(),
    };
    EXPECT_EQ(build(), expected);
    services.preferences.setEnabledChannelIDs({});
    EXPECT_TRUE(build().isEmpty());
}

} // namespace
} // namespace orvane
