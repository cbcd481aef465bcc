// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/live/LiveStreamMonitor.h"

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Monitor = LiveStreamMonitor;

class LiveStreamMonitorTest : public testing::Test {
protected:
    /// The failure's text after the time given, or "none".
    [[nodiscard]] QString failureAfter(std::chrono::milliseconds wait) {
        now += wait;
        const std::optional<Monitor::Failure> failure = monitor.dueFailure(now);
        return failure ? failure->text.value_or(u"unknown"_s) : u"none"_s;
    }
    void playing() {
        monitor.opened(now);
        monitor.started();
    }

    Monitor monitor;
    Monitor::TimePoint now{1h};
    const QString refusal = u"https: HTTP error 403 Forbidden\n"_s;
};

TEST_F(LiveStreamMonitorTest, FindsFaultsOfTheNetworkInLogLines) {
    EXPECT_EQ(networkWarning(u"http: HTTP error 403 Forbidden\n"_s), u"HTTP error 403 Forbidden"_s);
    EXPECT_EQ(networkWarning(u"[https @ 0x1] https: HTTP error 404 Not Found"_s),
              u"HTTP error 404 Not Found"_s);
    EXPECT_EQ(networkWarning(u"HTTP error 500 Internal Server Error"_s),
              u"HTTP error 500 Internal Server Error"_s);
    EXPECT_FALSE(networkWarning(u"Failed to open segment 4 of playlist 0"_s));
    EXPECT_FALSE(networkWarning(u"Invalid audio PTS: 3.2 -> 1.0"_s));
    EXPECT_FALSE(networkWarning(u"Opening https://127.0.0.1/1.ts failed"_s));
}

TEST_F(LiveStreamMonitorTest, KeepsAddressesOutOfTheMessage) {
    EXPECT_EQ(networkWarning(u"tcp: Connection to tcp://127.0.0.1:14031 failed: timed out\n"_s),
              u"Connection to … failed: timed out"_s);
    EXPECT_EQ(networkWarning(u"tcp: Connection to tcp://[::1]:4030?a=403 failed (x), next"_s),
              u"Connection to … failed (x), next"_s);
    EXPECT_EQ(networkWarning(u"tcp: Failed to resolve hostname forbidden403.net: Not known"_s),
              u"Failed to resolve hostname …: Not known"_s);
    EXPECT_EQ(networkWarning(u"https: Stream ends prematurely at 14031, should be 24038"_s),
              u"Stream ends prematurely at …, should be …"_s);
    EXPECT_EQ(networkWarning(u"https: HTTP error 500 See http://permission.net:4031/a"_s),
              u"HTTP error 500 See …"_s);
}

TEST_F(LiveStreamMonitorTest, ExplainsAnEndByARecentWarning) {
    playing();
    EXPECT_EQ(monitor.ended(Monitor::End::endOfStream, {}, now).text, u"Stream ended"_s);
    EXPECT_EQ(monitor.ended(Monitor::End::error, u"loading failed"_s, now).text,
              u"loading failed"_s);
    EXPECT_FALSE(monitor.ended(Monitor::End::error, {}, now).text);
    monitor.logged(refusal, now);
    EXPECT_EQ(monitor.ended(Monitor::End::endOfStream, {}, now + 30s).text,
              u"HTTP error 403 Forbidden"_s);
    EXPECT_EQ(monitor.ended(Monitor::End::endOfStream, {}, now + 2min).text, u"Stream ended"_s);
}

TEST_F(LiveStreamMonitorTest, FailsARefusedStartSoonAndASilentOneLater) {
    monitor.opened(now);
    monitor.logged(u"Failed to open segment 3 of playlist 0"_s, now);
    EXPECT_EQ(monitor.deadline(), now + Monitor::startLimit);
    EXPECT_EQ(failureAfter(4s), u"none"_s);
    monitor.logged(refusal, now);
    EXPECT_EQ(failureAfter(2999ms), u"none"_s);
    EXPECT_EQ(failureAfter(1ms), u"HTTP error 403 Forbidden"_s);

    Monitor silent;
    silent.opened(now);
    EXPECT_FALSE(silent.dueFailure(now + 29s));
    EXPECT_EQ(silent.dueFailure(now + 30s)->text, u"No picture arrived"_s);
}

TEST_F(LiveStreamMonitorTest, FailsAStarvedStreamSoonOnlyIfTheServerRefuses) {
    playing();
    EXPECT_FALSE(monitor.deadline());
    monitor.starved(true, now);
    EXPECT_EQ(failureAfter(14s), u"none"_s);
    EXPECT_EQ(failureAfter(1s), u"Stream stalled"_s);

    monitor.starved(false, now);
    EXPECT_FALSE(monitor.deadline());
    monitor.logged(refusal, now);
    EXPECT_EQ(failureAfter(10s), u"none"_s) << "what is buffered still plays";
    monitor.starved(true, now);
    EXPECT_EQ(failureAfter(2999ms), u"none"_s);
    EXPECT_EQ(failureAfter(1ms), u"HTTP error 403 Forbidden"_s);
}

TEST_F(LiveStreamMonitorTest, FailsAPlayingStreamThatDoesNotAdvance) {
    playing();
    const auto standStill = [this](int checks) {
        for (int i = 0; i < checks; ++i)
            monitor.positioned({.time = 12.5, .audio = std::nullopt});
    };
    standStill(Monitor::stallChecks);
    monitor.positioned({.time = 12.5, .audio = 12.6});
    standStill(Monitor::stallChecks);
    EXPECT_EQ(failureAfter(0s), u"none"_s);
    monitor.paused(true, now);
    standStill(Monitor::stallChecks);
    monitor.paused(false, now);
    standStill(Monitor::stallChecks);
    EXPECT_EQ(failureAfter(0s), u"none"_s) << "it stood still while it was paused";
    standStill(1);
    EXPECT_EQ(failureAfter(0s), u"Stream stalled"_s);
}

TEST_F(LiveStreamMonitorTest, FailsIfEitherOfTwoStreamsDoesNotAdvance) {
    const auto playOne = [this](std::optional<double> Monitor::Position::* one) {
        for (int i = 0; i <= Monitor::stallChecks; ++i) {
            Monitor::Position position{.time = 12.5, .audio = std::nullopt};
            position.*one = i;
            monitor.positioned(position);
        }
    };
    for (const auto one : {&Monitor::Position::time, &Monitor::Position::audio}) {
        monitor = Monitor();
        playing();
        playOne(one);
        EXPECT_EQ(failureAfter(0s), u"none"_s);
        monitor.expectBoth();
        playOne(one);
        EXPECT_EQ(failureAfter(0s), u"Stream stalled"_s);
    }
}

TEST_F(LiveStreamMonitorTest, NeverFailsAPausedStream) {
    playing();
    monitor.starved(true, now);
    monitor.paused(true, now);
    EXPECT_EQ(failureAfter(1h), u"none"_s);
    monitor.paused(false, now);
    EXPECT_EQ(failureAfter(14s), u"none"_s);
    EXPECT_EQ(failureAfter(1s), u"Stream stalled"_s);
}

} // namespace
} // namespace orvane
