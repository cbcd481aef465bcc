// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointF>

#include <functional>
#include <memory>
#include <optional>

namespace orvane {

/// Watches the pointer: the local monitors while it is over this program's windows, the global ones
/// wherever it is. Owned by the composition root; main thread. A monitor works for as long as the
/// object that was given for it lives. Where the desktop lets nobody watch, the global monitors are
/// silent; in a Wayland session they are over windows that are not X11's.
class EventMonitor {
public:
    using Handler = std::function<void()>;

    virtual ~EventMonitor() = default;

    /// The handler is called soon after the pointer has moved, with a button held or not; a burst
    /// of events may make one call. At most one at a time.
    [[nodiscard]] virtual std::unique_ptr<QObject> addGlobalPointerMonitor(Handler handler) = 0;
    /// The handler is called before the event goes on to the window.
    [[nodiscard]] virtual std::unique_ptr<QObject> addLocalPointerMonitor(Handler handler) = 0;

    /// Points in desktop coordinates, y downwards; nothing while nobody can tell.
    [[nodiscard]] virtual std::optional<QPointF> pointerLocation() const = 0;
};

/// The real one: X11's raw events where there is an X server.
class SystemEventMonitor final : public EventMonitor {
public:
    [[nodiscard]] std::unique_ptr<QObject> addGlobalPointerMonitor(Handler handler) override;
    [[nodiscard]] std::unique_ptr<QObject> addLocalPointerMonitor(Handler handler) override;
    [[nodiscard]] std::optional<QPointF> pointerLocation() const override;
};

} // namespace orvane
