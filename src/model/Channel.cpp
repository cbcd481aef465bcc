// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/Channel.h"

namespace orvane {

using namespace Qt::StringLiterals;

Channel::Channel(QString id, QString nameAr, QString nameEn, QString handle,
                 ChannelCategory category, std::optional<QString> videoId)
    : m_id(std::move(id)),
      m_nameAr(std::move(nameAr)),
      m_nameEn(std::move(nameEn)),
      m_handle(std::move(handle)),
      m_category(category),
      m_videoId(std::move(videoId)) {}

Channel Channel::custom(const QString& handle, const QString& name) {
    return {u"custom_"_s + handle.toLower(), QString(), name, handle, ChannelCategory::custom};
}

const QString& Channel::displayName() const {
    return m_nameAr.isEmpty() ? m_nameEn : m_nameAr;
}

QUrl Channel::youtubeURL(const Origin& site) const {
    return QUrl(site.address(u"/@"_s + m_handle + u"/live"_s));
}

} // namespace orvane
