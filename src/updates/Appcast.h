// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringView>
#include <QUrl>

#include <expected>
#include <optional>

namespace orvane {

/// A version that a feed announces for this system, with all that is needed to download it. Nothing
/// of it is trusted but to be shown as text and asked for: whoever holds the server writes the
/// feed.
struct AppcastItem {
    /// What versions are compared by.
    QString version;
    /// What a person is told.
    QString shownVersion;
    /// As it stands in the feed, with whatever markup.
    QString description;
    /// Where the notes lie; empty when the feed names no such place.
    QUrl notesLink;
    QUrl archive;
    qint64 length = 0;
    /// In base64, as it stands in the feed.
    QByteArray signature;
};

enum class AppcastError {
    notXml,   ///< Not well-formed, or with declarations of a document type.
    notAFeed, ///< XML of another kind.
};

/// The items of an RSS 2.0 feed that are for this system and can be downloaded, in their order. Any
/// thread.
[[nodiscard]] std::expected<QList<AppcastItem>, AppcastError> parseAppcast(const QByteArray& feed);

/// The newest of the items that is newer than `version`.
[[nodiscard]] std::optional<AppcastItem> newestUpdate(const QList<AppcastItem>& items,
                                                      QStringView version);

} // namespace orvane
