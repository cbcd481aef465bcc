// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"

/// The names through which Orvane's parts announce changes to each other. All are posted on the
/// main thread. The comment of each name says what its object holds; "none" is an empty object.
namespace orvane::AppNotification {

using Name = NotificationCenter::Name;

/// Channel, or none when the channel was cleared.
inline constexpr Name channelChanged{"lumenfold.orvane.channelChanged"};
/// Channel that is now playing.
inline constexpr Name streamResolved{"lumenfold.orvane.streamResolved"};
/// QString with the message, not the channel.
inline constexpr Name streamError{"lumenfold.orvane.streamError"};
/// Channel that is being loaded.
inline constexpr Name streamLoading{"lumenfold.orvane.streamLoading"};
/// Transport.
inline constexpr Name transportChanged{"lumenfold.orvane.transportChanged"};
/// bool.
inline constexpr Name muteChanged{"lumenfold.orvane.muteChanged"};
/// float from 0 to 1.
inline constexpr Name volumeChanged{"lumenfold.orvane.volumeChanged"};
/// Resolution.
inline constexpr Name resolutionChanged{"lumenfold.orvane.resolutionChanged"};
/// double, seconds that remain.
inline constexpr Name sleepTimerTick{"lumenfold.orvane.sleepTimerTick"};
/// None.
inline constexpr Name sleepTimerFired{"lumenfold.orvane.sleepTimerFired"};
/// AppTheme.
inline constexpr Name themeChanged{"lumenfold.orvane.themeChanged"};
/// double from 0.3 to 1.
inline constexpr Name windowOpacityChanged{"lumenfold.orvane.windowOpacityChanged"};
/// None.
inline constexpr Name openSettings{"lumenfold.orvane.openSettings"};
/// QString to look up at once; empty or none for nothing.
inline constexpr Name openAddChannel{"lumenfold.orvane.openAddChannel"};
/// None.
inline constexpr Name toggleFullscreen{"lumenfold.orvane.toggleFullscreen"};
/// None.
inline constexpr Name closePlayer{"lumenfold.orvane.closePlayer"};
/// bool.
inline constexpr Name ghostModeChanged{"lumenfold.orvane.ghostModeChanged"};

} // namespace orvane::AppNotification
