// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/DisplayChoice.h"

#include "language/Translation.h"

namespace orvane {

using namespace Qt::StringLiterals;

DisplaySession DisplaySession::read() {
    return {.display = qEnvironmentVariable("DISPLAY"),
            .waylandDisplay = qEnvironmentVariable("WAYLAND_DISPLAY"),
            .platform = qEnvironmentVariable("QT_QPA_PLATFORM")};
}

QString noDisplay() {
    return translated("CommandLine",
                      "there is no display; neither DISPLAY nor WAYLAND_DISPLAY is set");
}

std::expected<DisplayChoice, QString> chooseDisplay(const DisplaySession& session,
                                                    const std::function<bool()>& canReachX11) {
    const bool isUsersChoice = !session.platform.isEmpty();
    if (isUsersChoice && !session.platform.startsWith(u"xcb"))
        return DisplayChoice{.platform = session.platform};
    if (session.display.isEmpty() && !session.waylandDisplay.isEmpty())
        return std::unexpected(translated(
            "CommandLine",
            "this Wayland session has no XWayland (DISPLAY is not set), which Orvane needs to "
            "place its window and to keep it above others; QT_QPA_PLATFORM=wayland starts it "
            "without that"));
    if (session.display.isEmpty())
        return std::unexpected(noDisplay());
    if (!canReachX11())
        return std::unexpected(translated("CommandLine", "the display \"%1\" cannot be reached")
                                   .arg(leftToRight(session.display)));
    DisplayChoice choice{.platform = isUsersChoice ? session.platform : u"xcb"_s};
    if (!session.waylandDisplay.isEmpty())
        choice.notice =
            translated("CommandLine",
                       "in this Wayland session Orvane runs through XWayland: in ghost mode its "
                       "keys are heard only while an X11 program has the focus (bind a key of "
                       "the desktop to \"orvane --toggle-ghost\"), and some clicks near the "
                       "window's edge do not get through");
    return choice;
}

} // namespace orvane
