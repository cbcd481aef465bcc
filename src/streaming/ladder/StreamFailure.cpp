// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/ladder/StreamFailure.h"

#include "language/Translation.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// A text that a failure contains, in any case of letters.
struct Row {
    QLatin1StringView text;
    StreamFailure failure;
};

constexpr Row rows[] = {
    {"not a bot"_L1, StreamFailure::botCheck},
    {"http error 429"_L1, StreamFailure::botCheck},
    {"too many requests"_L1, StreamFailure::botCheck},

    {"not currently live"_L1, StreamFailure::notLive},
    {"live event will begin"_L1, StreamFailure::notLive},
    {"live event has ended"_L1, StreamFailure::notLive},
    {"live stream is offline"_L1, StreamFailure::notLive},
    {"live stream recording is not available"_L1, StreamFailure::notLive},
    {"premieres in"_L1, StreamFailure::notLive},
    {"premiere will begin"_L1, StreamFailure::notLive},

    {"private video"_L1, StreamFailure::unavailable},
    {"video is private"_L1, StreamFailure::unavailable},
    {"members-only"_L1, StreamFailure::unavailable},
    {"members only"_L1, StreamFailure::unavailable},
    {"join this channel"_L1, StreamFailure::unavailable},
    {"this channel's members"_L1, StreamFailure::unavailable},
    {"has been removed"_L1, StreamFailure::unavailable},
    {"has been terminated"_L1, StreamFailure::unavailable},
    {"no longer available"_L1, StreamFailure::unavailable},
    {"does not exist"_L1, StreamFailure::unavailable},
    {"video unavailable"_L1, StreamFailure::unavailable},
    {"in your country"_L1, StreamFailure::unavailable},
    {"http error 404"_L1, StreamFailure::unavailable},

    {"name resolution"_L1, StreamFailure::offline},
    {"failed to resolve"_L1, StreamFailure::offline},
    {"name or service not known"_L1, StreamFailure::offline},
    {"no address associated"_L1, StreamFailure::offline},
    {"network is unreachable"_L1, StreamFailure::offline},
    {"no route to host"_L1, StreamFailure::offline},
    {"connection refused"_L1, StreamFailure::offline},
    {"connection reset"_L1, StreamFailure::offline},
    {"timed out"_L1, StreamFailure::offline},

    {"no longer supported"_L1, StreamFailure::outdated},
    {"no video formats"_L1, StreamFailure::outdated},
    {"requested format is not available"_L1, StreamFailure::outdated},
    {"only images are available"_L1, StreamFailure::outdated},
    {"po token"_L1, StreamFailure::outdated},
    {"javascript runtime"_L1, StreamFailure::outdated},
    {"failed to extract any player response"_L1, StreamFailure::outdated},
    {"signature extraction failed"_L1, StreamFailure::outdated},
    {"challenge solving failed"_L1, StreamFailure::outdated},
    {"page needs to be reloaded"_L1, StreamFailure::outdated},
    {"http error 403"_L1, StreamFailure::outdated},
};

constexpr auto errorPrefix = "ERROR:"_L1;

QStringList errorLines(const QString& text) {
    // A description of the whole failure may precede the first line.
    const qsizetype described = text.indexOf(u": "_s + errorPrefix);
    const bool isOnFirstLine = described >= 0 && !text.first(described).contains(u'\n');
    QStringList errors;
    for (const QString& line : text.sliced(isOnFirstLine ? described + 2 : 0).split(u'\n')) {
        const QString trimmed = line.trimmed();
        if (!trimmed.startsWith(errorPrefix))
            continue;
        // Without its text a line tells less than the whole.
        if (const QString error = trimmed.sliced(errorPrefix.size()).trimmed(); !error.isEmpty())
            errors.append(error);
    }
    return errors;
}

StreamFailure lookUp(const QString& text) {
    const auto* row = std::ranges::find_if(
        rows, [&](const Row& r) { return text.contains(r.text, Qt::CaseInsensitive); });
    return row == std::ranges::end(rows) ? StreamFailure::unknown : row->failure;
}

} // namespace

StreamFailure streamFailureOf(const QString& text) {
    // Warnings may name the age of a client that did not matter in the end: errors come first.
    const QStringList errors = errorLines(text);
    const StreamFailure failure = lookUp(errors.join(u'\n'));
    return failure == StreamFailure::unknown ? lookUp(text) : failure;
}

QString messageFor(const QString& text) {
    switch (streamFailureOf(text)) {
    case StreamFailure::outdated:
        return translated("Failure", "yt-dlp cannot read the site as it is now. Orvane keeps "
                                     "trying, with a newer yt-dlp if there is one.");
    case StreamFailure::notLive:
        return translated("Failure",
                          "The channel is not live now. Orvane looks again every few minutes.");
    case StreamFailure::botCheck:
        return translated("Failure", "The site wants to be sure that you are not a bot. Orvane "
                                     "tries again in a few minutes.");
    case StreamFailure::unavailable:
        return translated("Failure", "The stream is private, for members only, blocked in this "
                                     "country, or gone. Orvane keeps looking for it.");
    case StreamFailure::offline:
        return translated(
            "Failure",
            "No connection to the site. Orvane tries again, and at once when the network returns.");
    case StreamFailure::unknown:
        break;
    }
    const QStringList errors = errorLines(text);
    return errors.isEmpty() ? detailsFor(text) : leftToRight(errors.last());
}

QString detailsFor(const QString& text) {
    for (const char* prefix :
         {FailurePrefix::notResolved, FailurePrefix::notRun, FailurePrefix::configuration}) {
        const QLatin1StringView words(prefix);
        if (text.startsWith(words))
            return translated("Failure", prefix) + detailsFor(text.sliced(words.size()));
    }
    const QString own = translated("Failure", text);
    return own == text ? leftToRight(text) : own;
}

} // namespace orvane
