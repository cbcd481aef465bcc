// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Origin.h"
#include "platform/media/view/VideoOutput.h"
#include "streaming/tool/YtDlpRelease.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace orvane {

/// The settings that tests, packagers and offline demonstrations can override with environment
/// variables. A value; the composition root reads it once.
struct Environment {
    /// ORVANE_VIDEO_SITE: the site of the channels; nullopt if invalid, then no channel is
    /// resolved.
    std::optional<Origin> videoSite;
    /// ORVANE_GITHUB_API, ORVANE_GITHUB and ORVANE_GITHUB_RAW.
    YtDlpSources ytDlpSources;
    /// ORVANE_TELEMETRY: the server for telemetry signals; nullopt if none are sent.
    std::optional<Origin> telemetry;
    /// ORVANE_VIDEO_OUTPUT: "opengl" or "software"; any other value means `automatic`.
    VideoOutput videoOutput = VideoOutput::automatic;
    /// ORVANE_TIMELINE: path of the file to which milestones are written; empty for none.
    QString timelinePath;
    /// ORVANE_APPCAST, or the built-in value: the full address of the feed of new versions; empty
    /// for none.
    QString appcast;
    /// The public key, in base64, that verifies the signatures of new versions. Always built in, as
    /// an environment variable must not decide which key the program trusts.
    QByteArray appcastKey;

    [[nodiscard]] static Environment read();
};

} // namespace orvane
