// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/EventMonitor.h"

namespace orvane {

class X11Keyboard;
class X11RawInput;
class X11RawKeys;

/// The `EventMonitor` of the real desktop, with raw X11 events where there is an X server. Must be
/// created after the application object and destroyed before it.
class SystemEventMonitor final : public EventMonitor {
public:
    SystemEventMonitor();
    ~SystemEventMonitor() override;

    [[nodiscard]] std::unique_ptr<QObject> addGlobalPointerMonitor(Handler handler) override;
    [[nodiscard]] std::unique_ptr<QObject> addLocalPointerMonitor(Handler handler) override;
    [[nodiscard]] std::unique_ptr<QObject> addDepartureMonitor(const QRectF& area,
                                                               Handler handler) override;
    [[nodiscard]] std::unique_ptr<QObject> addGlobalKeyDownMonitor(KeyHandler handler) override;
    [[nodiscard]] std::unique_ptr<QObject> addLocalKeyDownMonitor(KeyHandler handler) override;
    [[nodiscard]] std::optional<QPointF> pointerLocation() const override;

private:
    std::unique_ptr<X11Keyboard> m_keyboard;
    std::unique_ptr<X11RawInput> m_rawInput;
    std::unique_ptr<X11RawKeys> m_rawKeys;
};

} // namespace orvane
