// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/YtDlpPreparation.h"

#include "app/Timeline.h"
#include "base/TaskScope.h"
#include "playback/ChannelHealing.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "streaming/ladder/StreamLadder.h"
#include "streaming/tool/YtDlpManager.h"

#include <utility>

namespace orvane {

YtDlpPreparation::YtDlpPreparation(const Collaborators& collaborators) : m_with(collaborators) {}

YtDlpPreparation::~YtDlpPreparation() = default;

void YtDlpPreparation::start() {
    m_observers.push_back(
        m_with.notifications.addObserver(AppNotification::streamError, [this] { retryIfDue(); }));
    m_observers.push_back(m_with.notifications.addObserver(AppNotification::streamResolved,
                                                           [this] { m_isRetryDue = false; }));
    m_with.tool.onNewer([this] {
        m_with.ladder.forget();
        m_with.healing.retryNow();
    });
    m_with.tasks.spawn(prepare());
}

void YtDlpPreparation::stop() {
    m_isStopped = true;
}

QCoro::Task<> YtDlpPreparation::prepare() {
    m_with.ytDlp.onInstalling([this](bool isInstalling) {
        m_wasInstalled = true;
        m_with.timeline.mark(isInstalling ? "installing" : "installed");
        m_with.showInstalling(isInstalling);
    });
    const YtDlpTool::Installed installed = co_await m_with.ytDlp.ensureInstalled();
    if (!installed || !m_wasInstalled || m_isStopped)
        co_return;
    // The channel may have failed already without yt-dlp, or may still do so.
    m_isRetryDue = true;
    if (std::holds_alternative<PlaybackState::Error>(m_with.state.playbackState()))
        retryIfDue();
}

void YtDlpPreparation::retryIfDue() {
    if (std::exchange(m_isRetryDue, false))
        m_with.healing.retryNow();
}

} // namespace orvane
