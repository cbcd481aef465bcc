// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Origin.h"
#include "platform/media/VideoOutput.h"
#include "streaming/YtDlpRelease.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace orvane {

/// What tests, packagers and offline demonstrations may change from outside. Read once by the
/// composition root and handed on as a value.
struct Environment {
    /// ORVANE_VIDEO_SITE; nothing turns the resolving of channels off.
    std::optional<Origin> videoSite;
    /// ORVANE_GITHUB_API, ORVANE_GITHUB and ORVANE_GITHUB_RAW.
    YtDlpSources ytDlpSources;
    /// ORVANE_TELEMETRY: where signals of use are sent; nothing when nowhere.
    std::optional<Origin> telemetry;
    /// ORVANE_VIDEO_OUTPUT: "opengl", "software", or anything else for `automatic`.
    VideoOutput videoOutput = VideoOutput::automatic;
    /// ORVANE_TIMELINE: a file that receives a line for each milestone; empty for none.
    QString timelinePath;
    /// ORVANE_APPCAST, or what was built in: the whole address at which new versions are announced;
    /// empty when nowhere.
    QString appcast;
    /// The public key, in base64, that new versions are signed with. It can only be built in: an
    /// environment must not choose whom the program trusts.
    QByteArray appcastKey;

    [[nodiscard]] static Environment read();
};

} // namespace orvane
