// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/x11/X11Panels.h"

#include "platform/windowing/x11/X11.h"
#include "platform/windowing/x11/X11Geometry.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

namespace orvane {

namespace {

constexpr std::chrono::milliseconds pauseTime{100};

/// Appends the windows that are directly in these; all are asked for before the first is waited
/// for.
void appendChildren(std::vector<xcb_window_t>& windows, const std::vector<xcb_window_t>& parents) {
    std::vector<xcb_query_tree_cookie_t> cookies;
    for (const xcb_window_t parent : parents)
        cookies.push_back(xcb_query_tree(X11::connection(), parent));
    for (const auto& cookie : cookies) {
        const X11::Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(X11::connection(), cookie, nullptr));
        if (!tree)
            continue;
        const xcb_window_t* first = xcb_query_tree_children(tree.get());
        windows.insert(windows.end(), first, first + xcb_query_tree_children_length(tree.get()));
    }
}

/// Returns all windows that may be panels: the outermost ones, and those in the frames that window
/// managers have put around them. Not all managers list panels.
std::vector<xcb_window_t> possiblePanels() {
    auto windows = X11::values(X11::root(), X11::atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW);
    std::vector<xcb_window_t> outermost;
    appendChildren(outermost, {X11::root()});
    appendChildren(windows, outermost);
    windows.insert(windows.end(), outermost.begin(), outermost.end());
    std::ranges::sort(windows);
    const auto repeated = std::ranges::unique(windows);
    windows.erase(repeated.begin(), repeated.end());
    return windows;
}

/// Requests about a window that have been sent, so that not each is waited for.
class Question {
public:
    explicit Question(xcb_window_t window)
        : m_window(window),
          m_attributes(xcb_get_window_attributes(X11::connection(), window)),
          m_room(xcb_get_property(X11::connection(), 0, window, X11::atom("_NET_WM_STRUT_PARTIAL"),
                                  XCB_ATOM_CARDINAL, 0, std::tuple_size_v<PanelRoom>)) {}

    [[nodiscard]] std::optional<PanelRoom> answer() const {
        const X11::Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(X11::connection(), m_attributes, nullptr));
        const X11::Reply<xcb_get_property_reply_t> room(
            xcb_get_property_reply(X11::connection(), m_room, nullptr));
        PanelRoom panel{};
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE || !room ||
            room->format != 32 || room->value_len != panel.size())
            return std::nullopt;
        const auto* first = static_cast<const uint32_t*>(xcb_get_property_value(room.get()));
        std::copy_n(first, panel.size(), panel.begin());
        return panel;
    }

    [[nodiscard]] xcb_window_t window() const { return m_window; }

private:
    xcb_window_t m_window;
    xcb_get_window_attributes_cookie_t m_attributes;
    xcb_get_property_cookie_t m_room;
};

void watch(xcb_connection_t* connection, xcb_window_t window, uint32_t events) {
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection);
}

} // namespace

QRect usableArea(const QRect& screen, QSize desktop, const std::vector<PanelRoom>& panels) {
    QRect usable = screen;
    for (const auto& [left, right, top, bottom, leftFrom, leftTo, rightFrom, rightTo, topFrom,
                      topTo, bottomFrom, bottomTo] : panels) {
        QRect rest = usable;
        const auto meets = [&](QPoint from, QPoint to) { return screen.intersects({from, to}); };
        if (meets({0, leftFrom}, {left - 1, leftTo}))
            rest.setLeft(std::max(rest.left(), left));
        if (meets({desktop.width() - right, rightFrom}, {desktop.width() - 1, rightTo}))
            rest.setRight(std::min(rest.right(), desktop.width() - right - 1));
        if (meets({topFrom, 0}, {topTo, top - 1}))
            rest.setTop(std::max(rest.top(), top));
        if (meets({bottomFrom, desktop.height() - bottom}, {bottomTo, desktop.height() - 1}))
            rest.setBottom(std::min(rest.bottom(), desktop.height() - bottom - 1));
        if (!rest.isEmpty())
            usable = rest;
    }
    return usable;
}

X11Panels::X11Panels() : m_events(xcb_connect(nullptr, nullptr)) {
    m_pause.setSingleShot(true);
    m_pause.setInterval(pauseTime);
    connect(&m_pause, &QTimer::timeout, this, &X11Panels::read);
    read();
    if (xcb_connection_has_error(m_events.get()) != 0)
        return;
    watch(m_events.get(), X11::root(),
          XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_events.get()),
                                                   QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11Panels::receive);
}

X11Panels::~X11Panels() = default;

QRect X11Panels::usable(const QRect& screen) const {
    return usableArea(screen, X11::frameOf(X11::root()).size(), m_panels);
}

void X11Panels::read() {
    std::vector<Question> questions;
    for (const xcb_window_t window : possiblePanels())
        questions.emplace_back(window);
    std::vector<PanelRoom> panels;
    for (const Question& question : questions) {
        const auto panel = question.answer();
        if (!panel)
            continue;
        panels.push_back(*panel);
        watch(m_events.get(), question.window(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    }
    if (std::exchange(m_panels, panels) != panels)
        Q_EMIT changed();
}

void X11Panels::receive() {
    using Event = X11::Reply<xcb_generic_event_t>;
    while (const auto event = Event(xcb_poll_for_event(m_events.get()))) {
        if (isOfInterest(*event))
            m_pause.start();
    }
    if (xcb_connection_has_error(m_events.get()) != 0)
        m_notifier->setEnabled(false);
}

bool X11Panels::isOfInterest(const xcb_generic_event_t& event) {
    constexpr uint8_t sentBit = 0x80;
    switch (event.response_type & ~sentBit) {
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY:
        return true;
    case XCB_PROPERTY_NOTIFY: {
        const auto atom = reinterpret_cast<const xcb_property_notify_event_t&>(event).atom;
        return atom == X11::atom("_NET_CLIENT_LIST") || atom == X11::atom("_NET_WM_STRUT_PARTIAL");
    }
    default:
        return false;
    }
}

} // namespace orvane
