// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Origin.h"
#include "model/ChannelCategory.h"

#include <QHashFunctions>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace orvane {

/// One live TV channel of the video site. An immutable value; any thread. Equality and hashing use
/// the id alone.
class Channel {
public:
    Channel(QString id, QString nameAr, QString nameEn, QString handle, ChannelCategory category,
            std::optional<QString> videoId = std::nullopt);

    /// Returns a channel added by the user: its id is "custom_" followed by the handle in lower
    /// case; it has no Arabic name and no video id.
    [[nodiscard]] static Channel custom(const QString& handle, const QString& name);

    [[nodiscard]] const QString& id() const { return m_id; }
    [[nodiscard]] const QString& nameAr() const { return m_nameAr; }
    [[nodiscard]] const QString& nameEn() const { return m_nameEn; }
    /// Without the leading "@"; its case is preserved.
    [[nodiscard]] const QString& handle() const { return m_handle; }
    [[nodiscard]] ChannelCategory category() const { return m_category; }
    /// The video id of the permanent live broadcast, if known.
    [[nodiscard]] const std::optional<QString>& videoId() const { return m_videoId; }

    /// Returns the Arabic name, or the English one if that is empty.
    [[nodiscard]] const QString& displayName() const;

    /// Returns the URL of the channel's live page on `site`. The handle is inserted unchanged; the
    /// URL is invalid if that gives no valid one.
    [[nodiscard]] QUrl youtubeURL(const Origin& site) const;

    friend bool operator==(const Channel& a, const Channel& b) { return a.m_id == b.m_id; }

private:
    QString m_id;
    QString m_nameAr;
    QString m_nameEn;
    QString m_handle;
    ChannelCategory m_category;
    std::optional<QString> m_videoId;
};

[[nodiscard]] inline size_t qHash(const Channel& channel, size_t seed = 0) {
    return ::qHash(channel.id(), seed);
}

} // namespace orvane

template <>
struct std::hash<orvane::Channel> {
    size_t operator()(const orvane::Channel& channel) const noexcept { return qHash(channel); }
};
