// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <expected>
#include <functional>

namespace orvane {

/// The environment variables that describe the session.
struct DisplaySession {
    QString display;        ///< DISPLAY
    QString waylandDisplay; ///< WAYLAND_DISPLAY
    QString platform;       ///< QT_QPA_PLATFORM

    [[nodiscard]] static DisplaySession read();
};

/// Shown when there is no session.
[[nodiscard]] QString noDisplay();

struct DisplayChoice {
    /// Qt's platform plugin.
    QString platform;
    /// Shown to the user; may be empty.
    QString notice;
};

/// Chooses X11 wherever there is an X server, including XWayland, because Wayland does not let a
/// window place itself or stay above others. QT_QPA_PLATFORM overrides this. `canReachX11` returns
/// whether the server answers; without that check Qt would abort the program. The error is shown to
/// the user. A pure function, called before there is an application object.
[[nodiscard]] std::expected<DisplayChoice, QString>
chooseDisplay(const DisplaySession& session, const std::function<bool()>& canReachX11);

} // namespace orvane
