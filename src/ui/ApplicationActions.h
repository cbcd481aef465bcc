// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// What menus and buttons ask of the application as a whole. Implemented by the application
/// controller, which outlives every view; main thread. Input that makes no sense is ignored.
class ApplicationActions {
public:
    virtual ~ApplicationActions() = default;

    /// Brings the player window to the front; where nothing is being played, as at launch.
    virtual void showPlayer() = 0;
    /// Opens the player window with the channel of this id.
    virtual void playChannel(const QString& id) = 0;
    /// The same, because it was chosen in a menu.
    virtual void menuChannelSelected(const QString& id) = 0;
    /// Stores the resolution of this raw value, and opens the current channel anew with it.
    virtual void menuResolutionSelected(const QString& rawValue) = 0;
    virtual void menuSleepTimer(int minutes) = 0;
    virtual void menuCancelSleepTimer() = 0;
    /// Brings the settings to the front.
    virtual void menuOpenSettings() = 0;
    /// The same, with the page for channels of one's own.
    virtual void menuAddChannel() = 0;
    virtual void menuToggleGhostMode() = 0;
    virtual void menuShowAbout() = 0;
    virtual void menuCheckForUpdates() = 0;
    /// Ends the program the orderly way.
    virtual void terminate() = 0;
};

} // namespace orvane
