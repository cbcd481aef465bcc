// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// Why a channel does not play, as far as the text of the failure tells. Values and pure functions;
/// any thread. The texts are those of yt-dlp and of the media player, which change over the years:
/// what no row of the table recognises is `unknown`.
enum class StreamFailure {
    unknown,
    /// The selection of clients, or yt-dlp itself, is too old for the site.
    outdated,
    /// The channel is not live now, or not yet.
    notLive,
    /// The site takes the user for a bot.
    botCheck,
    /// Private, for members only, or gone.
    unavailable,
    /// No connection to the site.
    offline
};

/// What precedes the reason in the text of a failure. The texts of failures are English within the
/// program, as they are looked up in the table and written to the log.
namespace FailurePrefix {
inline constexpr const char* notResolved = QT_TRANSLATE_NOOP("Failure", "Stream resolve failed: ");
inline constexpr const char* notRun = QT_TRANSLATE_NOOP("Failure", "Failed to run yt-dlp: ");
inline constexpr const char* configuration =
    QT_TRANSLATE_NOOP("Failure", "yt-dlp's own configuration gets in the way: ");
} // namespace FailurePrefix

[[nodiscard]] StreamFailure streamFailureOf(const QString& text);

/// Returns the message for the user: what a recognised failure means and what Orvane does about it;
/// otherwise the last error of yt-dlp, or the text itself if it has none.
[[nodiscard]] QString messageFor(const QString& text);

/// Returns the whole text in the language of the interface, as far as it is the program's own.
[[nodiscard]] QString detailsFor(const QString& text);

} // namespace orvane
