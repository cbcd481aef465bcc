// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"
#include "model/Channel.h"
#include "model/Resolution.h"
#include "settings/AppTheme.h"
#include "state/PlaybackState.h"

#include <QString>

#include <chrono>
#include <optional>

/// The notifications by which Orvane's parts announce changes to each other, with the types of
/// their payloads. All are posted on the main thread.
namespace orvane::AppNotification {

/// Nullopt when the channel was cleared.
inline constexpr Topic<std::optional<Channel>> channelChanged{"lumenfold.orvane.channelChanged"};
/// The channel now playing.
inline constexpr Topic<Channel> streamResolved{"lumenfold.orvane.streamResolved"};
/// The error message, not the channel.
inline constexpr Topic<QString> streamError{"lumenfold.orvane.streamError"};
/// The time until a failed channel is tried again, each second; nullopt when that is off.
inline constexpr Topic<std::optional<std::chrono::seconds>> retryCountdown{
    "lumenfold.orvane.retryCountdown"};
/// The channel being loaded.
inline constexpr Topic<Channel> streamLoading{"lumenfold.orvane.streamLoading"};
inline constexpr Topic<Transport> transportChanged{"lumenfold.orvane.transportChanged"};
/// How far behind live the viewer is has changed.
inline constexpr Topic<LivePosition> livePositionChanged{"lumenfold.orvane.livePositionChanged"};
/// Whether only the sound is played.
inline constexpr Topic<bool> soundOnlyChanged{"lumenfold.orvane.soundOnlyChanged"};
/// How much of a stream is kept.
inline constexpr Topic<std::chrono::minutes> bufferLengthChanged{
    "lumenfold.orvane.bufferLengthChanged"};
inline constexpr Topic<bool> muteChanged{"lumenfold.orvane.muteChanged"};
/// From 0 to 1.
inline constexpr Topic<float> volumeChanged{"lumenfold.orvane.volumeChanged"};
inline constexpr Topic<Resolution> resolutionChanged{"lumenfold.orvane.resolutionChanged"};
/// Remaining seconds.
inline constexpr Topic<double> sleepTimerTick{"lumenfold.orvane.sleepTimerTick"};
inline constexpr Topic<> sleepTimerFired{"lumenfold.orvane.sleepTimerFired"};
inline constexpr Topic<AppTheme> themeChanged{"lumenfold.orvane.themeChanged"};
/// From 0.3 to 1.
inline constexpr Topic<double> windowOpacityChanged{"lumenfold.orvane.windowOpacityChanged"};
inline constexpr Topic<> openSettings{"lumenfold.orvane.openSettings"};
/// The text to look up at once; may be empty.
inline constexpr Topic<QString> openAddChannel{"lumenfold.orvane.openAddChannel"};
inline constexpr Topic<> toggleFullscreen{"lumenfold.orvane.toggleFullscreen"};
/// Whether the player window is shown.
inline constexpr Topic<bool> playerShownChanged{"lumenfold.orvane.playerShownChanged"};
inline constexpr Topic<> closePlayer{"lumenfold.orvane.closePlayer"};
inline constexpr Topic<bool> ghostModeChanged{"lumenfold.orvane.ghostModeChanged"};
/// Whether shortcuts may act in ghost mode while the user types in other programs.
inline constexpr Topic<bool> shortcutsInGhostModeChanged{
    "lumenfold.orvane.shortcutsInGhostModeChanged"};
/// Whether the player window stays above other programs' full-screen windows.
inline constexpr Topic<bool> staysAboveFullScreenChanged{
    "lumenfold.orvane.staysAboveFullScreenChanged"};
/// Whether the channels that may be asked for next are resolved ahead.
inline constexpr Topic<bool> preparesNextChannelsChanged{
    "lumenfold.orvane.preparesNextChannelsChanged"};
/// A shortcut has consumed a key that was pressed in a text field.
inline constexpr Topic<> textFieldLostKey{"lumenfold.orvane.textFieldLostKey"};
/// Whether the session is locked.
inline constexpr Topic<bool> sessionLockChanged{"lumenfold.orvane.sessionLockChanged"};
/// Whether the tray shows the program's icon.
inline constexpr Topic<bool> statusItemShownChanged{"lumenfold.orvane.statusItemShownChanged"};

} // namespace orvane::AppNotification
