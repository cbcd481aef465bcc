// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/PreparationPolicy.h"

#include "model/AppConstants.h"

#include <algorithm>

namespace orvane {

PreparationPolicy::Step PreparationPolicy::next(const QList<Candidate>& candidates,
                                                Time now) const {
    std::optional<Time> earliest;
    for (qsizetype i = 0; i < candidates.size(); ++i) {
        const std::optional<Time> due = dueAt(candidates.at(i), now);
        if (!due)
            continue;
        const Time at = std::max(*due, allowedAt(now));
        if (at <= now)
            return Prepare{i};
        earliest = std::min(at, earliest.value_or(at));
    }
    if (!earliest)
        return Rest{};
    return Wait{*earliest - now};
}

void PreparationPolicy::switched(Time now) {
    m_switchedAt = now;
}

void PreparationPolicy::began(const QString& channelId, Time now) {
    m_begun[channelId] = now;
    m_runs.append(now);
    if (m_runs.size() > runsAtMost)
        m_runs.removeFirst();
}

void PreparationPolicy::abandoned(const QString& channelId) {
    m_begun.remove(channelId);
}

std::optional<PreparationPolicy::Time> PreparationPolicy::dueAt(const Candidate& candidate,
                                                                Time now) const {
    const auto begun = m_begun.constFind(candidate.channelId);
    if (begun == m_begun.constEnd() && !candidate.freshFor)
        return now;
    // What has failed ahead is left alone for as long as an address would have been valid.
    const Time again = candidate.freshFor ? now + *candidate.freshFor
                                          : *begun + Time(AppConstants::streamCacheTTL);
    const Time at = std::max(again, now);
    const bool isSwitching = m_switchedAt && at - *m_switchedAt < renewalWindow;
    return isSwitching ? std::optional(at) : std::nullopt;
}

PreparationPolicy::Time PreparationPolicy::allowedAt(Time now) const {
    return m_runs.size() < runsAtMost ? now : std::max(now, m_runs.first() + runsWindow);
}

} // namespace orvane
