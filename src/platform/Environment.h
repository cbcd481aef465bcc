// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <optional>

namespace orvane {

/// Scheme, host and optional port of a service, and nothing more. An immutable value; any thread.
class Origin {
public:
    /// Nothing unless `text` is an http or https address with a host and without path or query. One
    /// slash at the end is tolerated.
    [[nodiscard]] static std::optional<Origin> parse(const QString& text);

    /// `path` begins with "/" and is appended as it is.
    [[nodiscard]] QString address(QStringView path) const;

    /// The host alone.
    [[nodiscard]] QString host() const;

    friend bool operator==(const Origin&, const Origin&) = default;

private:
    explicit Origin(QString text);

    QString m_text;
};

/// How the picture is drawn; `automatic` asks the machine.
enum class VideoOutput { automatic, openGL, software };

/// What tests, packagers and offline demonstrations may change from outside. Read once by the
/// composition root and handed on as a value.
struct Environment {
    /// ORVANE_VIDEO_SITE; nothing turns the resolving of channels off.
    std::optional<Origin> videoSite;
    /// ORVANE_GITHUB_API, ORVANE_GITHUB and ORVANE_GITHUB_RAW: where the newest release of yt-dlp
    /// is asked for, where it and its checksums lie, and where installers lie; nothing turns each
    /// off.
    std::optional<Origin> gitHubApi;
    std::optional<Origin> gitHub;
    std::optional<Origin> gitHubRaw;
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

/// `path` with `folder` at its end, unless it is one of its entries already.
[[nodiscard]] QString searchPathWith(const QString& path, const QString& folder);

} // namespace orvane
