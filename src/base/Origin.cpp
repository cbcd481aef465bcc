// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Origin.h"

#include <QUrl>

namespace orvane {

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

} // namespace orvane
