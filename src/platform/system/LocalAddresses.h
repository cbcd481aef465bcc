// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// Whether a host is given by an address of this machine or of its own network, in any notation, or
/// by a name that always means this machine. Other names are not looked up. Any thread.
[[nodiscard]] bool isLocalHost(const QString& host);

/// From now on FFmpeg does not connect to such hosts, whichever list or redirect names them: to it
/// they have no address. A proxy of the environment stays allowed. There is no way back, and no
/// setting of FFmpeg for this: the executable's own `getaddrinfo` stands in for the C library's.
/// Main thread, before the first player.
void keepStreamsFromLocalHosts();

} // namespace orvane
