// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/live/BufferPolicy.h"

#include <algorithm>

namespace orvane::BufferPolicy {

namespace {

constexpr std::int64_t mebibyte = 1 << 20;
constexpr std::int64_t leastFree = 1024 * mebibyte;
constexpr std::int64_t leastFreeWhilePresent = 512 * mebibyte;
/// For each minute: 13 Mbit/s, more than a channel in full HD has.
constexpr std::int64_t mostForAMinute = 100 * mebibyte;
/// Less is no measure: a stream begins with a burst.
constexpr Seconds shortestSpan{8};

} // namespace

bool hasRoom(const Disk& disk, Presence presence) {
    return disk.free >= (presence == Presence::present ? leastFreeWhilePresent : leastFree);
}

Seconds keptTime(Seconds wanted, const Disk& disk, Seconds held) {
    constexpr Seconds minute{60};
    const double allowed = wanted / minute * mostForAMinute;
    const double needed =
        held < shortestSpan ? 0 : double(disk.used) / held.count() * wanted.count();
    return needed <= allowed ? wanted : wanted * (allowed / needed);
}

std::int64_t bytesBefore(Seconds reach, double rate) {
    return std::int64_t(reach.count() * rate);
}

std::optional<double> rateOf(const Holding& holding) {
    if (holding.span < shortestSpan || holding.bytes <= 0)
        return std::nullopt;
    return double(holding.bytes) / holding.span.count();
}

} // namespace orvane::BufferPolicy
