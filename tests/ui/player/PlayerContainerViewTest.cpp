// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/PlayerContainerView.h"

#include "state/AppNotification.h"
#include "support/EventLoop.h"
#include "support/RecordingActions.h"
#include "support/RecordingPlayer.h"
#include "support/StateFixture.h"
#include "ui/DisplayText.h"
#include "ui/player/CloseButton.h"
#include "ui/player/ControlBar.h"
#include "ui/player/VolumeSlider.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::runUntil;

namespace {

class PlayerContainerViewTest : public testing::Test, protected test::StateFixture {
protected:
    PlayerContainerViewTest() {
        // Away from the pointer of the platform plugin.
        view.setGeometry(300, 200, 480, 314);
        view.show();
    }

    template <class T>
    T* part(const QString& name) {
        return view.findChild<T*>(name);
    }
    QAbstractButton* button(const QString& name) { return part<QAbstractButton>(name); }

    void enter() {
        QEnterEvent event(QPointF(50, 50), QPointF(50, 50), QPointF(50, 50));
        QCoreApplication::sendEvent(&view, &event);
    }
    void leave() {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(&view, &event);
    }
    void move(int x = 100) {
        const QPoint position(x, 290);
        QWidget* receiver = view.childAt(position);
        const QPointF global = view.mapToGlobal(QPointF(position));
        QMouseEvent event(QEvent::MouseMove, receiver->mapFromGlobal(global), global, global,
                          Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(receiver, &event);
    }

    test::RecordingPlayer player;
    test::RecordingActions actions;
    PlayerContainerView view{state, player, actions, notifications, VideoOutput::software};
    ControlBar* bar = view.findChild<ControlBar*>();
    QTimer* hideTimer = view.findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
    const Channel channel = registry.featured().first();
};

TEST_F(PlayerContainerViewTest, OverlayFollowsTheStream) {
    const auto* overlay = view.findChild<OverlayView*>();
    const auto* spinner = part<QWidget>(u"overlaySpinner"_s);
    const auto* loading = part<QLabel>(u"overlayLoading"_s);
    const auto* message = part<QLabel>(u"overlayMessage"_s);
    auto* retry = button(u"overlayRetry"_s);
    EXPECT_FALSE(overlay->isVisible());
    state.setLoading(channel);
    EXPECT_TRUE(overlay->isVisible() && spinner->isVisible() && !retry->isVisible());
    EXPECT_EQ(loading->text(), u"Loading "_s + singleLineName(channel.displayName()) + u"..."_s);
    state.setError(channel, u"<b>404</b> & more"_s);
    EXPECT_TRUE(overlay->isVisible() && !spinner->isVisible() && retry->isVisible());
    EXPECT_FALSE(loading->isVisible());
    EXPECT_EQ(message->text(), u"<b>404</b> & more"_s);
    EXPECT_EQ(message->textFormat(), Qt::PlainText);
    notifications.post(AppNotification::retryCountdown, 119s);
    const auto* countdown = part<QLabel>(u"overlayCountdown"_s);
    EXPECT_EQ(countdown->text(), u"Trying again in 1 min 59 s"_s);
    notifications.post(AppNotification::retryCountdown, std::nullopt);
    EXPECT_FALSE(countdown->isVisible());
    QTest::mouseClick(retry, Qt::LeftButton);
    QTest::keyClick(retry, Qt::Key_Return);
    QTest::keyClick(retry, Qt::Key_Space);
    EXPECT_EQ(player.takeCalls(), QStringList(3, u"retry"_s));
    // Screen readers announce each error.
    QAccessibleInterface* alert =
        QAccessible::queryAccessibleInterface(part<QWidget>(u"overlayAlert"_s));
    EXPECT_EQ(alert->role(), QAccessible::AlertMessage);
    EXPECT_EQ(alert->text(QAccessible::Name), u"<b>404</b> & more"_s);
    EXPECT_EQ(view.window()->focusWidget(), retry);
    state.setPlaying(channel);
    EXPECT_FALSE(overlay->isVisible() || spinner->isVisible());
    EXPECT_NE(view.window()->focusWidget(), retry);
}

TEST_F(PlayerContainerViewTest, PartsOfTheOverlayDoNotMeet) {
    const QString name = u"وكالة الأنباء والقناة الإخبارية العالمية "_s;
    const QString text = u"The site wants to be sure that you are not a bot. "_s;
    auto* retry = button(u"overlayRetry"_s);
    const int pointSize = retry->font().pointSize();
    for (const QSize size : {QSize(320, 180), QSize(320, 227), QSize(480, 314), QSize(1280, 720)}) {
        for (const int repetitions : {1, 2, 20}) {
            for (const int points : {pointSize, 16}) {
                QFont font = retry->font();
                font.setPointSize(points);
                retry->setFont(font);
                view.resize(size);
                state.setLoading(Channel::custom(u"x"_s, name.repeated(repetitions)));
                const auto* loading = part<QLabel>(u"overlayLoading"_s);
                const auto textOf = [](const QLabel* label) {
                    QRect area(QPoint(), label->sizeHint());
                    area.moveCenter(label->geometry().center());
                    return area;
                };
                EXPECT_FALSE(
                    part<QWidget>(u"overlaySpinner"_s)->geometry().intersects(textOf(loading)));
                EXPECT_LT(textOf(loading).bottom(), bar->y());
                state.setError(channel, text.repeated(repetitions));
                const QRect message = textOf(part<QLabel>(u"overlayMessage"_s));
                const auto* countdown = part<QLabel>(u"overlayCountdown"_s);
                EXPECT_GE(message.top(), 0);
                EXPECT_LT(message.bottom(), retry->y());
                EXPECT_LT(retry->geometry().bottom(), countdown->y());
                EXPECT_LT(countdown->geometry().bottom(), bar->y()) << size.height() << points;
                EXPECT_GE(retry->height(), retry->sizeHint().height());
            }
        }
    }
}

TEST_F(PlayerContainerViewTest, EveryControlCanBePressedInTheSmallestWindow) {
    view.resize(320, 180);
    const std::vector<std::function<void()>> states{
        [] {},
        [this] { state.setLoading(Channel::custom(u"x"_s, u"Name "_s.repeated(40))); },
        [this] {
            state.setError(channel, u"Something went wrong. "_s.repeated(20));
            notifications.post(AppNotification::retryCountdown, 119s);
        },
        [this] { view.setInstalling(true); },
        [this] { state.setPlaying(channel); },
        [this] { state.setGhostMode(true); },
    };
    for (size_t i = 0; i < states.size(); ++i) {
        states[i]();
        int count = 0;
        for (const auto* each : view.findChildren<QAbstractButton*>()) {
            if (!each->isVisible())
                continue;
            const QRect area(each->mapTo(&view, QPoint()), each->size());
            for (const QPoint& place :
                 {area.center(), area.topLeft() + QPoint(2, 2), area.bottomRight() - QPoint(2, 2)})
                EXPECT_EQ(view.childAt(place), each) << i << each->text().toStdString();
            ++count;
        }
        EXPECT_EQ(count, i == 2 ? 7 : 6) << i;
    }
}

TEST_F(PlayerContainerViewTest, AnInstallationHidesTheFailureThatItCauses) {
    const auto* message = part<QLabel>(u"overlayLoading"_s);
    view.setInstalling(true);
    EXPECT_FALSE(message->isVisible()) << "nothing is being opened";
    state.setError(channel, u"yt-dlp not found"_s);
    EXPECT_EQ(message->text(), u"Installing yt-dlp..."_s);
    view.setInstalling(false);
    EXPECT_EQ(part<QLabel>(u"overlayMessage"_s)->text(), u"yt-dlp not found"_s);
}

TEST_F(PlayerContainerViewTest, PutsWhatTheMessageLeavesOutIntoATooltip) {
    const auto* message = part<QLabel>(u"overlayMessage"_s);
    const QString text = u"ERROR: <a> unable to download. "_s.repeated(30).trimmed();
    state.setError(channel, text);
    EXPECT_EQ(message->text().count(u'\n'), 2);
    EXPECT_EQ(message->toolTip(), u"<qt>"_s + text.toHtmlEscaped() + u"</qt>"_s);
    state.setError(channel, u"WARNING: old\nERROR: a & b"_s);
    EXPECT_EQ(message->text(), u"a & b"_s);
    EXPECT_EQ(message->toolTip(), u"<qt>WARNING: old<br>ERROR: a &amp; b</qt>"_s);
    state.setError(channel, u"short"_s);
    EXPECT_TRUE(message->toolTip().isEmpty());
}

TEST_F(PlayerContainerViewTest, ShortensALongChannelName) {
    const auto* label = part<QLabel>(u"channelLabel"_s);
    EXPECT_EQ(label->text(), u"Select a channel"_s);
    state.assignCurrentChannel(Channel::custom(u"x"_s, u"Name "_s.repeated(30)));
    EXPECT_TRUE(label->text().startsWith(u"Name"_s) && label->text().endsWith(u'…'));
    for (const int width : {480, 320}) {
        view.resize(width, 180);
        EXPECT_LT(label->geometry().right(), button(u"muteButton"_s)->x());
        EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width());
    }
}

TEST_F(PlayerContainerViewTest, ButtonsActAndDescribeThemselves) {
    QStringList posted;
    const auto watch = [&](Topic<> topic) {
        return notifications.addObserver(topic, [&posted, topic] {
            posted += QString::fromLatin1(topic.name.data(), qsizetype(topic.name.size()));
        });
    };
    const auto fullscreen = watch(AppNotification::toggleFullscreen);
    const auto close = watch(AppNotification::closePlayer);
    const auto click = [&](const QString& name) {
        QTest::mouseClick(button(name), Qt::LeftButton);
        return button(name)->text() + u' ' + button(name)->toolTip();
    };

    EXPECT_EQ(button(u"ghostButton"_s)->toolTip(), u"Ghost Mode OFF (G)"_s);
    EXPECT_EQ(click(u"ghostButton"_s), u"👻 Ghost Mode ON (G)"_s);
    EXPECT_TRUE(preferences.ghostModeEnabled());
    EXPECT_EQ(click(u"ghostButton"_s), u"👁 Ghost Mode OFF (G)"_s);
    click(u"muteButton"_s);
    EXPECT_EQ(player.takeCalls(), QStringList{u"mute"_s});
    state.setMuted(true);
    EXPECT_EQ(button(u"muteButton"_s)->text(), u"🔇"_s);
    state.setMuted(false);
    EXPECT_EQ(button(u"muteButton"_s)->text(), u"🔊"_s);
    EXPECT_EQ(click(u"fullscreenBtn"_s), u"⛶ Fullscreen (F)"_s);
    EXPECT_EQ(click(u"closeButton"_s), u"✕ Close player"_s);
    EXPECT_EQ(posted, (QStringList{u"lumenfold.orvane.toggleFullscreen"_s,
                                   u"lumenfold.orvane.closePlayer"_s}));
    EXPECT_EQ(click(u"quitButton"_s), u"⏻ Quit Orvane (Q)"_s);
    EXPECT_EQ(actions.calls, QStringList{u"terminate"_s});
    for (const auto* each : view.findChildren<QAbstractButton*>()) {
        if (each->text() == u"Retry"_s)
            continue; // Its title is its accessible name.
        EXPECT_FALSE(each->accessibleName().isEmpty()) << each->text().toStdString();
    }
}

TEST_F(PlayerContainerViewTest, BarFollowsThePointer) {
    EXPECT_TRUE(bar->isVisible());
    enter();
    EXPECT_FALSE(hideTimer->isActive()) << "a visible bar needs no timer";
    leave();
    ASSERT_TRUE(runUntil([&] { return !bar->isVisible(); }));

    // Without another movement it hides again.
    enter();
    EXPECT_TRUE(bar->isVisible());
    EXPECT_TRUE(hideTimer->isActive());
    EXPECT_EQ(hideTimer->interval(), 3000);
    hideTimer->start(0);
    ASSERT_TRUE(runUntil([&] { return !bar->isVisible(); }));

    // A second movement keeps it, but not a second report of the first.
    hideTimer->setInterval(3000);
    move();
    move();
    EXPECT_TRUE(bar->isVisible() && hideTimer->isActive());
    move(101);
    EXPECT_TRUE(bar->isVisible());
    EXPECT_FALSE(hideTimer->isActive());
}

TEST_F(PlayerContainerViewTest, FullScreenHidesThePointerAndTheCloseButtonWithTheBar) {
    const auto* close = view.findChild<CloseButton*>();
    const auto isBare = [&] {
        return !bar->isVisible() && !close->isVisible() && view.cursor().shape() == Qt::BlankCursor;
    };
    view.showFullScreen();
    view.fullScreenChanged();
    EXPECT_TRUE(hideTimer->isActive()) << "without any movement";
    for (int movements : {0, 1, 3}) {
        while (movements-- > 0)
            move(100 + movements);
        EXPECT_TRUE(close->isVisible());
        EXPECT_EQ(hideTimer->interval(), 3000);
        ASSERT_TRUE(hideTimer->isActive());
        hideTimer->start(0);
        ASSERT_TRUE(runUntil(isBare));
        hideTimer->setInterval(3000);
    }
    view.showNormal();
    view.fullScreenChanged();
    EXPECT_TRUE(close->isVisible());
    EXPECT_NE(view.cursor().shape(), Qt::BlankCursor);
}

TEST_F(PlayerContainerViewTest, VolumeSliderReportsOnlyInput) {
    preferences.setVolume(0.25F);
    VolumeSlider slider(preferences, state);
    EXPECT_FLOAT_EQ(slider.floatValue(), 0.25F);
    std::vector<float> reported;
    slider.onVolumeChange([&](float volume) { reported.push_back(volume); });
    state.setVolume(0.5F);
    slider.syncToState();
    EXPECT_FLOAT_EQ(slider.floatValue(), 0.5F);
    EXPECT_TRUE(reported.empty());
    QTest::keyClick(&slider, Qt::Key_End);
    EXPECT_EQ(reported, std::vector<float>{1.0F});
}

} // namespace
} // namespace orvane
