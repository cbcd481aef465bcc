// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/WindowGeometry.h"

#include "platform/desktop/tray/PanelEnd.h"
#include "platform/windowing/x11/X11Panels.h"
#include "ui/FittedText.h"

#include <QFont>
#include <QFontMetricsF>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

TEST(PlayerFrame, StaysWhereItWasIfTheUserCanReachIt) {
    const QRectF usable(0, 30, 1280, 690);
    EXPECT_EQ(defaultPlayerFrame(usable), QRectF(780, 386, 480, 314));
    const QRectF second(1280, 0, 1920, 1080);
    const double wide = 690 * 16 / 9.0;
    struct Case {
        std::optional<QRectF> saved;
        QRectF expected;
    };
    for (const auto& [saved, expected] : {
             Case{std::nullopt, {780, 386, 480, 314}},
             Case{QRectF(), {780, 386, 480, 314}},
             Case{QRectF(5, 6, 320, 224), {5, 6, 320, 224}},
             Case{QRectF(2000.5, 33.25, 480, 270), {2000.5, 33.25, 480, 270}},
             // The user may have moved it partly off the screen.
             Case{QRectF(-400, 100, 480, 270), {-400, 100, 480, 270}},
             Case{QRectF(-460, 100, 480, 270), {0, 100, 480, 270}},
             Case{QRectF(5000, 500, 480, 270), {2720, 500, 480, 270}},
             Case{QRectF(300, -900, 480, 270), {300, 30, 480, 270}},
             Case{QRectF(100, 100, 50, 20), {100, 100, 320, 180}},
             Case{QRectF(1200, 690, 10, 10), {960, 540, 320, 180}},
             Case{QRectF(9000, 9000, 4000, 3000), {1280, 0, 1920, 1080}},
             // Larger than its screen, also after another, larger screen is gone.
             Case{QRectF(0, 0, 30000, 20000), {1280, 0, 1920, 1080}},
             Case{QRectF(40, 30, 1200, 800), {40, 30, 1200, 675}},
             Case{QRectF(-200, -100, 1600, 900), {0, 30, wide, 690}},
         })
        EXPECT_EQ(initialPlayerFrame(saved, {usable, second}), expected);
}

TEST(PlayerFrame, MovesIntoViewWhenItsScreenIsRemoved) {
    const QRectF left(0, 30, 1280, 690);
    const QRectF right(1280, 30, 1280, 690);
    const QRectF across(1000, 100, 480, 270);
    EXPECT_EQ(playerFrameInView(across, {left, right}), across);
    EXPECT_EQ(playerFrameInView(across, {left}), QRectF(800, 100, 480, 270));
    const double wide = 690 * 16 / 9.0;
    EXPECT_EQ(playerFrameInView({1280, 0, 1280, 720}, {left}), QRectF(1280 - wide, 30, wide, 690));
}

TEST(UsableArea, IsWhatThePanelsLeaveOfTheirOwnScreen) {
    const QSize desktop(3200, 1080);
    const QRect left(0, 0, 1920, 1080);
    const QRect right(1920, 0, 1280, 720);
    const PanelRoom below{0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 0, 1919};
    const PanelRoom belowTheLowerScreen{0, 0, 0, 390, 0, 0, 0, 0, 0, 0, 1920, 3199};
    const PanelRoom leftOfTheRight{1970, 0, 0, 0, 0, 719, 0, 0, 0, 0, 0, 0};
    const PanelRoom above{0, 0, 25, 0, 0, 0, 0, 0, 0, 3199, 0, 0};
    const PanelRoom rightmost{0, 60, 0, 0, 0, 0, 0, 719, 0, 0, 0, 0};
    struct Case {
        std::vector<PanelRoom> panels;
        QRect left;
        QRect right;
    };
    for (const auto& [panels, onLeft, onRight] : {
             Case{{}, left, right},
             Case{{below}, {0, 0, 1920, 1040}, right},
             Case{{belowTheLowerScreen}, left, {1920, 0, 1280, 690}},
             // It would have to claim the left screen too.
             Case{{leftOfTheRight}, left, {1970, 0, 1230, 720}},
             Case{{above, rightmost, below}, {0, 25, 1920, 1015}, {1920, 25, 1220, 695}},
         }) {
        EXPECT_EQ(usableArea(left, desktop, panels), onLeft);
        EXPECT_EQ(usableArea(right, desktop, panels), onRight);
    }
}

TEST(PanelEnd, IsOnTheSideOfTheWidestPanel) {
    const QRectF screen(1280, 0, 1280, 720);
    EXPECT_EQ(panelEnd(screen, screen), std::nullopt);
    EXPECT_EQ(panelEnd(screen, {1280, 30, 1280, 690}), QPoint(2560, 30));
    EXPECT_EQ(panelEnd(screen, {1280, 24, 1280, 656}), QPoint(2560, 680));
    EXPECT_EQ(panelEnd(screen, {1340, 24, 1220, 696}), QPoint(1340, 720));
    EXPECT_EQ(panelEnd(screen, {1280, 0, 1220, 720}), QPoint(2500, 720));
}

TEST(EdgesAt, AreABandOfSixPointsWhoseEndsAreCorners) {
    const QSizeF size(480, 314);
    EXPECT_EQ(edgesAt({240, 157}, size), Qt::Edges());
    EXPECT_EQ(edgesAt({5.5, 157}, size), Qt::Edges(Qt::LeftEdge));
    EXPECT_EQ(edgesAt({6, 157}, size), Qt::Edges());
    EXPECT_EQ(edgesAt({240, 0}, size), Qt::Edges(Qt::TopEdge));
    EXPECT_EQ(edgesAt({475, 157}, size), Qt::Edges(Qt::RightEdge));
    EXPECT_EQ(edgesAt({240, 313}, size), Qt::Edges(Qt::BottomEdge));
    EXPECT_EQ(edgesAt({2, 12}, size), Qt::TopEdge | Qt::LeftEdge);
    EXPECT_EQ(edgesAt({10, 10}, size), Qt::Edges()) << "the close button is there";
    EXPECT_EQ(edgesAt({479, 300}, size), Qt::BottomEdge | Qt::RightEdge);
    EXPECT_EQ(edgesAt({-1, 100}, size), Qt::Edges());
}

TEST(FittedText, NeverExceedsItsLineLimit) {
    const QFont font;
    const double width = QFontMetricsF(font).horizontalAdvance(u"mmmmmmmmmm"_s);
    EXPECT_EQ(fittedText(u"short"_s, font, width, 3), u"short"_s);
    EXPECT_EQ(fittedText(QString(), font, width, 3), QString());
    EXPECT_EQ(fittedText(u"two\nlines"_s, font, width * 4, 3), u"two lines"_s);
    for (const QString& text :
         {u"word "_s.repeated(200), QString(5000, u'x'), u"قناة "_s.repeated(90)}) {
        const QStringList lines = fittedText(text, font, width, 3).split(u'\n');
        EXPECT_EQ(lines.size(), 3);
        EXPECT_TRUE(lines.last().endsWith(u'…'));
        for (const QString& line : lines)
            EXPECT_LE(QFontMetricsF(font).horizontalAdvance(line), width * 1.02)
                << "but for rounding";
    }
}

TEST(WindowGeometry, DraggedEdgesKeepTheShapeTheSmallestSizeAndTheOppositeCorner) {
    const QRectF frame(100, 100, 480, 314);
    const Qt::Edges upperLeft = Qt::TopEdge | Qt::LeftEdge;
    const Qt::Edges lowerRight = Qt::BottomEdge | Qt::RightEdge;
    EXPECT_EQ(playerFrameDragged(frame, lowerRight, {160, 0}), QRectF(100, 100, 640, 360));
    EXPECT_EQ(playerFrameDragged(frame, lowerRight, {0, 46}), QRectF(100, 100, 640, 360));
    EXPECT_EQ(playerFrameDragged(frame, upperLeft, {-160, 0}), QRectF(-60, 54, 640, 360));
    EXPECT_EQ(playerFrameDragged(frame, Qt::RightEdge, {160, 500}), QRectF(100, 100, 640, 360));
    EXPECT_EQ(playerFrameDragged(frame, Qt::TopEdge, {500, -46}), QRectF(100, 54, 640, 360));
    EXPECT_EQ(playerFrameDragged(frame, upperLeft, {900, 900}), QRectF(260, 234, 320, 180));
}

} // namespace
} // namespace orvane
