// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Origin.h"
#include "streaming/tool/YtDlpCommand.h"
#include "streaming/tool/YtDlpPlan.h"

#include <QCoroTask>

#include <expected>
#include <optional>
#include <stop_token>

namespace orvane {

class Clock;
class YtDlpRelease;

/// Why yt-dlp could not be installed. A value; any thread.
enum class YtDlpError { notInstalled, noPython, noReleaseFile };

/// Returns the text for the user.
[[nodiscard]] QString errorDescription(YtDlpError error);

/// Carries out a plan to install yt-dlp. Owned by `YtDlpTool`, which runs one plan
/// at a time; main thread, which it never blocks. A step that fails is followed by the next one.
class YtDlpInstaller {
public:
    /// `homebrewScripts` has the install script of Homebrew; nullopt leaves Homebrew out. `stop`
    /// ends the wait for Python.
    YtDlpInstaller(ToolRunner& tools, YtDlpRelease& release, Clock& clock,
                   std::optional<Origin> homebrewScripts, std::stop_token stop);

    using Installed = std::expected<YtDlpCommand, YtDlpError>;

    /// May take minutes.
    [[nodiscard]] QCoro::Task<Installed> install(YtDlpPlan plan);

private:
    struct StepResult {
        /// Whether a command succeeded.
        bool hasSucceeded = false;
        std::optional<YtDlpCommand> installed;
        YtDlpError error = YtDlpError::notInstalled;
    };

    [[nodiscard]] QCoro::Task<bool> ensurePython();
    [[nodiscard]] QCoro::Task<StepResult> runStep(YtDlpPlan plan, YtDlpPlan::Step step);
    [[nodiscard]] QCoro::Task<StepResult> runCommand(YtDlpPlan plan, YtDlpPlan::RunCommand command);
    [[nodiscard]] QCoro::Task<> installHomebrew();
    [[nodiscard]] QCoro::Task<StepResult> download();

    ToolRunner& m_tools;
    YtDlpRelease& m_release;
    Clock& m_clock;
    std::optional<Origin> m_homebrewScripts;
    std::stop_token m_stop;
};

} // namespace orvane
