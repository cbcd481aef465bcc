// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/CustomChannelEntry.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace orvane {

using namespace Qt::StringLiterals;

QString encodeCustomChannels(const QList<CustomChannelEntry>& entries) {
    QJsonArray array;
    for (const CustomChannelEntry& entry : entries)
        array.append(QJsonObject{{u"handle"_s, entry.handle}, {u"name"_s, entry.name}});
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

std::optional<QList<CustomChannelEntry>> decodeCustomChannels(const QString& text) {
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (!document.isArray())
        return std::nullopt;
    QList<CustomChannelEntry> entries;
    for (const QJsonValue& element : document.array()) {
        const QJsonValue handle = element[u"handle"];
        const QJsonValue name = element[u"name"];
        if (!handle.isString() || !name.isString())
            return std::nullopt;
        entries.append({handle.toString(), name.toString()});
    }
    return entries;
}

} // namespace orvane
