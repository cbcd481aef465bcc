// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/OverlayView.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

class OverlayViewTest : public testing::Test {
protected:
    OverlayViewTest() {
        window.resize(480, 314);
        overlay.resize(480, 314);
        window.show();
    }

    QWidget window;
    OverlayView overlay{&window};
    QWidget* spinner = overlay.findChild<QWidget*>(u"overlaySpinner"_s);
    QLabel* message = overlay.findChild<QLabel*>(u"overlayMessage"_s);
    QPushButton* retry = overlay.findChild<QPushButton*>(u"overlayRetry"_s);
};

TEST_F(OverlayViewTest, ShowsWhatEachStateNeeds) {
    EXPECT_FALSE(overlay.isVisible());
    overlay.setState(OverlayView::Loading{u"Loading العربية..."_s});
    EXPECT_TRUE(overlay.isVisible() && spinner->isVisible() && !retry->isVisible());
    EXPECT_EQ(message->text(), u"Loading العربية..."_s);
    overlay.setState(OverlayView::Error{u"<b>404</b> & more"_s});
    EXPECT_TRUE(overlay.isVisible() && !spinner->isVisible() && retry->isVisible());
    EXPECT_EQ(message->text(), u"<b>404</b> & more"_s);
    EXPECT_EQ(message->textFormat(), Qt::PlainText);
    overlay.setState(OverlayView::Hidden{});
    EXPECT_FALSE(overlay.isVisible());
    EXPECT_FALSE(spinner->isVisibleTo(&overlay));
}

TEST_F(OverlayViewTest, PlacesItsPartsAroundTheCentre) {
    overlay.setState(OverlayView::Error{u"x"_s});
    EXPECT_EQ(spinner->geometry(), QRect(224, 117, 32, 32));
    EXPECT_EQ(message->geometry(), QRect(20, 137, 440, 50));
    EXPECT_EQ(retry->geometry(), QRect(200, 201, 80, 26));
}

TEST_F(OverlayViewTest, CutsALongMessageAndKeepsItWholeInTheTooltip) {
    const QString text = u"ERROR: <a> unable to download. "_s.repeated(30).trimmed();
    overlay.setState(OverlayView::Error{text});
    EXPECT_EQ(message->text().count(u'\n'), 2);
    EXPECT_EQ(message->toolTip(), text.toHtmlEscaped());
    overlay.setState(OverlayView::Error{u"short"_s});
    EXPECT_TRUE(message->toolTip().isEmpty());
}

TEST_F(OverlayViewTest, AsksForAnotherTry) {
    int tries = 0;
    overlay.onRetry([&] { ++tries; });
    overlay.setState(OverlayView::Error{u"x"_s});
    QTest::mouseClick(retry, Qt::LeftButton);
    EXPECT_EQ(tries, 1);
}

} // namespace
} // namespace orvane
