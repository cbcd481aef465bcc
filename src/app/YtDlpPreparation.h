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

/// Makes sure at every start that yt-dlp is there. If it had to be installed, opens the current
/// channel once more, as that may have failed for lack of it. Owned by the application controller;
/// main thread. If the installation fails, the channel shows its own error.
class YtDlpPreparation {
public:
    /// All outlive it; the scope is joined before it goes.
    struct Collaborators {
        YtDlpManager& ytDlp;
        const AppState& state;
        PlayerManager& player;
        NotificationCenter& notifications;
        const Timeline& timeline;
        TaskScope& tasks;
        /// Shows whether the tool is being installed.
        std::function<void(bool)> showInstalling;
    };

    explicit YtDlpPreparation(const Collaborators& collaborators);
    ~YtDlpPreparation();

    void start();
    /// After this no channel is opened any more.
    void stop();

private:
    [[nodiscard]] QCoro::Task<> prepare();
    void retryIfDue();

    Collaborators m_with;
    std::vector<NotificationCenter::Token> m_observers;
    /// Deferred, so that all observers of an error are told of it before the next attempt begins.
    DeferredCall m_retry;
    bool m_wasInstalled = false;
    bool m_isRetryDue = false;
    bool m_isStopped = false;
};

} // namespace orvane
