// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/GhostMode.h"

#include "platform/windowing/EventMonitor.h"

#include <chrono>

namespace orvane {

namespace {

/// Both together, and the fade, stay within a second, which is how long a pointer that has left may
/// go unnoticed.
constexpr std::chrono::milliseconds timeBetweenLooks{400};
/// A compositor tells within a frame or two that the pointer is over a window.
constexpr std::chrono::milliseconds timeForTheCompositor{150};

} // namespace

GhostMode::GhostMode(Window& window, EventMonitor& events) : m_window(window), m_events(events) {
    m_nextLook.setInterval(timeBetweenLooks);
    connect(&m_nextLook, &QTimer::timeout, this, &GhostMode::lookAgain);
    m_closerLook.setInterval(timeForTheCompositor);
    m_closerLook.setSingleShot(true);
    connect(&m_closerLook, &QTimer::timeout, this, &GhostMode::reveal);
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
    } else if (m_closerLook.isActive()) {
        // It is still there, so the click that may come is the other program's again.
        m_closerLook.stop();
        m_window.setIgnoresMouseEvents(true);
    }
}

void GhostMode::hide() {
    m_isHiddenByGhost = true;
    m_window.setIgnoresMouseEvents(true);
    m_window.fadeOut();
    m_nextLook.start();
}

void GhostMode::reveal() {
    m_isHiddenByGhost = false;
    m_nextLook.stop();
    m_closerLook.stop();
    m_window.setIgnoresMouseEvents(false);
    m_window.fadeIn();
}

void GhostMode::lookAgain() {
    m_window.keepHidden();
    // A pointer that a program has moved makes no event, and other things go unseen as well.
    if (m_events.pointerLocation())
        checkMousePosition();
    else
        lookCloser();
}

void GhostMode::lookCloser() {
    if (m_closerLook.isActive())
        return;
    m_window.setIgnoresMouseEvents(false);
    m_closerLook.start();
}

} // namespace orvane
