// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;

namespace orvane {

/// What menus and buttons ask of the application as a whole. Implemented by the application
/// controller, which outlives every view; main thread. Input that makes no sense is ignored.
class ApplicationActions {
public:
    virtual ~ApplicationActions() = default;

    /// Opens the player window with the channel of this id.
    virtual void menuChannelSelected(const QString& id) = 0;
    /// Ends the program the orderly way.
    virtual void terminate() = 0;
};

} // namespace orvane
