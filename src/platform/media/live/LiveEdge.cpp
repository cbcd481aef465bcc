// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/live/LiveEdge.h"

#include <algorithm>
#include <cmath>

namespace orvane {

namespace {

using Seconds = LiveEdge::Seconds;

/// A little slower than the clock, so that an edge that was taken for later than it is comes true.
constexpr double edgeSpeed = 0.97;
/// What arrives may be so much older than the edge: a long segment. More is a site that stands.
constexpr double longestWait = 15;
/// Times of the stream that differ by more than they should have a break between them.
constexpr double backwardBreak = 2;
constexpr double forwardBreak = 20;
/// Less than this is live.
constexpr Seconds liveTolerance{0.7};
constexpr Seconds arrivalTolerance{2};
constexpr int samplesForArrival = 3;
/// Nearer to the end the player may find nothing yet.
constexpr double margin = 1;
/// Nearer to the beginning it may have dropped, since the last sample, what begins with one key
/// frame: a share of what is kept, as it drops nothing before that is much.
constexpr double marginShare = 0.1;
constexpr double longestMargin = 6;
constexpr Seconds leastKept{2};

} // namespace

Seconds LiveEdge::followEdge(const Sample& sample, TimePoint now) {
    if (!m_last) {
        m_edge = sample.end;
        return Seconds(0);
    }
    const Seconds passed = now - m_at;
    m_edge += edgeSpeed * passed.count();
    const bool isBroken =
        sample.end < m_last->end - backwardBreak || sample.end > m_edge + forwardBreak;
    if (isBroken)
        ++m_breaks;
    m_edge = isBroken ? sample.end : std::clamp(m_edge, sample.end, sample.end + longestWait);
    return passed;
}

void LiveEdge::followPosition(const Sample& sample, Seconds passed) {
    if (!m_last)
        return;
    const double step = sample.position - m_last->position;
    const double longestStep = sample.isAdvancing ? passed.count() : 0;
    if (step >= -backwardBreak && step <= longestStep + backwardBreak)
        return;
    m_breaks = std::max(m_breaks - 1, 0);
    m_begin = sample.position;
}

bool LiveEdge::isOnTheWay(Jump& jump, double position, Seconds passed) {
    const double distance = position - jump.target;
    const bool hasArrived =
        distance >= -backwardBreak && distance <= passed.count() + backwardBreak;
    return !hasArrived && --jump.samplesLeft > 0;
}

void LiveEdge::sampled(const Sample& sample, TimePoint now) {
    const Seconds passed = followEdge(sample, now);
    m_at = now;
    if (m_jump && isOnTheWay(*m_jump, sample.position, passed)) {
        // An answer that is older than the jump.
        m_last = sample;
        m_last->position = m_jump->target;
        return;
    }
    if (!m_jump)
        followPosition(sample, passed);
    compare(Seconds(m_edge - sample.position), passed, sample.isAdvancing);
    m_last = sample;
    m_jump.reset();
}

void LiveEdge::compare(Seconds distance, Seconds passed, bool isAdvancing) {
    if (m_breaks > 0) {
        if (!m_isLive && !isAdvancing)
            m_behind += passed;
    } else if (m_isLive && !m_jump) {
        m_lead = std::max(distance, Seconds(0));
    } else {
        m_behind = std::max(distance - m_lead, Seconds(0));
        // The player may not have found the place.
        m_isLive = m_isLive ? m_behind < arrivalTolerance : isAdvancing && m_behind < liveTolerance;
    }
}

void LiveEdge::jumped(double target) {
    if (!m_last)
        return;
    m_behind = std::max(behind() + Seconds(m_last->position - target), Seconds(0));
    m_isLive = m_behind < liveTolerance;
    m_last->position = target;
    m_jump = Jump{.target = target, .samplesLeft = samplesForArrival};
}

Seconds LiveEdge::kept() const {
    // What was kept before a break has other times.
    Seconds kept{0};
    if (m_last && m_last->start)
        kept = Seconds(std::max(m_last->position - *m_last->start, 0.0));
    if (const std::optional<Seconds> played = sinceBreak())
        kept = std::min(kept, *played);
    return kept < leastKept ? Seconds(0) : kept;
}

std::optional<Seconds> LiveEdge::sinceBreak() const {
    if (!m_last || !m_begin)
        return std::nullopt;
    return Seconds(std::max(m_last->position - *m_begin, 0.0));
}

std::optional<double> LiveEdge::placeBack(Seconds distance) const {
    if (!m_last)
        return std::nullopt;
    const double wanted = m_last->position - distance.count();
    if (distance < Seconds(0))
        return -distance >= behind() || !m_last->start ? placeOfLive() : wanted;
    if (kept() == Seconds(0))
        return std::nullopt;
    const double reach = kept().count();
    return std::max(wanted,
                    m_last->position - reach + std::min(reach * marginShare, longestMargin));
}

std::optional<double> LiveEdge::placeOfLive() const {
    if (!m_last || m_breaks > 0)
        return std::nullopt;
    const double place =
        std::max(std::min(m_edge - m_lead.count(), m_last->end - margin), m_last->position);
    return m_last->start && *m_last->start <= place ? std::optional(place) : std::nullopt;
}

} // namespace orvane
