// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Collaborators.h"
#include "app/Services.h"
#include "state/AppNotification.h"
#include "support/EventLoop.h"
#include "support/FakeClock.h"
#include "support/LoopbackServer.h"

#include <QApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonValue>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::runUntil;

namespace {

/// Runs the program without its main function and without a video site.
struct Program {
    explicit Program(const QString& preferencesPath, const Environment& environment = {})
        : services(environment, preferencesPath, VideoOutput::software) {}
    ~Program() {
        delegate.terminate();
        EXPECT_TRUE(runUntil([&] { return delegate.isDrained(); }));
        // Ending the program has stopped the event loop; another run resets that for later tests.
        QTimer::singleShot(0, QApplication::instance(), [] { QApplication::exit(0); });
        QApplication::exec();
    }

    [[nodiscard]] QString channel() const {
        const auto& current = services.state.currentChannel();
        return current ? current->id() : u"none"_s;
    }
    [[nodiscard]] static PlayerWindow* window() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* window = dynamic_cast<PlayerWindow*>(widget))
                return window;
        }
        return nullptr;
    }

    Services services;
    AppDelegate delegate{appDelegateCollaborators(services)};
};

class AppDelegateTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"preferences.json"_s);
    const QString first = u"alarabiya"_s;
};

TEST_F(AppDelegateTest, ChoosesWhatToPlayAtLaunch) {
    struct Case {
        const char* what;
        std::optional<bool> autoPlay;
        std::optional<QString> stored;
        QString played;
    };
    const QList<Case> cases{
        {"fresh", std::nullopt, std::nullopt, first},
        {"stored", std::nullopt, u"dwnews"_s, u"dwnews"_s},
        {"stored and on", true, u"dwnews"_s, u"dwnews"_s},
        {"stored but off", false, u"dwnews"_s, first},
        {"custom", true, u"custom_mine"_s, u"custom_mine"_s},
        {"removed", true, u"custom_gone"_s, first},
        {"unknown", true, u"DWNews"_s, first},
        {"empty", true, QString(u""_s), first},
        {"nothing stored, and off", false, std::nullopt, first},
    };
    for (const Case& c : cases) {
        QFile::remove(path);
        Program run(path);
        Preferences& preferences = run.services.preferences;
        preferences.addCustomChannel(u"Mine"_s, u"Mine"_s);
        preferences.addCustomChannel(u"Gone"_s, u"Gone"_s);
        preferences.removeCustomChannel(u"Gone"_s);
        preferences.setLastChannelID(c.stored);
        if (c.autoPlay)
            preferences.setAutoPlayLastChannel(*c.autoPlay);
        run.delegate.applicationDidFinishLaunching();
        EXPECT_EQ(run.channel(), c.played) << c.what;
        EXPECT_TRUE(Program::window()->isVisible());
        EXPECT_TRUE(preferences.onboardingCompleted());
    }
}

TEST_F(AppDelegateTest, RestoresGhostModeAfterTheWindowExists) {
    for (const bool isStored : {true, false}) {
        Program run(path);
        run.services.preferences.setGhostModeEnabled(isStored);
        int announced = 0;
        const auto token = run.services.notifications.addObserver(
            AppNotification::ghostModeChanged, [&](bool isOn) {
                EXPECT_TRUE(isOn);
                EXPECT_NE(Program::window(), nullptr);
                ++announced;
            });
        run.delegate.applicationDidFinishLaunching();
        EXPECT_EQ(announced, isStored ? 1 : 0);
    }
}

TEST_F(AppDelegateTest, ClosingThePlayerForgetsTheChannelButQuittingDoesNot) {
    {
        Program run(path);
        run.services.preferences.setLastChannelID(u"dwnews"_s);
        run.delegate.applicationDidFinishLaunching();
        PlayerWindow* window = Program::window();
        window->close();
        EXPECT_FALSE(window->isVisible());
        EXPECT_EQ(run.channel(), u"none"_s);
        EXPECT_EQ(run.services.preferences.lastChannelID(), QString(u""_s));
        // The next channel shows the same window again.
        run.delegate.menuChannelSelected(u"no such channel"_s);
        EXPECT_FALSE(window->isVisible());
        run.delegate.menuChannelSelected(u"dwnews"_s);
        EXPECT_TRUE(Program::window() == window && window->isVisible());
        window->close();
        // The frame of a hidden window is stored too.
        run.services.preferences.setWindowFrame(std::nullopt);
    }
    {
        Program run(path);
        EXPECT_TRUE(run.services.preferences.windowFrame());
        run.delegate.applicationDidFinishLaunching();
        EXPECT_EQ(run.channel(), first);
        run.delegate.menuChannelSelected(u"dwnews"_s);
        // Sent at the end of the session; must not close the player window first.
        QEvent end(QEvent::Quit);
        QApplication::sendEvent(QApplication::instance(), &end);
        ASSERT_TRUE(runUntil([&] { return run.delegate.isDrained(); }));
    }
    Program run(path);
    EXPECT_EQ(run.services.preferences.lastChannelID(), u"dwnews"_s);
}

TEST_F(AppDelegateTest, AResolutionReopensOnlyACurrentChannel) {
    Program run(path);
    run.delegate.applicationDidFinishLaunching();
    int loads = 0;
    const auto token =
        run.services.notifications.addObserver(AppNotification::streamLoading, [&] { ++loads; });
    run.delegate.menuResolutionSelected(u"1080p"_s);
    EXPECT_EQ(run.services.state.resolution(), Resolution::r480);
    EXPECT_EQ(loads, 0);
    run.delegate.menuResolutionSelected(u"720p"_s);
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(run.channel(), first);
    run.services.notifications.post(AppNotification::closePlayer);
    run.delegate.menuResolutionSelected(u"360p"_s);
    EXPECT_EQ(run.services.preferences.resolution(), Resolution::r360);
    EXPECT_EQ(loads, 1);
    EXPECT_FALSE(Program::window()->isVisible());
}

TEST_F(AppDelegateTest, SendsTelemetryForTheLaunchAndMenuChoices) {
    test::LoopbackServer server;
    Program run(path, {.telemetry = server.origin()});
    TelemetryService& telemetry = run.services.telemetry;
    const HttpClient& http = run.services.http;
    const auto arrived = [&](qsizetype count) {
        return runUntil(
            [&] { return server.received.size() >= count && !http.hasUnansweredRequests(); });
    };
    run.delegate.applicationDidFinishLaunching();
    EXPECT_EQ(run.channel(), first);
    EXPECT_TRUE(arrived(1));
    run.delegate.menuChannelSelected(u"dwnews"_s);
    EXPECT_TRUE(arrived(2));
    run.delegate.menuResolutionSelected(u"720p"_s);
    EXPECT_TRUE(arrived(3));
    run.services.notifications.post(AppNotification::closePlayer);
    run.delegate.menuResolutionSelected(u"360p"_s);
    run.delegate.menuChannelSelected(u"no such channel"_s);
    telemetry.settingsOpened(); // Arrives after all earlier signals.
    EXPECT_TRUE(arrived(4));
    QStringList signals;
    for (const auto& request : server.received) {
        const QJsonValue signal = QJsonDocument::fromJson(request.body)[0];
        signals += (signal[u"type"].toString() + u' ' + signal[u"payload"][u"channelID"].toString())
                       .trimmed();
    }
    EXPECT_EQ(signals, (QStringList{u"appLaunched"_s, u"channelPlayed dwnews"_s,
                                    u"channelPlayed dwnews"_s, u"settingsOpened"_s}));
}

TEST_F(AppDelegateTest, TheSleepTimerClosesThePlayerButNotTheProgram) {
    Program run(path);
    run.delegate.applicationDidFinishLaunching();
    test::FakeClock clock{test::FakeClock::Sleep::waitsForTest};
    const auto pausePlayer = [&] { run.services.player.pause(); };
    SleepTimer timer(run.services.state, pausePlayer, run.services.notifications, clock,
                     run.services.tasks);
    int fired = 0;
    const auto token =
        run.services.notifications.addObserver(AppNotification::sleepTimerFired, [&] { ++fired; });
    timer.schedule(15);
    for (int second = 0; second < 899; ++second)
        clock.advance(1s);
    EXPECT_TRUE(Program::window()->isVisible());
    clock.advance(1s);
    EXPECT_EQ(fired, 1);
    EXPECT_FALSE(Program::window()->isVisible());
    EXPECT_EQ(run.channel(), u"none"_s);
    EXPECT_EQ(run.services.preferences.lastChannelID(), QString(u""_s));
    EXPECT_FALSE(run.delegate.isDrained());
}

TEST_F(AppDelegateTest, PerformsTheVerbsOfACommandLine) {
    Program run(path);
    run.services.preferences.setLastChannelID(u"dwnews"_s);
    QStringList seen;
    NotificationCenter& notifications = run.services.notifications;
    const auto loading =
        notifications.addObserver(AppNotification::streamLoading, [&] { seen += u"loading"_s; });
    const auto settings =
        notifications.addObserver(AppNotification::openSettings, [&] { seen += u"settings"_s; });
    const auto add = notifications.addObserver(
        AppNotification::openAddChannel, [&](const QString& text) { seen += u"add "_s + text; });
    run.delegate.applicationDidFinishLaunching({Verb::Play{u"wion"_s}, Verb::Mute{}});
    EXPECT_EQ(run.channel(), u"wion"_s);
    EXPECT_TRUE(run.services.state.isMuted());
    EXPECT_EQ(seen, QStringList(u"loading"_s)) << "loads only the requested channel";

    run.delegate.perform(Verb::Next{});
    EXPECT_EQ(run.channel(), u"aljazeeradoc"_s);
    run.delegate.perform(Verb::Previous{});
    EXPECT_EQ(run.channel(), u"wion"_s);
    run.delegate.perform(Verb::ToggleGhost{});
    EXPECT_TRUE(run.services.state.isGhostMode());
    seen.clear();
    run.delegate.perform(Verb::Settings{});
    run.delegate.perform(Verb::Add{u"@somebody"_s});
    run.delegate.perform(Verb::Show{});
    EXPECT_EQ(seen, QStringList({u"settings"_s, u"add @somebody"_s}))
        << "does not interrupt the channel";

    // After the player was closed, these verbs show it with the channel of a plain start.
    for (const Verb::Value& verb : {Verb::Value(Verb::Show{}), Verb::Value(Verb::Previous{})}) {
        Program::window()->close();
        run.delegate.perform(verb);
        EXPECT_TRUE(Program::window()->isVisible());
        EXPECT_EQ(run.channel(), first);
    }
}

} // namespace
} // namespace orvane
