// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/AllCases.h"

#include <array>

namespace orvane {

/// The ways to ask yt-dlp for a stream, the usual one first. The next one is for a site that has
/// changed since. A value; any thread.
enum class Rung {
    /// The clients that are known to have live lists with picture and sound in one.
    usual,
    /// The same with the newest yt-dlp on the machine.
    newestTool,
    /// The newest yt-dlp chooses the clients; picture and sound may come from two addresses.
    defaultClients,
    /// The same, also with the clients that need a JavaScript runtime.
    javaScript
};

template <>
inline constexpr auto allCases<Rung> =
    std::array{Rung::usual, Rung::newestTool, Rung::defaultClients, Rung::javaScript};

} // namespace orvane
