// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QPlatformSurfaceEvent>
#include <QWindow>

namespace orvane {

/// Gives every window of the program a base size of its own, before it appears: with a scale factor
/// Qt announces one of -1 x -1 otherwise, at which some window managers make the window as large as
/// the protocol allows, and the program hangs in painting that. Owned by the main function; main
/// thread.
class BaseSizes final : public QObject {
public:
    BaseSizes() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::PlatformSurface &&
            static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
                QPlatformSurfaceEvent::SurfaceCreated) {
            if (auto* window = qobject_cast<QWindow*>(watched))
                window->setBaseSize(QSize(0, 0));
        }
        return false;
    }
};

} // namespace orvane
