// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/x11/KeyEvent.h"

#include <QObject>
#include <QPointF>
#include <QRectF>

#include <functional>
#include <memory>
#include <optional>

namespace orvane {

/// Watches pointer and keyboard: local monitors see the events of this program's windows, global
/// ones those of all windows. Owned by the composition root; main thread. A monitor is active until
/// the returned object is destroyed, which must happen before this one is. Global monitors are
/// silent where the desktop does not allow them; in a Wayland session they do not see the events of
/// native Wayland windows.
class EventMonitor {
public:
    enum class Outcome { passedOn, consumed };
    using Handler = std::function<void()>;
    using KeyHandler = std::function<Outcome(const KeyEvent&)>;

    /// The dynamic property of the window in which keys are always shortcuts.
    static constexpr const char* shortcutWindow = "shortcutWindow";

    virtual ~EventMonitor() = default;

    /// Calls the handler soon after the pointer has moved, with or without a pressed button.
    /// Several events may be merged into one call.
    [[nodiscard]] virtual std::unique_ptr<QObject> addGlobalPointerMonitor(Handler handler) = 0;
    /// Calls the handler before the window gets the event.
    [[nodiscard]] virtual std::unique_ptr<QObject> addLocalPointerMonitor(Handler handler) = 0;

    /// Calls the handler once, soon after the pointer is outside the area, in a Wayland session,
    /// where no other monitor may tell so. It need not have been inside. Until then nothing but the
    /// area receives the pointer. Elsewhere it never calls the handler. Points in desktop
    /// coordinates, y downwards.
    [[nodiscard]] virtual std::unique_ptr<QObject> addDepartureMonitor(const QRectF& area,
                                                                       Handler handler) = 0;

    /// Calls the handler for keys that are pressed while no window of this program has the focus
    /// and none of its menus is open, except while another program has grabbed the keyboard. The
    /// other program gets the key whatever the handler returns.
    [[nodiscard]] virtual std::unique_ptr<QObject> addGlobalKeyDownMonitor(KeyHandler handler) = 0;
    /// Calls the handler before the window gets the event; a consumed event does not reach the
    /// window. While a menu is open, keys go to the menu only.
    [[nodiscard]] virtual std::unique_ptr<QObject> addLocalKeyDownMonitor(KeyHandler handler) = 0;

    /// Points in desktop coordinates, y downwards; nullopt while unknown.
    [[nodiscard]] virtual std::optional<QPointF> pointerLocation() const = 0;
};

} // namespace orvane
