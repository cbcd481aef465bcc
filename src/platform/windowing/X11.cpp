// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/X11.h"

#include <QGuiApplication>
#include <QScreen>

#include <xcb/screensaver.h>

#include <map>
#include <string>

namespace orvane::X11 {

using namespace Qt::StringLiterals;

namespace {

bool hasExtension(std::string_view name) {
    const Reply<xcb_query_extension_reply_t> reply(xcb_query_extension_reply(
        connection(),
        xcb_query_extension(connection(), static_cast<uint16_t>(name.size()), name.data()),
        nullptr));
    return reply && reply->present != 0;
}

} // namespace

bool canConnect() {
    xcb_connection_t* attempt = xcb_connect(nullptr, nullptr);
    const bool isConnected = xcb_connection_has_error(attempt) == 0;
    xcb_disconnect(attempt);
    return isConnected;
}

xcb_connection_t* connection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_window_t root() {
    return xcb_setup_roots_iterator(xcb_get_setup(connection())).data->root;
}

xcb_atom_t atom(std::string_view name) {
    static std::map<std::string, xcb_atom_t, std::less<>> known;
    if (const auto found = known.find(name); found != known.end())
        return found->second;
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection(),
        xcb_intern_atom(connection(), 0, static_cast<uint16_t>(name.size()), name.data()),
        nullptr));
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    known.emplace(name, atom);
    return atom;
}

bool isXWayland() {
    if (connection() == nullptr)
        return false;
    // Servers before 23.1 have no such extension, but name their outputs after themselves.
    static const bool result =
        hasExtension("XWAYLAND") ||
        QGuiApplication::primaryScreen()->name().startsWith(u"XWAYLAND"_s, Qt::CaseInsensitive);
    return result;
}

bool isComposited() {
    return hasSelectionOwner("_NET_WM_CM_S0");
}

bool hasSelectionOwner(std::string_view selection) {
    if (connection() == nullptr)
        return false;
    const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection(), xcb_get_selection_owner(connection(), atom(selection)), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

bool setScreenSaver(ScreenSaver state) {
    if (connection() == nullptr || isXWayland())
        return false;
    const auto* extension = xcb_get_extension_data(connection(), &xcb_screensaver_id);
    if (extension == nullptr || extension->present == 0)
        return false;
    xcb_screensaver_suspend(connection(), state == ScreenSaver::suspended ? 1 : 0);
    xcb_flush(connection());
    return true;
}

} // namespace orvane::X11
