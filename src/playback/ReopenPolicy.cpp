// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ReopenPolicy.h"

namespace orvane {

void ReopenPolicy::returned(Time now) {
    m_returnedAt = now;
    m_attempts = 0;
    m_stuckSince.reset();
}

ReopenPolicy::Step ReopenPolicy::step(Situation situation, Time since, Time now) {
    if (now - m_returnedAt > window || m_attempts == maximumAttempts)
        return Step::finish;
    if (situation != Situation::stuck)
        m_stuckSince.reset();
    else if (!m_stuckSince)
        m_stuckSince = now;
    if (now - m_returnedAt < settleTime || !isDue(situation, since, now))
        return Step::wait;
    ++m_attempts;
    m_stuckSince.reset();
    return Step::reopen;
}

bool ReopenPolicy::isDue(Situation situation, Time since, Time now) const {
    switch (situation) {
    case Situation::stuck:
        return m_stuckSince && now - *m_stuckSince >= stuckLimit;
    case Situation::loading:
        return m_returnedAt - since > oldLoad;
    case Situation::inactive:
    case Situation::playing:
        break;
    }
    return false;
}

} // namespace orvane
