// SPDX-License-Identifier: GPL-3.0-or-later
#include "state/AppState.h"

#include "model/BuiltInChannels.h"
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "state/AppNotification.h"
#include "state/ChannelRegistry.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

class AppStateTest : public testing::Test {
protected:
    /// Records the last word of the topic's name and the text that `read` returns.
    template <class Payload>
    void watch(Topic<Payload> topic, std::function<QString(const Payload&)> read) {
        m_tokens.push_back(notifications.addObserver(topic, [=, this](const Payload& payload) {
            const std::string_view word = topic.name.substr(topic.name.rfind('.') + 1);
            log += QString::fromLatin1(word.data(), qsizetype(word.size())) + u' ' + read(payload);
        }));
    }

    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(u"preferences.json"_s)};
    Preferences preferences{defaults};
    NotificationCenter notifications;
    AppState state{preferences, notifications};
    QStringList log;

private:
    std::vector<NotificationCenter::Token> m_tokens;
};

TEST_F(AppStateTest, StartsFromThePreferences) {
    preferences.setVolume(0.25F);
    preferences.setMuted(true);
    preferences.setResolution(Resolution::r720);
    preferences.setGhostModeEnabled(true);
    const AppState fresh(preferences, notifications);
    EXPECT_FALSE(fresh.currentChannel());
    EXPECT_TRUE(std::holds_alternative<PlaybackState::Idle>(fresh.playbackState()));
    EXPECT_EQ(fresh.volume(), 0.25F);
    EXPECT_TRUE(fresh.isMuted());
    EXPECT_EQ(fresh.resolution(), Resolution::r720);
    EXPECT_TRUE(fresh.isGhostMode());
    EXPECT_EQ(fresh.sleepTimerRemaining(), 0);
    EXPECT_FALSE(fresh.isFullscreen());
}

TEST_F(AppStateTest, WritesThePreferenceBeforeEveryAnnouncement) {
    watch<bool>(AppNotification::muteChanged,
                [this](bool isMuted) { return QString::number(isMuted && preferences.isMuted()); });
    watch<float>(AppNotification::volumeChanged,
                 [this](float volume) { return QString::number(volume + preferences.volume()); });
    watch<Resolution>(AppNotification::resolutionChanged, [this](Resolution resolution) {
        return rawValue(resolution) + rawValue(preferences.resolution());
    });
    watch<bool>(AppNotification::ghostModeChanged, [this](bool isOn) {
        return QString::number(isOn && preferences.ghostModeEnabled());
    });
    state.setMuted(true);
    state.setMuted(true);
    state.setVolume(0.5F);
    state.setResolution(Resolution::rBest);
    state.setResolution(Resolution::rBest);
    state.setGhostMode(!state.isGhostMode());
    state.setSleepTimerRemaining(5);
    state.setFullscreen(true);
    EXPECT_EQ(log, (QStringList{u"muteChanged 1"_s, u"muteChanged 1"_s, u"volumeChanged 1"_s,
                                u"resolutionChanged BestBest"_s, u"resolutionChanged BestBest"_s,
                                u"ghostModeChanged 1"_s}));
}

TEST_F(AppStateTest, StoresTheChannelAfterItAnnouncesIt) {
    const auto stored = [this] { return preferences.lastChannelID().value_or(u"absent"_s); };
    watch<std::optional<Channel>>(AppNotification::channelChanged, [&](const auto& channel) {
        return (channel ? channel->id() : u"none"_s) + u" after "_s + stored();
    });
    const Channel first = builtInChannels().first();
    state.assignCurrentChannel(first);
    state.setCurrentChannel(first);
    state.setCurrentChannel(std::nullopt);
    EXPECT_EQ(stored(), QString());
    EXPECT_EQ(log, (QStringList{u"channelChanged alarabiya after absent"_s,
                                u"channelChanged alarabiya after absent"_s,
                                u"channelChanged none after alarabiya"_s}));
}

TEST_F(AppStateTest, AnnouncesPlaybackWithItsData) {
    const auto id = [](const Channel& channel) { return channel.id(); };
    watch<Channel>(AppNotification::streamLoading, id);
    watch<Channel>(AppNotification::streamResolved, id);
    watch<QString>(AppNotification::streamError, [](const QString& message) { return message; });
    const Channel channel = builtInChannels().at(1);
    state.setLoading(channel);
    state.setPlaying(channel);
    state.setError(channel, u"Stream unavailable"_s);
    EXPECT_EQ(log, (QStringList{u"streamLoading alhadath"_s, u"streamResolved alhadath"_s,
                                u"streamError Stream unavailable"_s}));
    const auto* error = std::get_if<PlaybackState::Error>(&state.playbackState());
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->channel, channel);
    EXPECT_FALSE(state.currentChannel());
}

TEST_F(AppStateTest, RegistryFollowsThePreferences) {
    const ChannelRegistry registry(preferences);
    EXPECT_EQ(registry.all().size(), 23);
    EXPECT_TRUE(registry.channels(ChannelCategory::custom).isEmpty());
    EXPECT_EQ(registry.featured().size(), 4);
    EXPECT_EQ(registry.channels(ChannelCategory::international).last().id(), u"alarabiyaen"_s);

    preferences.addCustomChannel(u"MyChannel"_s, u"Mine"_s);
    EXPECT_EQ(registry.all().size(), 24);
    const std::optional<Channel> mine = registry.channel(u"custom_mychannel"_s);
    ASSERT_TRUE(mine);
    EXPECT_EQ(mine->handle(), u"MyChannel"_s);
    EXPECT_EQ(mine->displayName(), u"Mine"_s);
    EXPECT_FALSE(mine->videoId());
    EXPECT_FALSE(registry.channel(u"custom_MyChannel"_s));
    EXPECT_FALSE(registry.channel(u"AlArabiya"_s));
}

} // namespace
} // namespace orvane
