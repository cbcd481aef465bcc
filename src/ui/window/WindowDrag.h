// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointF>

#include <functional>
#include <optional>

class QMouseEvent;
class QWidget;

namespace orvane {

/// Lets the window be dragged by one of its widgets: the window manager moves it, once the pointer
/// has been moved with the left button held. Owned by the widget; main thread. Clicks and drags on
/// children that use them themselves are left to those.
class WindowDrag final : public QObject {
    Q_OBJECT

public:
    explicit WindowDrag(QWidget* handle);

    /// Called on a double click; without it that is nothing special.
    void onDoubleClick(std::function<void()> callback) { m_onDoubleClick = std::move(callback); }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void press(const QMouseEvent& event);
    void move(const QMouseEvent& event);

    QWidget* m_handle;
    std::optional<QPointF> m_pressedAt;
    std::function<void()> m_onDoubleClick;
};

} // namespace orvane
