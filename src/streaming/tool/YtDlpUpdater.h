// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "streaming/tool/YtDlpTool.h"
#include "streaming/tool/YtDlpUpdates.h"

#include <QCoroTask>
#include <QFuture>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace orvane {

class TaskScope;

/// Brings yt-dlp up to date: with pip or Homebrew, or else by a private copy of the release, which
/// only the ladder of calls uses; the user's own tools stay as they are. Owned by the composition
/// root; main thread, which it never blocks. An update goes on when its caller is gone.
class YtDlpUpdater final : public YtDlpUpdates {
public:
    /// Returns the yt-dlp with which channels play at present; nullopt if it is the one that the
    /// stream resolver finds.
    using Preferred = std::function<std::optional<YtDlpCommand>()>;

    YtDlpUpdater(YtDlpTool& tool, Preferred preferred, TaskScope& background);

    /// Upgrades in the background the yt-dlp whose version is `installed`. A private copy follows
    /// only if the release `latest` is then still more than 60 days newer than every yt-dlp here.
    [[nodiscard]] QCoro::Task<> upgrade(QString installed, QString latest);

    [[nodiscard]] QCoro::Task<std::optional<YtDlpStatus>> status() override;

    /// A second caller waits for the running update and gets its outcome. The private copy follows
    /// whenever the release is newer.
    [[nodiscard]] QCoro::Task<YtDlpUpdateOutcome::Value>
    update(std::function<void(QString)> progress) override;

private:
    using Outcome = YtDlpUpdateOutcome::Value;
    using Progress = std::function<void(QString)>;
    using Candidate = YtDlpTool::Candidate;

    [[nodiscard]] QCoro::Task<> runUpdate(Progress progress,
                                          std::shared_ptr<QPromise<Outcome>> promise);
    [[nodiscard]] QCoro::Task<Outcome> updateNow(Progress progress);
    [[nodiscard]] QCoro::Task<Outcome> installFirst();
    [[nodiscard]] QCoro::Task<Outcome> updateFrom(QString version, QString latest,
                                                  Progress progress);
    [[nodiscard]] QCoro::Task<> runUpgradeCommands();
    [[nodiscard]] QCoro::Task<YtDlpRelease::Downloaded> downloadPrivateCopy();

    YtDlpTool& m_tool;
    Preferred m_preferred;
    TaskScope& m_background;
    /// The running update, or the last one.
    QFuture<Outcome> m_update;
};

} // namespace orvane
