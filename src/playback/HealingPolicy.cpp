// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/HealingPolicy.h"

#include <algorithm>

namespace orvane {

void HealingPolicy::loading(const QString& channelId, Time now) {
    endPlay(now);
    if (channelId != m_channelId)
        restart();
    m_channelId = channelId;
}

void HealingPolicy::playing(Time now) {
    if (!m_playingSince)
        m_playingSince = now;
}

HealingPolicy::Time HealingPolicy::failed(StreamFailure failure, Time now) {
    endPlay(now);
    if (failure == StreamFailure::notLive || failure == StreamFailure::botCheck)
        return longDelay;
    if (m_returnedAt && now - *m_returnedAt <= returnWindow &&
        m_failuresSinceReturn < returnDelays.size())
        return returnDelays.at(m_failuresSinceReturn++);
    return delays.at(std::min(m_failures++, delays.size() - 1));
}

void HealingPolicy::returned(Time now) {
    restart();
    m_returnedAt = now;
    m_failuresSinceReturn = 0;
}

void HealingPolicy::restart() {
    m_failures = 0;
}

void HealingPolicy::endPlay(Time now) {
    if (m_playingSince && now - *m_playingSince >= goodPlay)
        restart();
    m_playingSince.reset();
}

} // namespace orvane
