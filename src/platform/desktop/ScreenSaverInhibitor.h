// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane {

/// Keeps the screen from blanking and locking by itself. Main thread, which it never blocks. Where
/// the desktop offers nothing of the kind it does nothing; there is nothing to report.
class ScreenSaverInhibitor {
public:
    virtual ~ScreenSaverInhibitor() = default;

    /// Twice is the same as once.
    virtual void inhibit() = 0;
    virtual void release() = 0;
};

} // namespace orvane
