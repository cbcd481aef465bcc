// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;

namespace orvane {

enum class MenuAction;

/// What menus and buttons ask of the application as a whole. Implemented by the application
/// controller, which outlives every view; main thread. Input that makes no sense is ignored.
class ApplicationActions {
public:
    virtual ~ApplicationActions() = default;

    /// Menus show what cannot be performed, but do not let it be chosen.
    [[nodiscard]] virtual bool canPerform(MenuAction action) const = 0;

    /// Opens the player window with the channel of this id.
    virtual void menuChannelSelected(const QString& id) = 0;
    /// Stores the resolution of this raw value, and opens the current channel anew with it.
    virtual void menuResolutionSelected(const QString& rawValue) = 0;
    virtual void menuSleepTimer(int minutes) = 0;
    virtual void menuCancelSleepTimer() = 0;
    virtual void menuToggleGhostMode() = 0;
    /// Ends the program the orderly way.
    virtual void terminate() = 0;
};

} // namespace orvane
