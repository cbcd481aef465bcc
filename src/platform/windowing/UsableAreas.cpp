// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/UsableAreas.h"

#include "platform/windowing/ScreenPixels.h"
#include "platform/windowing/sway/SwayWorkspaces.h"
#include "platform/windowing/x11/X11.h"
#include "platform/windowing/x11/X11Panels.h"

#include <QGuiApplication>

#include <algorithm>

namespace orvane {

namespace {

/// For several screens there is only one announcement, which Qt does not read then. Some
/// compositors make it without naming it among what they support.
bool isAnnounced() {
    return QGuiApplication::screens().size() == 1 &&
           !X11::values(X11::root(), X11::atom("_NET_WORKAREA"), XCB_ATOM_CARDINAL).empty();
}

} // namespace

UsableAreas::UsableAreas() {
    for (const QScreen* screen : QGuiApplication::screens())
        follow(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &UsableAreas::follow);
    // Queued, as the list of screens may not be updated yet.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &UsableAreas::changed,
            Qt::QueuedConnection);
    if (!SwaySocket::isAvailable())
        return;
    m_sway = std::make_unique<SwayWorkspaces>();
    connect(m_sway.get(), &SwayWorkspaces::changed, this, &UsableAreas::changed);
}

UsableAreas::~UsableAreas() = default;

void UsableAreas::follow(const QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, &UsableAreas::changed, Qt::QueuedConnection);
    connect(screen, &QScreen::availableGeometryChanged, this, &UsableAreas::changed,
            Qt::QueuedConnection);
    connect(screen, &QScreen::logicalDotsPerInchChanged, this, &UsableAreas::changed,
            Qt::QueuedConnection);
}

void UsableAreas::setWatched(bool isWatched) {
    if (m_sway)
        m_sway->setWatched(isWatched);
}

QList<QRectF> UsableAreas::read() {
    QList<QRectF> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas.append(usable(*screen));
    return areas;
}

QRectF UsableAreas::usable(const QScreen& screen) {
    const QRect pixels = pixelsOf(screen.geometry()).toRect();
    if (m_sway) {
        const auto& workspaces = m_sway->visible();
        const auto here = std::ranges::find_if(
            workspaces, [&](const QRect& workspace) { return workspace.intersects(pixels); });
        return here != workspaces.end() ? pointsOn(screen, *here & pixels)
                                        : QRectF(screen.geometry());
    }
    if (X11::connection() == nullptr || isAnnounced())
        return screen.availableGeometry();
    if (!m_panels) {
        m_panels = std::make_unique<X11Panels>();
        connect(m_panels.get(), &X11Panels::changed, this, &UsableAreas::changed);
    }
    return pointsOn(screen, m_panels->usable(pixels));
}

} // namespace orvane
