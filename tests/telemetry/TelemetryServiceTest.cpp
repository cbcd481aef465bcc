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

    /// The object that the service sends when it is told that.
    QJsonObject sent(const std::function<void()>& tell) {
        server.received.clear();
        tell();
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
    QString path = folder.filePath(u"preferences.json"_s);
    UserDefaults defaults{path};
    LoopbackServer server;
    HttpClient http{u"Orvane"_s};
};

TEST_F(TelemetryServiceTest, PostsEachSignalAsAnArrayOfOneObject) {
    TelemetryService service(defaults, http, server.origin());
    EXPECT_FALSE(defaults.string(key)) << "before there is anything to send";
    const Channel channel(u"x1"_s, u"قناة"_s, u"Channel \"One\""_s, u"One"_s,
                          ChannelCategory::custom);
    const std::pair<std::function<void()>, QJsonObject> cases[]{
        {[&] { service.appLaunched(); },
         {{u"type"_s, u"appLaunched"_s}, {u"payload"_s, QJsonObject()}}},
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
    for (const auto& [tell, expected] : cases) {
        QJsonObject object = sent(tell);
        EXPECT_EQ(object.take(u"appID"_s), u"5D2C8E41-7A93-4B6F-9E20-3C1A8F64B7D5"_s);
        EXPECT_TRUE(matches(object.take(u"clientUser"_s).toString(), u"[0-9a-f]{64}"_s));
        const QString id = object.take(u"sessionID"_s).toString();
        EXPECT_TRUE(matches(id, u"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"_s));
        EXPECT_TRUE(session.isEmpty() || session == id);
        session = id;
        EXPECT_EQ(object, expected);
        const LoopbackServer::Request& request = server.received.first();
        EXPECT_EQ(request.method + ' ' + request.path.toLatin1(), "POST /v2/");
        EXPECT_EQ(request.headers.value("content-type"), "application/json");
    }
}

TEST_F(TelemetryServiceTest, KnowsTheInstallationAgainButNotTheRun) {
    TelemetryService first(defaults, http, server.origin());
    const QJsonObject before = launched(first);
    defaults.synchronize();
    UserDefaults later(path);
    TelemetryService second(later, http, server.origin());
    const QJsonObject after = launched(second);
    EXPECT_EQ(before[u"clientUser"], after[u"clientUser"]);
    EXPECT_NE(before[u"sessionID"], after[u"sessionID"]);
    EXPECT_TRUE(matches(later.string(key).value_or(QString()), u"[0-9A-F-]{36}"_s));

    later.set(key, u"abc"_s);
    TelemetryService third(later, http, server.origin());
    EXPECT_EQ(launched(third)[u"clientUser"],
              u"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"_s);
    EXPECT_EQ(later.string(key), u"abc"_s);
}

TEST_F(TelemetryServiceTest, TakesNothingFromAnAnswer) {
    server.answers[u"/v2/"_s] = {.status = 302,
                                 .body = "what never comes",
                                 .cutAfter = 0,
                                 .location = "/elsewhere",
                                 .end = LoopbackServer::Answer::End::hanging,
                                 .moreHeaders = "Set-Cookie: a=b\r\n"};
    TelemetryService service(defaults, http, server.origin());
    for (int run = 0; run < 2; ++run) {
        launched(service);
        EXPECT_EQ(server.received.size(), 1) << "no other place";
        EXPECT_FALSE(server.received.first().headers.contains("cookie"));
    }
}

TEST_F(TelemetryServiceTest, IsSilentWhenNobodyAnswers) {
    static QStringList said;
    said.clear();
    const auto before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { said += text; });
    QTcpServer nobody;
    ASSERT_TRUE(nobody.listen(QHostAddress::LocalHost));
    const auto origin = Origin::parse(u"http://127.0.0.1:%1"_s.arg(nobody.serverPort()));
    TelemetryService service(defaults, http, origin);
    service.appLaunched();
    EXPECT_TRUE(runUntil([&] { return nobody.hasPendingConnections(); }));
    EXPECT_TRUE(http.hasUnansweredRequests());
    // Refuses what was accepted and what comes after it.
    delete nobody.nextPendingConnection();
    nobody.close();
    service.appLaunched();
    EXPECT_TRUE(runUntil([&] { return !http.hasUnansweredRequests(); }));
    qInstallMessageHandler(before);
    EXPECT_TRUE(said.isEmpty()) << said.join(u'\n').toStdString();
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
