// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/GhostMode.h"

#include "platform/windowing/EventMonitor.h"

#include <chrono>

namespace orvane {

namespace {

/// Together with the fade it stays below a second, the longest time after which the window must be
/// back.
constexpr std::chrono::milliseconds pollInterval{400};

} // namespace

GhostMode::GhostMode(Window& window, EventMonitor& events) : m_window(window), m_events(events) {
    m_pollTimer.setInterval(pollInterval);
    connect(&m_pollTimer, &QTimer::timeout, this, &GhostMode::poll);
}

GhostMode::~GhostMode() = default;

void GhostMode::start() {
    m_globalMouseMonitor = m_events.addGlobalPointerMonitor([this] { checkMousePosition(); });
    m_localMouseMonitor = m_events.addLocalPointerMonitor([this] { checkMousePosition(); });
    checkMousePosition();
}

void GhostMode::stop() {
    m_globalMouseMonitor.reset();
    m_localMouseMonitor.reset();
    if (m_isHiddenByGhost)
        reveal();
}

void GhostMode::checkMousePosition() {
    const auto location = m_events.pointerLocation();
    if (!location)
        return;
    const bool isInside = paddedFrame().contains(*location);
    if (isInside && !m_isHiddenByGhost)
        hide();
    else if (!isInside && m_isHiddenByGhost)
        reveal();
}

QRectF GhostMode::paddedFrame() const {
    return m_window.frameOnScreen().adjusted(-ghostPadding, -ghostPadding, ghostPadding,
                                             ghostPadding);
}

void GhostMode::awaitDeparture() {
    m_departureArea = paddedFrame();
    m_departureMonitor.reset();
    m_departureMonitor = m_events.addDepartureMonitor(m_departureArea, [this] { reveal(); });
}

void GhostMode::hide() {
    m_isHiddenByGhost = true;
    awaitDeparture();
    m_window.setIgnoresMouseEvents(true);
    m_window.fadeOut();
    m_pollTimer.start();
}

void GhostMode::reveal() {
    m_isHiddenByGhost = false;
    m_pollTimer.stop();
    m_departureMonitor.reset();
    m_window.setIgnoresMouseEvents(false);
    m_window.fadeIn();
}

void GhostMode::poll() {
    m_window.keepHidden();
    if (paddedFrame() != m_departureArea)
        awaitDeparture();
    // A pointer moved by a program causes no event.
    checkMousePosition();
}

} // namespace orvane
