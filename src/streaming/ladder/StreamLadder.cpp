// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/ladder/StreamLadder.h"

#include "base/Logging.h"

#include <algorithm>
#include <utility>

namespace orvane {

namespace {

/// The rungs from `first` up, then those below it: what has failed below may work again.
QList<Rung> rungsFrom(Rung first) {
    QList<Rung> rungs(allCases<Rung>.begin(), allCases<Rung>.end());
    std::ranges::rotate(rungs, std::ranges::find(rungs, first));
    return rungs;
}

} // namespace

StreamLadder::StreamLadder(const QString& memoryPath, Clock& clock)
    : m_memory(memoryPath), m_clock(clock) {}

QList<Rung> StreamLadder::order(const QString& channelId) {
    const auto use = m_uses.constFind(channelId);
    const std::optional<LadderMemory::Entry>& entry = m_memory.entry();
    const Rung remembered = entry ? entry->rung : Rung::usual;
    return rungsFrom(use == m_uses.constEnd() ? remembered : use->climbsTo.value_or(remembered));
}

std::optional<LadderMemory::Entry> StreamLadder::remembered() {
    return m_memory.entry();
}

void StreamLadder::resolved(const QString& channelId, const LadderMemory::Entry& how) {
    Use& use = m_uses[channelId];
    if (use.how != how)
        use.refusedAt.reset();
    use.how = how;
}

void StreamLadder::refused(const QString& channelId) {
    const auto use = m_uses.find(channelId);
    if (use == m_uses.end())
        return;
    const std::chrono::milliseconds now = m_clock.sinceBoot();
    const auto last = std::exchange(use->refusedAt, now);
    if (!last || now - *last >= refusalTime)
        return;
    use->refusedAt.reset();
    const Rung next = rungsFrom(use->how.rung).at(1);
    use->climbsTo = next;
    qCInfo(logStream).noquote() << channelId << "was refused twice, next rung"
                                << static_cast<int>(next);
}

void StreamLadder::played(const QString& channelId) {
    const auto use = m_uses.constFind(channelId);
    if (use == m_uses.constEnd())
        return;
    if (use->how.rung == Rung::usual)
        m_memory.set(std::nullopt);
    else
        m_memory.set(use->how);
}

void StreamLadder::forget() {
    m_memory.set(std::nullopt);
    m_uses.clear();
}

bool Climb::next() {
    if (m_order.size() == 1)
        return false;
    m_order.removeFirst();
    return true;
}

} // namespace orvane
