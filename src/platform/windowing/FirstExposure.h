// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QEvent>
#include <QObject>
#include <QWindow>

#include <functional>

namespace orvane {

/// Calls back once, when a window is exposed next. Owned by the window; deletes itself after the
/// call. Main thread.
class FirstExposure final : public QObject {
public:
    FirstExposure(QWindow* window, std::function<void()> callback)
        : QObject(window), m_callback(std::move(callback)) {
        window->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Expose && static_cast<QWindow*>(watched)->isExposed()) {
            watched->removeEventFilter(this);
            deleteLater();
            m_callback();
        }
        return false;
    }

private:
    std::function<void()> m_callback;
};

} // namespace orvane
