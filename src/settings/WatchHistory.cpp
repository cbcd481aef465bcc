// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/WatchHistory.h"

#include "settings/UserDefaults.h"

#include <QHash>
#include <QJsonObject>

#include <algorithm>
#include <functional>
#include <utility>

namespace orvane {

namespace {

/// An object of days, each an object of channels with their seconds.
constexpr QLatin1StringView daysKey{"days"};

bool isOver(const QString& day, QDate today) {
    const QDate date = QDate::fromString(day, Qt::ISODate);
    return !date.isValid() || date.daysTo(today) >= WatchHistory::daysKept;
}

} // namespace

WatchHistory::WatchHistory(UserDefaults& store) : m_store(store) {}

void WatchHistory::add(const QString& channelId, std::chrono::seconds watched, QDate day) {
    QJsonObject days = m_store.value(daysKey).toObject();
    for (const QString& key : days.keys()) {
        if (isOver(key, day))
            days.remove(key);
    }
    const QString today = day.toString(Qt::ISODate);
    QJsonObject channels = days.value(today).toObject();
    channels[channelId] =
        channels.value(channelId).toDouble() + static_cast<double>(watched.count());
    days[today] = channels;
    m_store.set(daysKey, days);
}

QStringList WatchHistory::mostWatched(const QStringList& channelIds, qsizetype count,
                                      QDate today) const {
    const QJsonObject days = m_store.value(daysKey).toObject();
    QHash<QString, double> seconds;
    for (auto day = days.begin(); day != days.end(); ++day) {
        const QJsonObject channels = isOver(day.key(), today) ? QJsonObject() : day->toObject();
        for (auto channel = channels.begin(); channel != channels.end(); ++channel)
            seconds[channel.key()] += channel->toDouble();
    }
    QStringList watched = channelIds;
    watched.removeDuplicates();
    watched.removeIf([&](const QString& id) { return !(seconds.value(id) > 0); });
    std::ranges::sort(watched, std::less(), [&](const QString& id) {
        return std::pair(-seconds.value(id), channelIds.indexOf(id));
    });
    return watched.first(std::min(count, watched.size()));
}

} // namespace orvane
