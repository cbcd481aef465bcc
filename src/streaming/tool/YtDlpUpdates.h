// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <QDate>
#include <QString>

#include <functional>
#include <optional>
#include <variant>

namespace orvane {

/// The yt-dlp that channels are opened with. A value; any thread.
struct YtDlpStatus {
    /// Absolute path of the executable, or of Python for its module.
    QString program;
    QString version;
    /// The day of the release, which the version names; nullopt for a version of another form.
    std::optional<QDate> released;
    /// The version of a newer one on this machine, which opens a channel when this one is too old
    /// for the site; empty if there is none.
    QString newer;
};

/// How an update that the user asked for has ended. A value; any thread.
namespace YtDlpUpdateOutcome {
struct UpToDate {
    QString version;
};
struct Updated {
    /// Empty after a first installation.
    QString from;
    QString to;
};
struct Failed {
    /// A sentence for the user.
    QString reason;
};
using Value = std::variant<UpToDate, Updated, Failed>;
} // namespace YtDlpUpdateOutcome

/// What the settings window shows of yt-dlp and lets the user do with it. Main thread, which no
/// call blocks.
class YtDlpUpdates {
public:
    virtual ~YtDlpUpdates() = default;

    /// Returns nullopt if there is no yt-dlp that runs. Takes about a second.
    [[nodiscard]] virtual QCoro::Task<std::optional<YtDlpStatus>> status() = 0;

    /// Brings yt-dlp to its newest release, or installs it. `progress` is called with a sentence
    /// for the user at each step. Takes up to minutes; goes on when the caller is gone, which
    /// must then not be called any more: `progress` has to watch for that itself.
    [[nodiscard]] virtual QCoro::Task<YtDlpUpdateOutcome::Value>
    update(std::function<void(QString)> progress) = 0;
};

} // namespace orvane
