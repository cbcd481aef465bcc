// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/PlayerContainerView.h"

#include "app/Services.h"
#include "state/AppNotification.h"
#include "support/EventLoop.h"
#include "support/RecordingActions.h"
#include "ui/player/ControlBar.h"
#include "ui/player/VolumeSlider.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using test::RecordingActions;
using test::runUntil;

namespace {

class PlayerContainerViewTest : public testing::Test {
protected:
    PlayerContainerViewTest() {
        // Away from where the pointer of the platform stands.
        view.setGeometry(300, 200, 480, 314);
        view.show();
    }
    ~PlayerContainerViewTest() override { services.player.setPlayerView(nullptr); }

    template <class T>
    T* part(const QString& name) {
        return view.findChild<T*>(name);
    }
    QAbstractButton* button(const QString& name) { return part<QAbstractButton>(name); }
    QString message() { return part<QLabel>(u"overlayMessage"_s)->text(); }

    void enter() {
        QEnterEvent event(QPointF(50, 50), QPointF(50, 50), QPointF(50, 50));
        QCoreApplication::sendEvent(&view, &event);
    }
    void leave() {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(&view, &event);
    }
    void move() {
        const QPoint place(100, 290);
        QWidget* receiver = view.childAt(place);
        const QPointF global = view.mapToGlobal(QPointF(place));
        QMouseEvent event(QEvent::MouseMove, receiver->mapFromGlobal(global), global, global,
                          Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(receiver, &event);
    }

    QTemporaryDir folder;
    Services services{Environment{}, folder.filePath(u"preferences.json"_s), VideoOutput::software};
    RecordingActions actions;
    PlayerContainerView view{services.state, services.player, actions, services.notifications,
                             VideoOutput::software};
    ControlBar* bar = view.findChild<ControlBar*>();
    QTimer* hideTimer = view.findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
    const Channel channel = services.registry.featured().first();
};

TEST_F(PlayerContainerViewTest, TellsWhatTheStreamIsDoing) {
    auto* overlay = view.findChild<OverlayView*>();
    services.state.setLoading(channel);
    EXPECT_EQ(message(), u"Loading "_s + channel.displayName() + u"..."_s);
    services.state.setError(channel, u"HTTP 404"_s);
    EXPECT_EQ(message(), u"HTTP 404"_s);
    EXPECT_TRUE(overlay->isVisible());
    services.state.setPlaying(channel);
    EXPECT_FALSE(overlay->isVisible());
}

TEST_F(PlayerContainerViewTest, LaysTheBarOutFromTheRightAndLeavesTheNameSomeRoom) {
    EXPECT_EQ(bar->geometry(), QRect(0, 270, 480, 44));
    EXPECT_EQ(button(u"quitButton"_s)->geometry(), QRect(442, 6, 32, 32));
    EXPECT_EQ(button(u"closeButton"_s)->x(), 406);
    EXPECT_EQ(button(u"fullscreenBtn"_s)->x(), 370);
    EXPECT_EQ(button(u"ghostButton"_s)->x(), 334);
    EXPECT_EQ(button(u"muteButton"_s)->x(), 298);
    auto* label = part<QLabel>(u"channelLabel"_s);
    EXPECT_EQ(label->x(), 20);
    EXPECT_EQ(label->width(), 270);
    EXPECT_EQ(label->text(), u"Select a channel"_s);
    services.state.assignCurrentChannel(Channel::custom(u"x"_s, u"Name "_s.repeated(30)));
    EXPECT_TRUE(label->text().startsWith(u"Name"_s) && label->text().endsWith(u'…'));
    view.resize(200, 180);
    EXPECT_EQ(label->width(), 30);
}

TEST_F(PlayerContainerViewTest, HasButtonsThatSayWhatTheyDoAndDoIt) {
    QStringList posted;
    const auto watch = [&](Topic<> topic) {
        return services.notifications.addObserver(topic, [&posted, topic] {
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
    EXPECT_TRUE(services.preferences.ghostModeEnabled());
    EXPECT_EQ(click(u"ghostButton"_s), u"👁 Ghost Mode OFF (G)"_s);
    EXPECT_EQ(click(u"muteButton"_s), u"🔇 "_s);
    EXPECT_TRUE(services.state.isMuted());
    EXPECT_EQ(click(u"muteButton"_s), u"🔊 "_s);
    EXPECT_EQ(click(u"fullscreenBtn"_s), u"⛶ Fullscreen (F)"_s);
    EXPECT_EQ(click(u"closeButton"_s), u"✕ Close player"_s);
    EXPECT_EQ(posted, (QStringList{u"lumenfold.orvane.toggleFullscreen"_s,
                                   u"lumenfold.orvane.closePlayer"_s}));
    EXPECT_EQ(click(u"quitButton"_s), u"⏻ Quit Orvane (Q)"_s);
    EXPECT_EQ(actions.calls, QStringList{u"terminate"_s});
    for (const auto* each : view.findChildren<QAbstractButton*>()) {
        // A button with a title of its own has that for a name.
        if (each->text() == u"Retry"_s)
            continue;
        EXPECT_FALSE(each->accessibleName().isEmpty()) << each->text().toStdString();
    }
}

TEST_F(PlayerContainerViewTest, ShowsTheBarWhileThePointerIsInsideAndHasMoved) {
    EXPECT_TRUE(bar->isVisible());
    enter();
    EXPECT_FALSE(hideTimer->isActive()) << "a bar that is up gets no timer";
    leave();
    ASSERT_TRUE(runUntil([&] { return !bar->isVisible(); }));

    // Brought up and left alone, it goes.
    enter();
    EXPECT_TRUE(bar->isVisible());
    EXPECT_TRUE(hideTimer->isActive());
    EXPECT_EQ(hideTimer->interval(), 3000);
    hideTimer->start(0);
    ASSERT_TRUE(runUntil([&] { return !bar->isVisible(); }));

    // Brought up by one movement, it stays after the next.
    hideTimer->setInterval(3000);
    move();
    EXPECT_TRUE(bar->isVisible() && hideTimer->isActive());
    move();
    EXPECT_TRUE(bar->isVisible());
    EXPECT_FALSE(hideTimer->isActive());
}

TEST_F(PlayerContainerViewTest, HidesThePointerWithTheBarInFullScreen) {
    leave();
    EXPECT_NE(view.cursor().shape(), Qt::BlankCursor);
    view.showFullScreen();
    view.updateCursor();
    EXPECT_EQ(view.cursor().shape(), Qt::BlankCursor);
    enter();
    EXPECT_NE(view.cursor().shape(), Qt::BlankCursor);
}

TEST_F(PlayerContainerViewTest, VolumeSliderReportsOnlyWhatThePersonDoes) {
    services.preferences.setVolume(0.25F);
    VolumeSlider slider(services.preferences, services.state);
    EXPECT_FLOAT_EQ(slider.floatValue(), 0.25F);
    std::vector<float> reported;
    slider.onVolumeChange([&](float volume) { reported.push_back(volume); });
    services.state.setVolume(0.5F);
    slider.syncToState();
    EXPECT_FLOAT_EQ(slider.floatValue(), 0.5F);
    EXPECT_TRUE(reported.empty());
    QTest::keyClick(&slider, Qt::Key_End);
    EXPECT_EQ(reported, std::vector<float>{1.0F});
}

} // namespace
} // namespace orvane
