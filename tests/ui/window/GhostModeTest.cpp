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

    [[nodiscard]] QRectF frameOnScreen() const override { return {100, 100, 480, 270}; }
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

TEST_F(GhostModeTest, AcceptsThePointerBrieflyWhereItsPositionIsUnknown) {
    events.location = QPointF(300, 200);
    ghost.start();
    window.calls.clear();

    // The pointer is over another program's window; accepting it shows its position.
    events.moveTo(std::nullopt);
    EXPECT_TRUE(window.calls.isEmpty()) << "an unknown position is not a departure";
    ASSERT_TRUE(runUntil([&] { return window.calls == QStringList{u"heed"_s}; }));
    events.moveTo(QPointF(310, 200));
    EXPECT_EQ(window.takeCalls(), (QStringList{u"heed"_s, u"ignore"_s}));
    EXPECT_TRUE(ghost.isHiddenByGhost());

    // The pointer has left, so accepting it brings no event.
    events.moveTo(std::nullopt);
    ASSERT_TRUE(runUntil([&] { return !ghost.isHiddenByGhost(); }));
    EXPECT_EQ(window.takeCalls(), (QStringList{u"heed"_s, u"heed"_s, u"in"_s}));
    // An unknown position does not hide the window.
    events.moveTo(std::nullopt);
    EXPECT_TRUE(window.takeCalls().isEmpty());
}

} // namespace
} // namespace orvane
