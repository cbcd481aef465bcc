// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/MpvMediaPlayer.h"

#include "platform/media/VideoOutput.h"
#include "support/EventLoop.h"
#include "support/LoopbackServer.h"

#include <QCoroTask>
#include <QHostAddress>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryFile>

#include <gtest/gtest.h>
#include <mpv/render.h>

namespace orvane {

using namespace Qt::StringLiterals;
using test::runUntil;

namespace {

/// Players with the real libmpv and without a view.
class MpvMediaPlayerTest : public testing::Test {
protected:
    ~MpvMediaPlayerTest() override { QCoro::waitFor(teardown.empty()); }

    [[nodiscard]] std::unique_ptr<MediaPlayer> make(const StreamAddress& address) {
        return QCoro::waitFor(factory.make(address, {}));
    }

    MpvTeardownQueue teardown;
    MpvMediaPlayerFactory factory{teardown, VideoOutput::software};
};

TEST_F(MpvMediaPlayerTest, OpensOnlyWebAddresses) {
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    for (const QUrl& url : {QUrl::fromLocalFile(file.fileName()), QUrl(u"av://lavfi:testsrc"_s),
                            QUrl(u"memory://x"_s), QUrl(u"word"_s)}) {
        const std::unique_ptr<MediaPlayer> player = make(url);
        player->play();
        EXPECT_EQ(player->status(), MediaPlayer::Status::unknown) << "reported after the call";
        ASSERT_TRUE(runUntil([&] { return player->status() == MediaPlayer::Status::failed; }));
        EXPECT_TRUE(player->error().value_or(QString()).startsWith(u"Not a web address: "_s));
    }
}

TEST_F(MpvMediaPlayerTest, ReportsNetworkErrorsOfEveryPlayer) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    QObject::connect(&server, &QTcpServer::newConnection, [&server] {
        QTcpSocket* socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] {
            socket->readAll();
            socket->write("HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n");
            socket->disconnectFromHost();
        });
    });
    const QUrl url(u"http://127.0.0.1:%1/live.m3u8"_s.arg(server.serverPort()));
    std::unique_ptr<MediaPlayer> before;
    for (int i = 0; i < 3; ++i) {
        std::unique_ptr<MediaPlayer> player = make(url);
        before.reset();
        player->play();
        ASSERT_TRUE(runUntil([&] { return player->status() == MediaPlayer::Status::failed; }));
        EXPECT_EQ(player->error(), u"HTTP error 403 Forbidden"_s);
        before = std::move(player);
    }
}

/// Returns a stream of three seconds that ffmpeg encodes from its own source.
QByteArray encoded(const QStringList& source) {
    QProcess ffmpeg;
    ffmpeg.start(u"ffmpeg"_s, QStringList{u"-v"_s, u"error"_s, u"-f"_s, u"lavfi"_s, u"-i"_s} +
                                  source +
                                  QStringList{u"-t"_s, u"3"_s, u"-f"_s, u"mpegts"_s, u"-"_s});
    ffmpeg.waitForFinished();
    return ffmpeg.readAllStandardOutput();
}

TEST_F(MpvMediaPlayerTest, PlaysSoundOfAnotherAddressOrFails) {
    test::LoopbackServer server;
    const QByteArray picture = encoded({u"testsrc=size=160x90"_s, u"-c:v"_s, u"mpeg2video"_s});
    const QByteArray sound = encoded({u"sine"_s, u"-c:a"_s, u"mp2"_s});
    ASSERT_GT(picture.size(), 10000);
    ASSERT_GT(sound.size(), 10000);
    // Neither ends, as in a live stream.
    using End = test::LoopbackServer::Answer::End;
    server.answers[u"/picture.ts"_s] = {
        .body = picture, .cutAfter = picture.size() - 1, .end = End::hanging};
    server.answers[u"/a:b,c.ts"_s] = {
        .body = sound, .cutAfter = sound.size() - 1, .end = End::hanging};
    server.answers[u"/refused.ts"_s] = {.status = 403};
    const auto open = [&](const QString& soundPath) {
        StreamAddress address(QUrl(server.origin()->address(u"/picture.ts")));
        address.sound = QUrl(server.origin()->address(soundPath));
        std::unique_ptr<MediaPlayer> player = make(address);
        VideoSource* source = player->videoSource();
        source->expectRenderer();
        player->play();
        char api[] = MPV_RENDER_API_TYPE_SW;
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        source->createRenderer(parameters, {}, [] {});
        source->frameShown();
        return player;
    };
    const std::unique_ptr<MediaPlayer> whole = open(u"/a:b,c.ts"_s);
    EXPECT_TRUE(runUntil([&] { return whole->status() == MediaPlayer::Status::readyToPlay; }));
    EXPECT_TRUE(server.requests.join(u' ').contains(u"/a:b,c.ts"_s));
    const std::unique_ptr<MediaPlayer> silent = open(u"/refused.ts"_s);
    ASSERT_TRUE(runUntil([&] { return silent->status() == MediaPlayer::Status::failed; }));
    EXPECT_TRUE(silent->error().value_or(QString()).startsWith(u"HTTP error 403"_s));
    EXPECT_EQ(whole->status(), MediaPlayer::Status::readyToPlay);
}

TEST_F(MpvMediaPlayerTest, DestroysPlayersOfHangingServersAFewAtATime) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    int connections = 0;
    QObject::connect(&server, &QTcpServer::newConnection, [&] { ++connections; });
    const QUrl url(u"http://127.0.0.1:%1/live.m3u8"_s.arg(server.serverPort()));
    for (int i = 1; i <= 2 * MpvTeardownQueue::maximumCount; ++i) {
        const std::unique_ptr<MediaPlayer> player = make(url);
        EXPECT_LT(teardown.count(), MpvTeardownQueue::maximumCount);
        player->play();
        ASSERT_TRUE(runUntil([&] { return connections >= i; }));
        EXPECT_EQ(player->timeControlStatus(), MediaPlayer::TimeControlStatus::waiting);
    }
    EXPECT_TRUE(runUntil([&] { return teardown.count() == 0; }));
}

TEST_F(MpvMediaPlayerTest, MakesNoPlayerIfStoppedWhileTooManyAreDestroyed) {
    for (int i = 0; i < MpvTeardownQueue::maximumCount; ++i)
        make(QUrl(u"http://127.0.0.1:1/"_s)).reset();
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(QCoro::waitFor(factory.make(QUrl(u"http://127.0.0.1:1/"_s), stop.get_token())),
              nullptr);
}

} // namespace
} // namespace orvane
