// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane {

/// Moves a window with the pointer where no window manager does. Owned by whoever has started the
/// move; main thread.
class WindowMove {
public:
    virtual ~WindowMove() = default;

    /// To be called when the pointer has moved.
    virtual void follow() = 0;
};

} // namespace orvane
