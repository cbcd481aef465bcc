// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/KeyEvent.h"

#include <QObject>
#include <QPointF>

#include <functional>
#include <memory>
#include <optional>

namespace orvane {

/// Watches the pointer and the keys: the local monitors see what is meant for this program's
/// windows, the global ones what is meant for any. Owned by the composition root; main thread. A
/// monitor works for as long as the object that was given for it lives, which is not longer than
/// this one does. Where the desktop lets nobody watch, the global monitors are silent; in a Wayland
/// session they are so over, and in, windows that are not X11's.
class EventMonitor {
public:
    enum class Outcome { passedOn, consumed };
    using Handler = std::function<void()>;
    using KeyHandler = std::function<Outcome(const KeyEvent&)>;

    virtual ~EventMonitor() = default;

    /// The handler is called soon after the pointer has moved, with a button held or not; a burst
    /// of events may make one call.
    [[nodiscard]] virtual std::unique_ptr<QObject> addGlobalPointerMonitor(Handler handler) = 0;
    /// The handler is called before the event goes on to the window.
    [[nodiscard]] virtual std::unique_ptr<QObject> addLocalPointerMonitor(Handler handler) = 0;

    /// The handler is called for keys that are pressed while no window of this program has the
    /// focus and no menu of it is open. The other program gets them whatever the handler returns.
    [[nodiscard]] virtual std::unique_ptr<QObject> addGlobalKeyDownMonitor(KeyHandler handler) = 0;
    /// The handler is called before the event goes on to the window, which it does not when it was
    /// consumed. What is pressed while a menu is open belongs to the menu.
    [[nodiscard]] virtual std::unique_ptr<QObject> addLocalKeyDownMonitor(KeyHandler handler) = 0;

    /// Points in desktop coordinates, y downwards; nothing while nobody can tell.
    [[nodiscard]] virtual std::optional<QPointF> pointerLocation() const = 0;
};

} // namespace orvane
