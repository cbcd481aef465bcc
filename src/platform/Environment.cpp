// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Environment.h"

#include <QStringList>
#include <QUrl>
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

Origin::Origin(QString text) : m_text(std::move(text)) {}

std::optional<Origin> Origin::parse(const QString& text) {
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    const bool isWeb = url.scheme() == u"http" || url.scheme() == u"https";
    const bool isBare = (url.path().isEmpty() || url.path() == u"/") && !url.hasQuery() &&
                        !url.hasFragment() && url.userInfo().isEmpty();
    if (!url.isValid() || !isWeb || url.host().isEmpty() || !isBare)
        return std::nullopt;
    return Origin(url.toString(QUrl::RemovePath | QUrl::FullyEncoded));
}

QString Origin::address(QStringView path) const {
    return m_text + path.toString();
}

QString Origin::host() const {
    return QUrl(m_text).host();
}

Environment Environment::read() {
    return {.videoSite = origin("ORVANE_VIDEO_SITE", u"https://www.youtube.com"_s),
            .gitHubApi = origin("ORVANE_GITHUB_API", u"https://api.github.com"_s),
            .gitHub = origin("ORVANE_GITHUB", u"https://github.com"_s),
            .gitHubRaw = origin("ORVANE_GITHUB_RAW", u"https://raw.githubusercontent.com"_s),
            .telemetry = origin("ORVANE_TELEMETRY", u"https://nom.telemetrydeck.com"_s),
            .videoOutput = orvane::videoOutput(qEnvironmentVariable("ORVANE_VIDEO_OUTPUT")),
            .timelinePath = qEnvironmentVariable("ORVANE_TIMELINE"),
            .appcast =
                qEnvironmentVariable("ORVANE_APPCAST", QStringLiteral(ORVANE_APPCAST)).trimmed(),
            .appcastKey = QByteArrayLiteral(ORVANE_APPCAST_KEY)};
}

QString searchPathWith(const QString& path, const QString& folder) {
    if (path.isEmpty())
        return folder;
    return path.split(u':').contains(folder) ? path : path + u':' + folder;
}

} // namespace orvane
