// SPDX-License-Identifier: GPL-3.0-or-later
#include "telemetry/TelemetryService.h"

#include "model/Channel.h"
#include "platform/system/HttpClient.h"
#include "settings/UserDefaults.h"
#include "support/EventLoop.h"
#include "support/LoopbackServer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using test::LoopbackServer;
using test::runUntil;

namespace {

constexpr QLatin1StringView key{"lumenfold.orvane.telemetryUserID"};

bool matches(const QString& text, const QString& pattern) {
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text).hasMatch();
}

class TelemetryServiceTest : public testing::Test {
protected:
    TelemetryServiceTest() { server.answers[u"/v2/"_s] = {}; }

    /// Calls `send`, which sends one signal; returns the object that the server received.
    QJsonObject sent(const std::function<void()>& send) {
        server.received.clear();
        send();
        EXPECT_TRUE(
            runUntil([&] { return !server.received.isEmpty() && !http.hasUnansweredRequests(); }));
        const QJsonArray body = QJsonDocument::fromJson(server.received.first().body).array();
        EXPECT_EQ(body.size(), 1);
        return body.first().toObject();
    }
    QJsonObject launched(TelemetryService& service) {
        return sent([&] { service.appLaunched(); });
    }

    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(u"preferences.json"_s)};
    LoopbackServer server;
    HttpClient http{u"Orvane"_s};
};

TEST_F(TelemetryServiceTest, SendsThePayloadOfEachSignalInOneSession) {
    TelemetryService service(defaults, http, server.origin());
    EXPECT_FALSE(defaults.string(key)) << "no id before the first signal";
    const Channel channel(u"x1"_s, u"قناة"_s, u"Channel \"One\""_s, u"One"_s,
                          ChannelCategory::custom);
    const std::pair<std::function<void()>, QJsonObject> cases[]{
        {[&] { service.channelPlayed(channel); },
         {{u"type"_s, u"channelPlayed"_s},
          {u"payload"_s,
           QJsonObject{{u"channelID"_s, u"x1"_s}, {u"channelName"_s, u"Channel \"One\""_s}}}}},
        {[&] { service.settingsOpened(); },
         {{u"type"_s, u"settingsOpened"_s}, {u"payload"_s, QJsonObject()}}},
        {[&] { service.resolutionChanged(Resolution::rBest); },
         {{u"type"_s, u"resolutionChanged"_s},
          {u"payload"_s, QJsonObject{{u"resolution"_s, u"Best"_s}}}}},
    };
    QString session;
    for (const auto& [send, expected] : cases) {
        QJsonObject object = sent(send);
        object.remove(u"appID"_s);
        object.remove(u"clientUser"_s);
        const QString id = object.take(u"sessionID"_s).toString();
        EXPECT_TRUE(matches(id, u"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"_s));
        EXPECT_TRUE(session.isEmpty() || session == id);
        session = id;
        EXPECT_EQ(object, expected);
        EXPECT_EQ(server.received.first().method, "POST");
    }
}

TEST_F(TelemetryServiceTest, SendsTheHashOfTheStoredID) {
    TelemetryService first(defaults, http, server.origin());
    launched(first);
    EXPECT_TRUE(matches(defaults.string(key).value_or(QString()), u"[0-9A-F-]{36}"_s));

    defaults.set(key, u"abc"_s);
    TelemetryService second(defaults, http, server.origin());
    EXPECT_EQ(launched(second)[u"clientUser"],
              u"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"_s);
    EXPECT_EQ(defaults.string(key), u"abc"_s);
}

TEST_F(TelemetryServiceTest, IgnoresRedirectsCookiesAndBodies) {
    server.answers[u"/v2/"_s] = {.status = 302,
                                 .body = "never sent",
                                 .cutAfter = 0,
                                 .location = "/elsewhere",
                                 .end = LoopbackServer::Answer::End::hanging,
                                 .moreHeaders = "Set-Cookie: a=b\r\n"};
    TelemetryService service(defaults, http, server.origin());
    for (int run = 0; run < 2; ++run) {
        launched(service);
        EXPECT_EQ(server.received.size(), 1) << "redirect not followed";
        EXPECT_FALSE(server.received.first().headers.contains("cookie"));
    }
}

TEST_F(TelemetryServiceTest, IsSilentWithoutAnAnswer) {
    static QStringList logged;
    logged.clear();
    const auto before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { logged += text; });
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    const auto origin = Origin::parse(u"http://127.0.0.1:%1"_s.arg(silent.serverPort()));
    {
        HttpClient client(u"Orvane"_s);
        TelemetryService hanging(defaults, client, origin);
        hanging.appLaunched();
        EXPECT_TRUE(runUntil([&] { return silent.hasPendingConnections(); }));
        EXPECT_TRUE(client.hasUnansweredRequests());
        // Both are destroyed while the request hangs.
    }
    silent.close();
    TelemetryService refused(defaults, http, origin);
    refused.appLaunched();
    EXPECT_TRUE(runUntil([&] { return http.hasUnansweredRequests(); }));
    EXPECT_TRUE(runUntil([&] { return !http.hasUnansweredRequests(); }));
    qInstallMessageHandler(before);
    EXPECT_TRUE(logged.isEmpty()) << logged.join(u'\n').toStdString();
}

TEST_F(TelemetryServiceTest, DoesNothingWithoutAnEndpoint) {
    TelemetryService service(defaults, http, std::nullopt);
    service.appLaunched();
    test::settle();
    EXPECT_FALSE(http.hasUnansweredRequests());
    EXPECT_FALSE(defaults.string(key));
}

} // namespace
} // namespace orvane
