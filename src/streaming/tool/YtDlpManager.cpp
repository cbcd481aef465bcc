// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpManager.h"

#include "base/Logging.h"
#include "base/TaskScope.h"
#include "streaming/tool/YtDlpUpdater.h"

#include <cstdio>

namespace orvane {

using namespace Qt::StringLiterals;

YtDlpManager::YtDlpManager(YtDlpTool& tool, YtDlpUpdater& updater, TaskScope& background)
    : m_tool(tool), m_updater(updater), m_background(background) {}

QCoro::Task<YtDlpTool::Installed> YtDlpManager::ensureInstalled() {
    const YtDlpSearch search = YtDlpSearch::of(YtDlpUser::manager);
    const std::optional<YtDlpCommand> found = co_await m_tool.find(search);
    if (found) {
        startUpdateCheck(*found);
        co_return YtDlpTool::Installed(*found);
    }
    if (m_onInstalling)
        m_onInstalling(true);
    const YtDlpPlan plan = YtDlpPlan::ofManager();
    const YtDlpTool::Installed installed = co_await m_tool.install(plan);
    if (m_onInstalling)
        m_onInstalling(false);
    co_return installed;
}

void YtDlpManager::startUpdateCheck(const YtDlpCommand& command) {
    if (m_hasCheckedUpdate)
        return;
    m_hasCheckedUpdate = true;
    m_background.spawn(updateIfOutdated(command));
}

QCoro::Task<> YtDlpManager::updateIfOutdated(YtDlpCommand command) {
    const std::optional<QString> installed = co_await m_tool.version(command);
    if (!installed) {
        const YtDlpPlan plan = YtDlpPlan::ofManager();
        co_await m_tool.replaceIfBroken(command, plan);
        co_return;
    }
    const std::optional<QString> latest = co_await m_tool.release().latestVersion();
    qCInfo(logYtDlp).noquote() << "version" << *installed << "is installed, the newest is"
                               << latest.value_or(u"unknown"_s);
    // Versions are dates, whose order is that of their texts.
    if (!latest || *installed >= *latest)
        co_return;
    const QString line = u"[Orvane] yt-dlp update: "_s + *installed + u" → "_s + *latest;
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
    co_await m_updater.upgrade(*installed, *latest);
}

} // namespace orvane
