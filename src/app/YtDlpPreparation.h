// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DeferredCall.h"
#include "base/NotificationCenter.h"

#include <QCoroTask>

#include <functional>
#include <vector>

namespace orvane {

class AppState;
class PlayerManager;
class TaskScope;
class Timeline;
class YtDlpManager;

/// Installs yt-dlp at the start if it is missing, and then opens the current channel again, as it
/// may have failed without yt-dlp. Owned by the application controller; main thread. If the
/// installation fails, the channel shows its own error.
class YtDlpPreparation {
public:
    /// All outlive it; `tasks` is joined before it is destroyed.
    struct Collaborators {
        YtDlpManager& ytDlp;
        const AppState& state;
        PlayerManager& player;
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
    /// Deferred, so that all observers receive an error before the next attempt begins.
    DeferredCall m_retry;
    bool m_wasInstalled = false;
    bool m_isRetryDue = false;
    bool m_isStopped = false;
};

} // namespace orvane
