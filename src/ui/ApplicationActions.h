// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// The application-wide actions of menus and buttons. Implemented by the application controller,
/// which outlives every view; main thread. Invalid arguments are ignored.
class ApplicationActions {
public:
    virtual ~ApplicationActions() = default;

    /// Brings the player window to the front. If nothing plays, does what happens at launch.
    virtual void showPlayer() = 0;
    /// Opens the player window and plays the channel with this id.
    virtual void playChannel(const QString& id) = 0;
    /// The same, chosen in a menu.
    virtual void menuChannelSelected(const QString& id) = 0;
    /// Stores the resolution with this raw value and reopens the current channel with it.
    virtual void menuResolutionSelected(const QString& rawValue) = 0;
    virtual void menuSleepTimer(int minutes) = 0;
    virtual void menuCancelSleepTimer() = 0;
    /// Brings the settings window to the front.
    virtual void menuOpenSettings() = 0;
    /// The same, with the page for custom channels.
    virtual void menuAddChannel() = 0;
    virtual void menuToggleGhostMode() = 0;
    /// Ten seconds.
    virtual void menuGoBack() = 0;
    virtual void menuGoLive() = 0;
    /// Plays on without picture and window, or with both again.
    virtual void menuToggleSoundOnly() = 0;
    virtual void menuShowAbout() = 0;
    virtual void menuCheckForUpdates() = 0;
    /// Quits after an orderly shutdown.
    virtual void terminate() = 0;
};

} // namespace orvane
