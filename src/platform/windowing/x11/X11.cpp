// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/x11/X11.h"

#include "base/Logging.h"

#include <QGuiApplication>
#include <QScreen>

#include <xcb/screensaver.h>

#include <algorithm>
#include <cstring>
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

QByteArray property(xcb_window_t window, std::string_view name) {
    constexpr std::uint32_t longest = 64;
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection(),
        xcb_get_property(connection(), 0, window, atom(name), XCB_ATOM_ANY, 0, longest), nullptr));
    if (!reply)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
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

std::vector<uint32_t> values(xcb_window_t window, xcb_atom_t property, xcb_atom_t type) {
    constexpr uint32_t longest = 1024;
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection(), xcb_get_property(connection(), 0, window, property, type, 0, longest),
        nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* first = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

bool windowManagerSupports(std::string_view name) {
    const std::vector<xcb_atom_t> supported = values(root(), atom("_NET_SUPPORTED"), XCB_ATOM_ATOM);
    return std::ranges::find(supported, atom(name)) != supported.end();
}

std::string windowManager() {
    const QByteArray check = property(root(), "_NET_SUPPORTING_WM_CHECK");
    xcb_window_t window = XCB_WINDOW_NONE;
    if (check.size() != sizeof window)
        return {};
    std::memcpy(&window, check.constData(), sizeof window);
    return property(window, "_NET_WM_NAME").toStdString();
}

void ask(xcb_window_t window, std::string_view request, std::array<uint32_t, 5> data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(request);
    std::ranges::copy(data, message.data.data32);
    xcb_send_event(connection(), 0, root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
}

bool isXWayland() {
    if (connection() == nullptr)
        return false;
    // Servers before 23.1 lack the extension, but have outputs of that name.
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

void logDesktop() {
    if (connection() == nullptr || !logX11().isInfoEnabled())
        return;
    qCInfo(logX11) << "window manager:" << windowManager().c_str()
                   << "compositor:" << isComposited() << "XWayland:" << isXWayland();
}

} // namespace orvane::X11
