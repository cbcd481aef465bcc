// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <chrono>

namespace orvane {

class UserDefaults;

/// How long each channel was watched on each of the last 30 days. It is kept on this machine, in a
/// file of its own, and never sent. Owned by the composition root; main thread, which never waits
/// for the file. Entries that cannot be read count as none.
class WatchHistory {
public:
    static constexpr int daysKept = 30;

    /// `store` must outlive this object.
    explicit WatchHistory(UserDefaults& store);

    /// Also forgets the days that are too long ago.
    void add(const QString& channelId, std::chrono::seconds watched, QDate day);

    /// Returns those of the channels that were watched longest, at most `count`, the most first;
    /// none that was not watched at all.
    [[nodiscard]] QStringList mostWatched(const QStringList& channelIds, qsizetype count,
                                          QDate today) const;

private:
    UserDefaults& m_store;
};

} // namespace orvane
