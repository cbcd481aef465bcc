// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/GhostMode.h"

#include "platform/windowing/EventMonitor.h"

#include <chrono>

namespace orvane {

namespace {

/// Together with `probeTime` and the fade it stays below a second, the longest time after which the
/// window must be back.
constexpr std::chrono::milliseconds pollInterval{400};
/// A compositor reports a pointer over a window within a frame or two.
constexpr std::chrono::milliseconds probeTime{150};

} // namespace

GhostMode::GhostMode(Window& window, EventMonitor& events) : m_window(window), m_events(events) {
    m_pollTimer.setInterval(pollInterval);
    connect(&m_pollTimer, &QTimer::timeout, this, &GhostMode::poll);
    m_probeTimer.setInterval(probeTime);
    m_probeTimer.setSingleShot(true);
    connect(&m_probeTimer, &QTimer::timeout, this, &GhostMode::reveal);
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
    const QRectF frame =
        m_window.frameOnScreen().adjusted(-ghostPadding, -ghostPadding, ghostPadding, ghostPadding);
    const bool isInside = frame.contains(*location);
    if (isInside && !m_isHiddenByGhost) {
        hide();
    } else if (!isInside && m_isHiddenByGhost) {
        reveal();
    } else if (m_probeTimer.isActive()) {
        // The pointer is still there: let clicks through again.
        m_probeTimer.stop();
        m_window.setIgnoresMouseEvents(true);
    }
}

void GhostMode::hide() {
    m_isHiddenByGhost = true;
    m_window.setIgnoresMouseEvents(true);
    m_window.fadeOut();
    m_pollTimer.start();
}

void GhostMode::reveal() {
    m_isHiddenByGhost = false;
    m_pollTimer.stop();
    m_probeTimer.stop();
    m_window.setIgnoresMouseEvents(false);
    m_window.fadeIn();
}

void GhostMode::poll() {
    m_window.keepHidden();
    // A pointer moved by a program causes no event.
    if (m_events.pointerLocation())
        checkMousePosition();
    else
        probePointer();
}

void GhostMode::probePointer() {
    if (m_probeTimer.isActive())
        return;
    m_window.setIgnoresMouseEvents(false);
    m_probeTimer.start();
}

} // namespace orvane
