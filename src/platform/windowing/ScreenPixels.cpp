// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/ScreenPixels.h"

#include <QGuiApplication>

#include <algorithm>

namespace orvane {

namespace {

QRectF inPoints(const QScreen* screen) {
    return screen->geometry();
}

QRectF inPixels(const QScreen* screen) {
    return {screen->geometry().topLeft(), QSizeF(screen->size()) * screen->devicePixelRatio()};
}

/// Returns the screen that shows most of the area, or else the first one.
const QScreen& screenOf(const QRectF& area, QRectF (*geometry)(const QScreen*)) {
    const auto shown = [&](const QScreen* screen) {
        const QSizeF size = (geometry(screen) & area).size();
        return size.width() * size.height();
    };
    const QList<QScreen*> screens = QGuiApplication::screens();
    return **std::ranges::max_element(screens, {}, shown);
}

} // namespace

QRectF pixelsOf(const QRectF& area) {
    const QScreen& screen = screenOf(area, inPoints);
    const double scale = screen.devicePixelRatio();
    const QPointF corner = screen.geometry().topLeft();
    return {(area.topLeft() - corner) * scale + corner, area.size() * scale};
}

QRectF pointsOn(const QScreen& screen, const QRectF& pixels) {
    const double scale = screen.devicePixelRatio();
    const QPointF corner = screen.geometry().topLeft();
    return {(pixels.topLeft() - corner) / scale + corner, pixels.size() / scale};
}

QRectF pointsOf(const QRectF& pixels) {
    return pointsOn(screenOf(pixels, inPixels), pixels);
}

} // namespace orvane
