// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/WindowGeometry.h"

#include "model/AppConstants.h"

#include <QRegion>

#include <algorithm>

namespace orvane {

namespace {

constexpr double edgeDistance = 20;
/// The width and height of a window that must be on a screen for the user to see and drag it.
constexpr double minimumVisible = 40;
constexpr double edgeWidth = 6;
/// The extent of a corner along the edges.
constexpr double cornerLength = 18;

double squaredDistance(const QRectF& area, const QPointF& point) {
    const QPointF nearest(std::clamp(point.x(), area.left(), area.right()),
                          std::clamp(point.y(), area.top(), area.bottom()));
    return QPointF::dotProduct(nearest - point, nearest - point);
}

QRectF nearestArea(const QList<QRectF>& areas, const QPointF& point) {
    return *std::ranges::min_element(
        areas, {}, [&](const QRectF& area) { return squaredDistance(area, point); });
}

bool fits(const QRectF& frame, const QRectF& area) {
    return frame.width() <= area.width() && frame.height() <= area.height();
}

/// Returns `frame` moved into the area by the shortest way, and shrunk to 16:9 if it is larger.
QRectF movedInto(const QRectF& area, QRectF frame) {
    if (!fits(frame, area))
        frame.setSize(QSizeF(AppConstants::aspectRatio, 1)
                          .scaled(frame.size().boundedTo(area.size()), Qt::KeepAspectRatio));
    frame.moveLeft(std::clamp(frame.x(), area.left(), area.right() - frame.width()));
    frame.moveTop(std::clamp(frame.y(), area.top(), area.bottom() - frame.height()));
    return frame;
}

} // namespace

QRectF defaultPlayerFrame(const QRectF& usableArea) {
    const QSizeF size(AppConstants::defaultWindowWidth,
                      AppConstants::defaultWindowHeight + AppConstants::controlBarHeight);
    return {QPointF(usableArea.right() - size.width() - edgeDistance,
                    usableArea.bottom() - size.height() - edgeDistance),
            size};
}

QRectF initialPlayerFrame(const std::optional<QRectF>& saved, const QList<QRectF>& usableAreas) {
    if (!saved || saved->isEmpty())
        return defaultPlayerFrame(usableAreas.first());
    const bool isTooSmall = saved->width() < smallestPlayerSize.width() ||
                            saved->height() < smallestPlayerSize.height();
    const bool isInReach = std::ranges::any_of(usableAreas, [&](const QRectF& area) {
        const QRectF shown = area & *saved;
        return shown.width() >= minimumVisible && shown.height() >= minimumVisible;
    });
    const QRectF area = nearestArea(usableAreas, saved->center());
    if (isInReach && !isTooSmall && fits(*saved, area))
        return *saved;
    const QRectF frame(saved->topLeft(), saved->size().expandedTo(smallestPlayerSize));
    return movedInto(area, frame);
}

QRectF resizedPlayerFrame(const QRectF& frame, const QSizeF& size,
                          const QList<QRectF>& usableAreas) {
    const QRectF area = nearestArea(usableAreas, frame.center());
    QRectF resized(frame.topLeft(), size);
    if (area.right() - frame.right() < frame.left() - area.left())
        resized.moveRight(frame.right());
    if (area.bottom() - frame.bottom() < frame.top() - area.top())
        resized.moveBottom(frame.bottom());
    return movedInto(area, resized);
}

QRectF playerFrameInView(const QRectF& frame, const QList<QRectF>& usableAreas) {
    const QRectF nearest = nearestArea(usableAreas, frame.center());
    QRegion hidden(frame.toRect());
    for (const QRectF& area : usableAreas)
        hidden -= area.toRect();
    return hidden.isEmpty() && fits(frame, nearest) ? frame : movedInto(nearest, frame);
}

QRectF playerFrameDragged(const QRectF& frame, Qt::Edges edges, const QPointF& distance) {
    double width = frame.width();
    double height = 0;
    if (edges.testFlag(Qt::LeftEdge))
        width -= distance.x();
    else if (edges.testFlag(Qt::RightEdge))
        width += distance.x();
    else
        width = 0;
    if (edges.testFlag(Qt::TopEdge))
        height = frame.height() - distance.y();
    else if (edges.testFlag(Qt::BottomEdge))
        height = frame.height() + distance.y();
    width =
        std::max({width, height * AppConstants::aspectRatio, double(smallestPlayerSize.width())});
    QRectF dragged(frame.topLeft(), QSizeF(width, width / AppConstants::aspectRatio));
    if (edges.testFlag(Qt::LeftEdge))
        dragged.moveRight(frame.right());
    if (edges.testFlag(Qt::TopEdge))
        dragged.moveBottom(frame.bottom());
    return dragged;
}

Qt::Edges edgesAt(const QPointF& position, const QSizeF& size) {
    const double right = size.width() - position.x();
    const double bottom = size.height() - position.y();
    const double nearest = std::min({position.x(), position.y(), right, bottom});
    if (nearest < 0 || nearest >= edgeWidth)
        return {};
    // Near two edges it is the corner between them.
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, position.x() < cornerLength);
    edges.setFlag(Qt::TopEdge, position.y() < cornerLength);
    edges.setFlag(Qt::RightEdge, right < cornerLength);
    edges.setFlag(Qt::BottomEdge, bottom < cornerLength);
    return edges;
}

} // namespace orvane
