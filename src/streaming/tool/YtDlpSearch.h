// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/system/HostFileSystem.h"
#include "streaming/tool/BrokenTool.h"
#include "streaming/tool/ToolRunner.h"
#include "streaming/tool/YtDlpCommand.h"

#include <QCoroTask>
#include <QList>
#include <QString>

#include <optional>

namespace orvane {

/// The components that search for yt-dlp, each in an order of its own.
enum class YtDlpUser { manager, streamResolver, channelResolver };

/// An order in which yt-dlp is searched for: fixed places first, then `which`, then the Python
/// module. A value; any thread.
struct YtDlpSearch {
    struct Place {
        enum class Root { system, home };

        Root root = Root::system;
        /// Absolute, starting at the root.
        QString path;
    };
    enum class Accepts { existingFiles, executableFiles };
    enum class PythonModule { ignore, useIfItRuns, useUnchecked };
    /// How long the user's last result is used without another search.
    enum class Keeps { nothing, whileItExists, forTheRun };

    YtDlpUser user = YtDlpUser::manager;
    QList<Place> places;
    Accepts accepts = Accepts::executableFiles;
    /// The environment of `which`, or nullopt not to run it.
    std::optional<ToolEnvironment> which;
    PythonModule pythonModule = PythonModule::ignore;
    Keeps keeps = Keeps::nothing;
    /// Files to pass over.
    QList<BrokenTool> broken = {};

    [[nodiscard]] static YtDlpSearch of(YtDlpUser user);
};

/// The system's Python.
[[nodiscard]] QString systemPython(const HostFileSystem& host);

/// Returns the real paths of the search's fixed places. Any thread.
[[nodiscard]] QStringList placesOf(const HostFileSystem& host, const YtDlpSearch& search);

/// Returns the first of the search's fixed places that has a file it accepts. Any thread.
[[nodiscard]] std::optional<QString> findInPlaces(const HostFileSystem& host,
                                                  const YtDlpSearch& search);

/// Searches without using earlier results. `tools` must outlive the task.
[[nodiscard]] QCoro::Task<std::optional<YtDlpCommand>> searchForYtDlp(ToolRunner& tools,
                                                                      YtDlpSearch search);

} // namespace orvane
