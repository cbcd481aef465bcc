// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Environment.h"

#include <QtGlobal>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

std::optional<Origin> origin(const char* variable, const QString& fallback) {
    return Origin::parse(qEnvironmentVariable(variable, fallback));
}

VideoOutput videoOutput(const QString& text) {
    if (text == u"opengl")
        return VideoOutput::openGL;
    if (text == u"software")
        return VideoOutput::software;
    return VideoOutput::automatic;
}

} // namespace

Environment Environment::read() {
    return {
        .videoSite = origin("ORVANE_VIDEO_SITE", u"https://www.youtube.com"_s),
        .ytDlpSources = {.gitHubApi = origin("ORVANE_GITHUB_API", u"https://api.github.com"_s),
                         .gitHub = origin("ORVANE_GITHUB", u"https://github.com"_s),
                         .gitHubRaw =
                             origin("ORVANE_GITHUB_RAW", u"https://raw.githubusercontent.com"_s)},
        .telemetry = origin("ORVANE_TELEMETRY", u"https://nom.telemetrydeck.com"_s),
        .videoOutput = orvane::videoOutput(qEnvironmentVariable("ORVANE_VIDEO_OUTPUT")),
        .timelinePath = qEnvironmentVariable("ORVANE_TIMELINE"),
        .appcast = qEnvironmentVariable("ORVANE_APPCAST", QStringLiteral(ORVANE_APPCAST)).trimmed(),
        .appcastKey = QByteArrayLiteral(ORVANE_APPCAST_KEY)};
}

} // namespace orvane
