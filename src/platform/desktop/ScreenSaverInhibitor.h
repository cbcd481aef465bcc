// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane {

/// Keeps the screen from blanking and locking. Main thread, which it never blocks. Does nothing
/// where the desktop does not support it; never fails.
class ScreenSaverInhibitor {
public:
    virtual ~ScreenSaverInhibitor() = default;

    /// Idempotent.
    virtual void inhibit() = 0;
    virtual void release() = 0;
};

} // namespace orvane
