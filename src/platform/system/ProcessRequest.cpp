// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/ProcessRequest.h"

#include <QStringDecoder>

#include <algorithm>

namespace orvane {

void CapturedOutput::append(const QByteArray& more, qsizetype limit) {
    const qsizetype room = limit - bytes.size();
    bytes.append(more.first(std::min(room, more.size())));
    isTruncated = isTruncated || more.size() > room;
}

std::optional<QString> CapturedOutput::text() const {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString decoded = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(decoded));
}

} // namespace orvane
