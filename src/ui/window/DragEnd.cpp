// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/DragEnd.h"

#include "platform/windowing/FloatingWindow.h"

#include <chrono>

namespace orvane {

namespace {

constexpr std::chrono::milliseconds interval{100};
constexpr int enoughPolls = 3;

} // namespace

DragEnd::DragEnd(const FloatingWindow& window) : m_window(window) {
    m_poll.setInterval(interval);
    connect(&m_poll, &QTimer::timeout, this, &DragEnd::poll);
}

void DragEnd::start() {
    m_stillPolls = 0;
    if (m_window.mayBeDragged())
        m_poll.start();
}

void DragEnd::poll() {
    const QRectF now = m_window.frame();
    const bool isStill = !m_window.mayBeDragged() && now == m_last;
    m_last = now;
    m_stillPolls = isStill ? m_stillPolls + 1 : 0;
    if (m_stillPolls < enoughPolls)
        return;
    m_poll.stop();
    Q_EMIT over();
}

} // namespace orvane
