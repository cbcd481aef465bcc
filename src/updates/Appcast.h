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

/// A version that a feed announces for this system, with all that is needed to download it. Its
/// fields are untrusted, as anyone with access to the server can change the feed: they are only
/// shown as plain text or requested over https.
struct AppcastItem {
    /// For comparing versions.
    QString version;
    /// For the user.
    QString shownVersion;
    /// As in the feed, with its markup.
    QString description;
    /// The address of the release notes; may be empty.
    QUrl notesLink;
    QUrl archive;
    qint64 length = 0;
    /// In base64, as in the feed.
    QByteArray signature;
};

enum class AppcastError {
    notXml,   ///< Not well-formed, or with a document type declaration.
    notAFeed, ///< XML, but not RSS.
};

/// Returns the items of an RSS 2.0 feed that are for this system and can be downloaded, in the
/// order of the feed. Any thread.
[[nodiscard]] std::expected<QList<AppcastItem>, AppcastError> parseAppcast(const QByteArray& feed);

/// Returns the newest item, or nullopt if none is newer than `version`.
[[nodiscard]] std::optional<AppcastItem> newestUpdate(const QList<AppcastItem>& items,
                                                      QStringView version);

} // namespace orvane
