// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"

#include <QCoroTask>

#include <functional>
#include <vector>

namespace orvane {

class AppState;
class ChannelHealing;
class StreamLadder;
class TaskScope;
class Timeline;
class YtDlpManager;
class YtDlpTool;

/// Installs yt-dlp at the start if it is missing. Opens the current channel again after that, and
/// whenever a newer yt-dlp has come, as the channel may have failed without it. Owned by the
/// application controller; main thread. If the installation fails, the channel shows its own error.
class YtDlpPreparation {
public:
    /// All outlive it; `tasks` is joined before it is destroyed.
    struct Collaborators {
        YtDlpManager& ytDlp;
        YtDlpTool& tool;
        StreamLadder& ladder;
        const AppState& state;
        ChannelHealing& healing;
        NotificationCenter& notifications;
        const Timeline& timeline;
        TaskScope& tasks;
        /// Shows whether yt-dlp is being installed.
        std::function<void(bool)> showInstalling;
    };

    explicit YtDlpPreparation(const Collaborators& collaborators);
    ~YtDlpPreparation();

    void start();
    /// Prevents that a channel is opened from now on.
    void stop();

private:
    [[nodiscard]] QCoro::Task<> prepare();
    void retryIfDue();

    Collaborators m_with;
    std::vector<NotificationCenter::Token> m_observers;
    bool m_wasInstalled = false;
    bool m_isRetryDue = false;
    bool m_isStopped = false;
};

} // namespace orvane
