// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/GhostMode.h"

#include "support/EventLoop.h"
#include "support/FakeEvents.h"

#include <QList>
#include <QString>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using test::FakeEvents;
using test::runUntil;

namespace {

class RecordingWindow final : public GhostMode::Window {
public:
    QStringList calls;

    [[nodiscard]] QStringList takeCalls() { return std::exchange(calls, {}); }

    QRectF frame{100, 100, 480, 270};

    [[nodiscard]] QRectF frameOnScreen() const override { return frame; }
    void setIgnoresMouseEvents(bool ignores) override {
        calls.append(ignores ? u"ignore"_s : u"heed"_s);
    }
    void fadeOut() override { calls.append(u"out"_s); }
    void fadeIn() override { calls.append(u"in"_s); }
    void keepHidden() override {}
};

const QStringList hiding{u"ignore"_s, u"out"_s};
const QStringList showing{u"heed"_s, u"in"_s};

class GhostModeTest : public testing::Test {
protected:
    RecordingWindow window;
    FakeEvents events;
    GhostMode ghost{window, events};
};

TEST_F(GhostModeTest, HidesUnderThePointerAndItsPadding) {
    events.location = QPointF(92, 200); // 8 points outside
    ghost.start();
    EXPECT_TRUE(ghost.isHiddenByGhost());
    EXPECT_EQ(window.takeCalls(), hiding);
    events.moveTo(QPointF(300, 200));
    EXPECT_TRUE(window.takeCalls().isEmpty());
    events.moveTo(QPointF(91, 200));
    EXPECT_FALSE(ghost.isHiddenByGhost());
    EXPECT_EQ(window.takeCalls(), showing);
    events.moveTo(QPointF(91, 201));
    EXPECT_TRUE(window.takeCalls().isEmpty());
    events.moveTo(QPointF(588, 378));
    EXPECT_EQ(window.takeCalls(), hiding);
}

TEST_F(GhostModeTest, EndsWithAVisibleWindowAndWithoutMonitors) {
    events.location = QPointF(300, 200);
    ghost.start();
    EXPECT_TRUE(events.global && events.local);
    window.calls.clear();
    ghost.stop();
    EXPECT_EQ(window.takeCalls(), showing);
    EXPECT_FALSE(events.global || events.local);
    ghost.stop();
    EXPECT_TRUE(window.takeCalls().isEmpty());
}

TEST_F(GhostModeTest, NoticesAPointerThatLeftWithoutAnEvent) {
    events.location = QPointF(300, 200);
    ghost.start();
    window.calls.clear();
    events.location = QPointF(1000, 600);
    ASSERT_TRUE(runUntil([&] { return !ghost.isHiddenByGhost(); }));
    EXPECT_EQ(window.takeCalls(), showing);
}

TEST_F(GhostModeTest, WaitsForThePointerAroundTheWindowWhereItsPositionIsUnknown) {
    ghost.start();
    EXPECT_FALSE(events.departure) << "a visible window leaves the pointer alone";
    events.moveTo(QPointF(300, 200));
    EXPECT_EQ(window.takeCalls(), hiding);
    EXPECT_EQ(events.departureArea, QRectF(92, 92, 496, 286));

    // The pointer is over another program's window, whether it moves there or rests.
    events.moveTo(std::nullopt);
    window.frame.translate(50, 0);
    ASSERT_TRUE(runUntil([&] { return events.departureArea.x() == 142; }));
    EXPECT_TRUE(window.takeCalls().isEmpty()) << "an unknown position is not a departure";

    // Copied, as that of a monitor would be destroyed during the call.
    const EventMonitor::Handler departs = events.departure;
    departs();
    EXPECT_FALSE(ghost.isHiddenByGhost());
    EXPECT_EQ(window.takeCalls(), showing);
    EXPECT_FALSE(events.departure);
    events.moveTo(std::nullopt);
    EXPECT_TRUE(window.takeCalls().isEmpty()) << "an unknown position does not hide the window";

    events.moveTo(QPointF(300, 200));
    ghost.stop();
    EXPECT_FALSE(events.departure) << "nothing is left around the window";
}

} // namespace
} // namespace orvane
