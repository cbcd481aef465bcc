// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <functional>

namespace orvane {

/// Asks whether shortcuts may act while the user types in other programs. A small window above all
/// others that takes no keyboard focus, as the user may be typing. Owned by the application
/// controller; main thread.
class GhostKeysQuestion final : public QDialog {
    Q_OBJECT

public:
    /// `answer` is called with whether the user has allowed it; not when the window is closed.
    explicit GhostKeysQuestion(std::function<void(bool)> answer);
};

} // namespace orvane
