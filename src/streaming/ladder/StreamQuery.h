// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/StreamAddress.h"
#include "model/Resolution.h"
#include "platform/system/HostFileSystem.h"
#include "streaming/ladder/Rung.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace orvane {

/// One question to yt-dlp: the address of the live stream on a page. A value; any thread.
struct StreamQuery {
    Rung rung = Rung::usual;
    Resolution resolution = Resolution::r480;
    QString page;
    /// The JavaScript runtimes that yt-dlp may use, each in the form "node:/usr/bin/node"; only for
    /// the rung of that name.
    QStringList runtimes;

    /// Returns yt-dlp's own arguments.
    [[nodiscard]] QStringList arguments() const;

    /// Reads what yt-dlp has printed: one address, or, on the rungs that allow it, one for the
    /// picture and one for the sound. Returns nullopt for anything else.
    [[nodiscard]] std::optional<StreamAddress> read(const QString& printed) const;
};

/// yt-dlp's option that allows a JavaScript runtime; its older versions do not have it.
[[nodiscard]] QString runtimeOption();

/// Returns the runtimes on this machine that yt-dlp can use, for `StreamQuery::runtimes`.
[[nodiscard]] QStringList installedRuntimes(const HostFileSystem& host);

} // namespace orvane
