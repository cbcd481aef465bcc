// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Cancellation.h"
#include "streaming/tool/YtDlpUpdates.h"

#include <QCoroTask>
#include <QWidget>

class QLabel;
class QPushButton;

namespace orvane {

class TaskScope;

/// Returns what is known of the yt-dlp in one line: its version, its age on the day `today`, and
/// its place. Pure.
[[nodiscard]] QString describe(const std::optional<YtDlpStatus>& status, QDate today);

/// Shows which yt-dlp is used and how old it is, and updates it on request with its steps and the
/// outcome in words. Part of the general settings; main thread. An update goes on when this is
/// destroyed.
class YtDlpSection final : public QWidget {
    Q_OBJECT

public:
    /// Both outlive it.
    YtDlpSection(YtDlpUpdates& updates, TaskScope& tasks);

    /// Looks up the yt-dlp again. The outcome of the last update disappears.
    void refresh();

private:
    void lookUp();
    void update();
    [[nodiscard]] QCoro::Task<> showStatus(std::stop_token stop);
    [[nodiscard]] QCoro::Task<> runUpdate();
    void showOutcome(const YtDlpUpdateOutcome::Value& outcome);

    YtDlpUpdates& m_updates;
    TaskScope& m_tasks;
    QLabel* m_status;
    QPushButton* m_update;
    QLabel* m_outcome;
    Cancellation m_lookUp;
};

} // namespace orvane
