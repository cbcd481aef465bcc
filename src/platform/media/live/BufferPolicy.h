// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace orvane {

/// Decides how much of a live stream is kept. Pure functions; any thread.
namespace BufferPolicy {

using Seconds = std::chrono::duration<double>;

/// Of the buffer on the disk.
struct Disk {
    /// What the buffer occupies.
    std::int64_t used = 0;
    /// What is left for everybody.
    std::int64_t free = 0;
};

/// Whether the disk has room for a buffer. One that is there already may stay a little longer, so
/// that it does not come and go.
enum class Presence { absent, present };
[[nodiscard]] bool hasRoom(const Disk& disk, Presence presence);

/// Returns how much to keep of the length that the user wants: less of a stream that needs too much
/// of the disk. `held` is the time that `used` is for.
[[nodiscard]] Seconds keptTime(Seconds wanted, const Disk& disk, Seconds held);

/// What the player holds, in its own count of bytes: on the disk are the frames, and in memory, and
/// in this count, the list of them.
struct Holding {
    Seconds span;
    std::int64_t bytes;
};

/// Returns how many bytes, by the player's count, hold this time before the position. `rate` is the
/// last known number of bytes for each second.
[[nodiscard]] std::int64_t bytesBefore(Seconds reach, double rate);
/// Returns the bytes for each second; nullopt if too little is held to tell.
[[nodiscard]] std::optional<double> rateOf(const Holding& holding);

} // namespace BufferPolicy

} // namespace orvane
