// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "streaming/tool/ToolRunner.h"
#include "streaming/tool/YtDlpSearch.h"

#include <QList>
#include <QStringList>

#include <variant>

namespace orvane {

/// A way to install yt-dlp: steps that are tried in turn until one has installed it. A value; any
/// thread.
struct YtDlpPlan {
    /// Runs the first of `programs` that exists; fails if none does. A leading "~" is the home.
    struct RunCommand {
        QStringList programs;
        QStringList arguments;
    };
    /// Installs Homebrew where it is missing. Never installs yt-dlp by itself.
    struct InstallHomebrew {};
    /// Downloads the released executable.
    struct Download {};
    using Step = std::variant<RunCommand, InstallHomebrew, Download>;

    /// What follows a command that succeeds although `confirmation` then finds no yt-dlp.
    enum class WhenNotFound { tryNextStep, fail };

    /// The component that installs by this plan.
    YtDlpUser user = YtDlpUser::manager;
    /// Whether to have the system install Python first, and to fail without it.
    bool needsPython = false;
    ToolEnvironment environment = ToolEnvironment::inherited;
    QList<Step> steps;
    /// Finds what a command has installed.
    YtDlpSearch confirmation;
    WhenNotFound whenNotFound = WhenNotFound::tryNextStep;

    [[nodiscard]] static YtDlpPlan ofManager();
    [[nodiscard]] static YtDlpPlan ofStreamResolver();
};

/// The commands that upgrade yt-dlp, tried in turn until one succeeds.
[[nodiscard]] QList<YtDlpPlan::RunCommand> upgradeCommands();

/// The places of Python, pip and Homebrew, the preferred one first.
[[nodiscard]] QStringList pythonPlaces();
[[nodiscard]] QStringList pipPlaces();
[[nodiscard]] QStringList brewPlaces();

} // namespace orvane
