// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Cancellation.h"
#include "base/NotificationCenter.h"
#include "model/Channel.h"
#include "playback/PreparationPolicy.h"

#include <QCoroTask>
#include <QList>

#include <chrono>
#include <optional>
#include <stop_token>
#include <vector>

namespace orvane {

class AppState;
class ChannelRegistry;
class Clock;
class Preferences;
class StreamResolver;
class TaskScope;
class WatchHistory;

/// Resolves the addresses of the channels that the user may ask for next while another one plays
/// well: the two beside it, and the two favourites that were watched longest. Runs one yt-dlp at a
/// time, and ends it as soon as anything else is opened, paused or closed. Also counts how long
/// channels are watched, unless preparing is turned off. Owned by the desktop integration; main
/// thread. Failures are silent.
class ChannelPreparation {
public:
    /// All outlive it; `tasks` is joined before its destruction.
    struct Collaborators {
        const AppState& state;
        const ChannelRegistry& registry;
        const Preferences& preferences;
        WatchHistory& history;
        StreamResolver& resolver;
        NotificationCenter& notifications;
        Clock& clock;
        TaskScope& tasks;
    };

    explicit ChannelPreparation(const Collaborators& collaborators);
    ~ChannelPreparation();
    ChannelPreparation(const ChannelPreparation&) = delete;
    ChannelPreparation& operator=(const ChannelPreparation&) = delete;

    /// Whether the desktop wants data or power to be saved: then nothing is prepared.
    void setSaving(bool isSaving);

private:
    void opened(const Channel& channel);
    void update();
    void countWatching();
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] QList<Channel> candidates() const;
    [[nodiscard]] PreparationPolicy::Step nextStep(const QList<Channel>& channels) const;
    [[nodiscard]] QCoro::Task<> prepare(std::stop_token stop);

    const Collaborators m_with;
    std::vector<NotificationCenter::Token> m_observers;
    PreparationPolicy m_policy;
    bool m_isSaving = false;
    Cancellation m_run;
    std::optional<Channel> m_watched;
    std::chrono::milliseconds m_watchedSince{};
};

} // namespace orvane
