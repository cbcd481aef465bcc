// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/EventMonitor.h"

namespace orvane::test {

/// A pointer and a keyboard that the test controls; one monitor of each kind.
class FakeEvents final : public EventMonitor {
public:
    std::optional<QPointF> location;
    Handler global;
    Handler local;
    Handler departure;
    QRectF departureArea;
    KeyHandler globalKeys;
    KeyHandler localKeys;

    void moveTo(std::optional<QPointF> point) {
        location = point;
        for (const Handler& handler : {global, local}) {
            if (handler)
                handler();
        }
    }

    [[nodiscard]] std::unique_ptr<QObject> addGlobalPointerMonitor(Handler handler) override {
        return add(global, std::move(handler));
    }
    [[nodiscard]] std::unique_ptr<QObject> addLocalPointerMonitor(Handler handler) override {
        return add(local, std::move(handler));
    }
    [[nodiscard]] std::unique_ptr<QObject> addDepartureMonitor(const QRectF& area,
                                                               Handler handler) override {
        departureArea = area;
        return add(departure, std::move(handler));
    }
    [[nodiscard]] std::unique_ptr<QObject> addGlobalKeyDownMonitor(KeyHandler handler) override {
        return add(globalKeys, std::move(handler));
    }
    [[nodiscard]] std::unique_ptr<QObject> addLocalKeyDownMonitor(KeyHandler handler) override {
        return add(localKeys, std::move(handler));
    }
    [[nodiscard]] std::optional<QPointF> pointerLocation() const override { return location; }

private:
    template <class H>
    static std::unique_ptr<QObject> add(H& slot, H handler) {
        slot = std::move(handler);
        auto token = std::make_unique<QObject>();
        QObject::connect(token.get(), &QObject::destroyed, [&slot] { slot = {}; });
        return token;
    }
};

} // namespace orvane::test
