// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <expected>
#include <functional>

namespace orvane {

/// What the environment says of the session that the program is started in.
struct DisplaySession {
    QString display;        ///< DISPLAY
    QString waylandDisplay; ///< WAYLAND_DISPLAY
    QString platform;       ///< QT_QPA_PLATFORM

    [[nodiscard]] static DisplaySession read();
};

/// For the person, where there is no session at all.
inline constexpr QLatin1StringView noDisplay{
    "there is no display; neither DISPLAY nor WAYLAND_DISPLAY is set"};

struct DisplayChoice {
    /// The toolkit's platform.
    QString platform;
    /// What the person should know of it; empty for nothing.
    QString notice;
};

/// X11 wherever there is an X server, an XWayland included: a Wayland session lets no window place
/// itself or float above others. What the person has set holds. `canReachX11` says whether the
/// server answers, for the toolkit would end the program without a word of its own. The error is
/// for the person. A pure function; before there is an application object.
[[nodiscard]] std::expected<DisplayChoice, QString>
chooseDisplay(const DisplaySession& session, const std::function<bool()>& canReachX11);

} // namespace orvane
