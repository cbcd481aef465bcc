// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/instance/SingleInstance.h"

#include "support/EventLoop.h"

#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <future>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::runUntil;
using Answer = MessageServer::Answer;

namespace {

class SingleInstanceTest : public testing::Test {
protected:
    [[nodiscard]] SingleInstance::Claim claim(const QByteArray& message,
                                              std::chrono::milliseconds timeout = 20s) const {
        return SingleInstance::claim(address, message, timeout);
    }
    /// A claim as if by another process, while the event loop of this one runs.
    [[nodiscard]] SingleInstance::Claim claimBeside(const QByteArray& message) const {
        auto result = std::async(std::launch::async, [&] { return claim(message); });
        EXPECT_TRUE(runUntil([&] { return result.wait_for(0s) == std::future_status::ready; }));
        return result.get();
    }
    [[nodiscard]] std::unique_ptr<SingleInstance> first() const {
        SingleInstance::Claim result = claim("first");
        return std::get<std::unique_ptr<SingleInstance>>(std::move(result));
    }
    void serve(SingleInstance& instance, std::chrono::milliseconds timeout) {
        instance.serve(
            [&](const QByteArray& message) {
                heard += message;
                if (message == "quit")
                    instance.close();
                return message == "nonsense" ? Answer::refused : Answer::done;
            },
            timeout);
    }
    [[nodiscard]] std::unique_ptr<QLocalSocket> peer(const QByteArray& says) const {
        auto socket = std::make_unique<QLocalSocket>();
        socket->connectToServer(address.socketPath);
        socket->write(says);
        return socket;
    }

    QTemporaryDir folder;
    InstanceAddress address = instanceAddress({folder.path()}, u"name"_s).value();
    QList<QByteArray> heard;
};

TEST_F(SingleInstanceTest, AnswersOtherStartsOrLetsThemTakeOver) {
    auto instance = first();
    // It is still starting, so messages wait.
    auto early = std::async(std::launch::async, [&] { return claim("early"); });
    EXPECT_EQ(std::get<SingleInstance::Failure>(claim("impatient", 50ms)),
              SingleInstance::Failure::noAnswer);
    serve(*instance, 10s);
    ASSERT_TRUE(runUntil([&] { return early.wait_for(0s) == std::future_status::ready; }));
    EXPECT_TRUE(std::holds_alternative<SingleInstance::Delivered>(early.get()));
    EXPECT_EQ(heard, QList<QByteArray>{"early"}) << "a message reported as failed has no effect";

    const QByteArray longest(MessageServer::longestMessage, 'x');
    EXPECT_TRUE(std::holds_alternative<SingleInstance::Delivered>(claimBeside(longest)));
    EXPECT_EQ(heard.takeLast(), longest);
    EXPECT_EQ(std::get<SingleInstance::Failure>(claim(longest + 'x')),
              SingleInstance::Failure::tooLong);
    EXPECT_EQ(std::get<SingleInstance::Failure>(claimBeside("nonsense")),
              SingleInstance::Failure::refused);

    EXPECT_TRUE(std::holds_alternative<SingleInstance::Delivered>(claimBeside("quit")))
        << "the copy that ends still answers";
    auto next = std::async(std::launch::async, [&] { return claim("next"); });
    EXPECT_EQ(next.wait_for(50ms), std::future_status::timeout) << "the old one still has the lock";
    instance.reset();
    EXPECT_TRUE(std::get<std::unique_ptr<SingleInstance>>(next.get()));
    EXPECT_FALSE(heard.contains("next"));
}

TEST_F(SingleInstanceTest, DropsBadPeersWithoutDelayingOthers) {
    const auto instance = first();
    serve(*instance, 200ms);
    std::vector<std::unique_ptr<QLocalSocket>> peers;
    peers.push_back(peer(QByteArray(MessageServer::longestMessage + 1, 'x')));
    for (int i = 0; i < 100; ++i)
        peers.push_back(peer("half a mess"));
    peer("gone before it was heard\n").reset();
    EXPECT_TRUE(std::holds_alternative<SingleInstance::Delivered>(claimBeside("good")));
    EXPECT_EQ(heard, QList<QByteArray>{"good"});
    EXPECT_TRUE(runUntil([&] {
        return std::ranges::all_of(
            peers, [](const auto& p) { return p->state() == QLocalSocket::UnconnectedState; });
    }));
}

TEST_F(SingleInstanceTest, UsesOnlyPrivateFolders) {
    const QString open = folder.filePath(u"open"_s);
    ASSERT_TRUE(QDir().mkdir(open));
    ASSERT_TRUE(QFile::setPermissions(open, QFile::permissions(open) | QFile::ReadOther));
    const QString link = folder.filePath(u"link"_s);
    ASSERT_TRUE(QFile::link(folder.path(), link));
    const QStringList bad{u"/dev/null/folder"_s, open, link, folder.filePath(QString(100, u'x'))};
    EXPECT_FALSE(instanceAddress(bad, u"name"_s));
    const auto made = instanceAddress(bad + QStringList(folder.filePath(u"new"_s)), u"name"_s);
    ASSERT_TRUE(made);
    EXPECT_TRUE(made->lockPath.startsWith(folder.filePath(u"new/"_s)));
}

TEST(InstanceName, DependsOnSessionAndProfile) {
    const QString usual = instanceName(u":0"_s, u"wayland-0"_s, u"a"_s);
    EXPECT_EQ(instanceName(u":0.1"_s, QString(), u"a"_s), usual);
    for (const QString& other :
         {instanceName(u":1"_s, QString(), u"a"_s), instanceName(u"host:0"_s, QString(), u"a"_s),
          instanceName(QString(), u"wayland-0.1"_s, u"a"_s), instanceName(u":0"_s, {}, u"b"_s)})
        EXPECT_NE(other, usual);
    EXPECT_FALSE(instanceName(u"unix/:0"_s, QString(), u"/a"_s).contains(u'/'));
}

} // namespace
} // namespace orvane
