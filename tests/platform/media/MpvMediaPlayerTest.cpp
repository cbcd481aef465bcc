// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/MpvMediaPlayer.h"

#include "platform/media/MpvMediaPlayerFactory.h"
#include "platform/media/MpvTeardownQueue.h"
#include "platform/media/view/VideoOutput.h"
#include "support/EventLoop.h"
#include "support/LoopbackServer.h"

#include <QCoroTask>
#include <QFile>
#include <QHostAddress>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <gtest/gtest.h>
#include <mpv/client.h>

namespace orvane {

using namespace Qt::StringLiterals;
using test::runUntil;

namespace {

/// Serves a live stream with lists of their own for the picture, white from second 5 on, and for
/// the sound, a tone from second 5 on. The lists begin at the segments of these numbers.
class SplitStream {
public:
    SplitStream(int firstPicture, int firstSound) {
        const QTemporaryDir folder;
        encode(folder.filePath(u"p%d.ts"_s), u"color=black:s=64x64:r=25,"
                                             "drawbox=t=fill:c=white:enable='gte(t,5)'"_s);
        encode(folder.filePath(u"s%d.ts"_s), u"aevalsrc='0.5*sin(2000*t)*gte(t,5)':s=48000"_s);
        for (const QString& name : {u"p"_s, u"s"_s}) {
            const int first = name == u"p" ? firstPicture : firstSound;
            QByteArray list = "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXT-X-MEDIA-SEQUENCE:" +
                              QByteArray::number(first) + '\n';
            for (int i = first; i < first + 3; ++i) {
                const QString segment = u"%1%2.ts"_s.arg(name).arg(i);
                QFile file(folder.filePath(segment));
                EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << segment.toStdString();
                server.answers[u'/' + segment] = {.body = file.readAll()};
                list += "#EXTINF:2,\n" + segment.toUtf8() + '\n';
            }
            server.answers[name == u"p" ? picture : sound] = {.body = list};
        }
    }

    [[nodiscard]] StreamAddress address() const {
        const std::optional<Origin> origin = server.origin();
        return {QUrl(origin->address(picture)), QUrl(origin->address(sound))};
    }

    const QString picture = u"/picture.m3u8"_s;
    // Both "," and ":" separate the items of mpv's lists.
    const QString sound = u"/sound.m3u8?expires=1,2:3"_s;

    test::LoopbackServer server;

private:
    static void encode(const QString& target, const QString& source) {
        EXPECT_EQ(QProcess::execute(u"ffmpeg"_s,
                                    {u"-loglevel"_s, u"error"_s, u"-nostdin"_s, u"-f"_s,
                                     u"lavfi"_s,     u"-i"_s,    source,        u"-t"_s,
                                     u"8"_s,         u"-bf"_s,   u"0"_s,        u"-g"_s,
                                     u"50"_s,        u"-f"_s,    u"segment"_s,  u"-segment_time"_s,
                                     u"2"_s,         u"-c:v"_s,  u"libx264"_s,  u"-c:a"_s,
                                     u"aac"_s,       target}),
                  0);
    }
};

/// Players with the real libmpv and without a view.
class MpvMediaPlayerTest : public testing::Test {
protected:
    ~MpvMediaPlayerTest() override { QCoro::waitFor(teardown.empty()); }

    [[nodiscard]] std::unique_ptr<MediaPlayer> make(const StreamAddress& address) {
        return QCoro::waitFor(factory.make(address, factory.standBy(), {}));
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
        EXPECT_EQ(player->error(), u"The stream has no web address"_s);
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
    EXPECT_EQ(
        QCoro::waitFor(factory.make(QUrl(u"http://127.0.0.1:1/"_s), nullptr, stop.get_token())),
        nullptr);
}

class SplitStreamTest : public MpvMediaPlayerTest,
                        public testing::WithParamInterface<std::pair<int, int>> {};

INSTANTIATE_TEST_SUITE_P(SoundEarlierAndLater, SplitStreamTest,
                         testing::Values(std::pair(1, 0), std::pair(0, 1)));

TEST_P(SplitStreamTest, PlaysSoundFromAnotherAddressAtTheSameTimeAsThePicture) {
    const SplitStream stream(GetParam().first, GetParam().second);
    const QTemporaryDir folder;
    const QString seen = folder.filePath(u"seen"_s);
    const QString heard = folder.filePath(u"heard"_s);
    const QString write = u"lavfi=[%1detect=d=0.1,%2=print:key=lavfi.%1_end:direct=1:file=%3]"_s;
    mpv_handle* handle = MpvInstance::makeHandle(VideoOutput::software, MpvInstance::Sound::on);
    ASSERT_NE(handle, nullptr);
    for (const auto& [name, value] :
         {std::pair("vo", u"null"_s), std::pair("ao", u"null"_s),
          std::pair("vf", write.arg(u"black"_s, u"metadata"_s, seen)),
          std::pair("af", write.arg(u"silence"_s, u"ametadata"_s, heard))})
        ASSERT_EQ(mpv_set_property_string(handle, name, qUtf8Printable(value)), 0) << name;
    MpvLog log;
    SoundServer soundServer(teardown);
    BackgroundThreads disk(1);
    MpvMediaPlayer player(stream.address(), std::make_unique<MpvInstance>(handle),
                          MpvInstance::Sound::on, log, soundServer, teardown, disk);
    player.play();
    const auto foundIn = [](const QString& path) {
        QFile file(path);
        const bool exists = file.open(QIODevice::ReadOnly);
        const QByteArray text = exists ? file.readAll() : QByteArray();
        return text.mid(text.indexOf("_end=") + 5).trimmed().toDouble();
    };
    ASSERT_TRUE(runUntil([&] { return foundIn(seen) > 0 && foundIn(heard) > 0; }))
        << player.error().value_or(QString()).toStdString();
    double difference = 1;
    mpv_get_property(handle, "avsync", MPV_FORMAT_DOUBLE, &difference);
    constexpr double noticeable = 0.1;
    EXPECT_NEAR(foundIn(seen), foundIn(heard), noticeable);
    EXPECT_NEAR(difference, 0, noticeable);
}

TEST_F(MpvMediaPlayerTest, FailsIfTheSoundIsRefused) {
    SplitStream stream(0, 0);
    stream.server.answers[stream.sound] = {.status = 403};
    const std::unique_ptr<MediaPlayer> player = make(stream.address());
    player->play();
    ASSERT_TRUE(runUntil([&] { return player->status() == MediaPlayer::Status::failed; }));
    EXPECT_EQ(player->error(), u"HTTP error 403 Answer"_s);
}

} // namespace
} // namespace orvane
