// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "streaming/tool/YtDlpTool.h"

#include <QCoroTask>

#include <functional>

namespace orvane {

class TaskScope;
class YtDlpUpdater;

/// Prepares yt-dlp at the start: finds it, installs it if it is missing (pip, Homebrew, or a
/// download of the released executable), and upgrades it in the background once in a run if there
/// is a newer release, or looks for another if it does not run. Owned by the composition root; main
/// thread, which it never blocks. Single steps fail silently; if all fail the result is a
/// `YtDlpError`.
class YtDlpManager {
public:
    YtDlpManager(YtDlpTool& tool, YtDlpUpdater& updater, TaskScope& background);

    /// Finds or installs yt-dlp. The first success of a run starts the search for a newer release,
    /// except after an installation. May take minutes if it has to install.
    [[nodiscard]] QCoro::Task<YtDlpTool::Installed> ensureInstalled();

    /// Sets the function that is called with true before installing, and with false afterwards.
    void onInstalling(std::function<void(bool)> callback) { m_onInstalling = std::move(callback); }

private:
    void startUpdateCheck(const YtDlpCommand& command);
    [[nodiscard]] QCoro::Task<> updateIfOutdated(YtDlpCommand command);

    YtDlpTool& m_tool;
    YtDlpUpdater& m_updater;
    TaskScope& m_background;
    bool m_hasCheckedUpdate = false;
    std::function<void(bool)> m_onInstalling;
};

} // namespace orvane
