// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/ChannelResolver.h"

#include "platform/system/HttpClient.h"
#include "streaming/tool/YtDlpTool.h"
#include "support/FakeClock.h"
#include "support/FakeMachine.h"
#include "support/FakeProcessRunner.h"

#include <QCoroTask>
#include <QDeadlineTimer>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using test::printed;

namespace {

TEST(ExtractHandle, ReadsPastedText) {
    const struct {
        QString input;
        QString handle;
    } rows[] = {
        {u" @AlArabiya \n"_s, u"AlArabiya"_s},
        {u"bareword"_s, u"bareword"_s},
        {u"two words"_s, u"two words"_s},
        {u"https://site.example/@AlArabiya"_s, u"AlArabiya"_s},
        {u"https://www.site.example/@AlArabiya/live"_s, u"AlArabiya"_s},
        {u"m.site.example/@AlArabiya//videos"_s, u"AlArabiya"_s},
        {u"https://site.example/c/Some/videos"_s, u"Some"_s},
        {u"https://site.example/channel/UC123"_s, u"UC123"_s},
        // The markers are looked for in a fixed order, wherever they stand.
        {u"https://site.example/c/Some/@x"_s, u"x"_s},
        {u"https://site.example/channel/UC1/c/Some"_s, u"Some"_s},
        {u"\u200f\u00a0@العربية\u200e\u00a0"_s, u"العربية"_s},
        {u"https://site.example/@%D8%A7%D9%84"_s, u"%D8%A7%D9%84"_s},
        {u"https://site.example/@a.b/live?x=1#y"_s, u"a.b"_s},
        {u"https://site.example/@AlArabiya?si=x/y#z"_s, u"AlArabiya"_s},
        {u"https://site.example/c/Some#about"_s, u"Some"_s},
        {u"https://site.example/@?si=x"_s, u"https://site.example/@?si=x"_s},
        {u"@a?b"_s, u"a?b"_s},
        {u"site.example"_s, u"site.example"_s},
        {u"https://site.example/@"_s, u"https://site.example/@"_s},
        {u"https://site.example/watch?v=x"_s, u"https://site.example/watch?v=x"_s},
        {u"@"_s, QString()},
        {u" \u200b \n"_s, QString()},
        {QString(), QString()},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ChannelResolver::extractHandle(row.input), row.handle) << row.input.toStdString();
}

/// Random texts made of the pieces that the code looks for. ORVANE_FUZZ_SECONDS prolongs the test.
TEST(ExtractHandle, AndChannelNameAcceptAnyText) {
    QStringList pieces =
        u"/@ /c/ /channel/ @ / . ? # % https:// \u200f \u00a0 قناة a \" { } [\"channel\": {\"uploader\":\""_s
            .split(u' ');
    pieces += {u" "_s, u"\n"_s, QString(QChar(0xd800)), QString(QChar(0))};
    QRandomGenerator random(20261122);
    const QDeadlineTimer end(
        std::chrono::seconds(qEnvironmentVariableIntValue("ORVANE_FUZZ_SECONDS")));
    int tries = 0;
    do {
        for (int i = 0; i < 1000; ++i, ++tries) {
            QString text;
            for (int length = random.bounded(12); length > 0; --length) {
                text += random.bounded(4) == 0
                            ? QString(QChar(static_cast<char16_t>(random.bounded(0x10000))))
                            : pieces.at(random.bounded(static_cast<int>(pieces.size())));
            }
            const QString handle = ChannelResolver::extractHandle(text);
            ASSERT_TRUE(text.contains(handle)) << "a handle is a part of the text";
            (void)ChannelResolver::channelName(text.toUtf8());
        }
    } while (!end.hasExpired());
    RecordProperty("tries", tries);
}

class ChannelResolverTest : public testing::Test {
protected:
    [[nodiscard]] QString resolve(const QString& input) {
        const ChannelResolver::Result result = QCoro::waitFor(resolver.resolve(input, {}));
        return result ? result->handle + u'|' + result->name : result.error().description;
    }

    test::FakeMachine machine;
    test::FakeProcessRunner processes;
    test::FakeClock clock;
    HttpClient http{u"test"_s};
    YtDlpTool tool{machine.host(), processes, clock, http, {}};
    ChannelResolver resolver{Origin::parse(u"https://site.example"_s), tool};
    const QString notFound = u"Channel not found. Check the handle or URL."_s;
};

TEST_F(ChannelResolverTest, RequestsTheNewestVideoOfTheChannel) {
    machine.install(u"/home/.local/bin/yt-dlp"_s);
    processes.answer = [](const auto&) { return printed(R"({"channel": "C", "uploader": "U"})"); };
    EXPECT_EQ(resolve(u"@--exec"_s), u"--exec|C"_s);
    ASSERT_EQ(processes.requests.size(), 1);
    EXPECT_EQ(processes.requests.first().program, machine.real(u"/home/.local/bin/yt-dlp"_s));
    EXPECT_EQ(processes.requests.first().arguments,
              (QStringList{u"--dump-json"_s, u"--playlist-items"_s, u"1"_s, u"--no-download"_s,
                           u"https://site.example/@--exec/videos"_s}));
    EXPECT_EQ(processes.requests.first().environment, variables(ToolEnvironment::extendedPath));
}

TEST_F(ChannelResolverTest, FallsBackToThePythonModule) {
    processes.answer = [](const ProcessRequest& request) {
        return printed(request.program.endsWith(u"which") ? "" : R"({"uploader": "U"})");
    };
    EXPECT_EQ(resolve(u"x"_s), u"x|U"_s);
    EXPECT_EQ(processes.requests.last().program, machine.real(u"/usr/bin/python3"_s));
    EXPECT_EQ(processes.requests.last().arguments.first(2), (QStringList{u"-m"_s, u"yt_dlp"_s}));
}

TEST_F(ChannelResolverTest, ReportsWhatWentWrong) {
    for (const char* output :
         {"", "no json", "[]", "null", R"({"channel": 1})", R"({"title": "x"})"}) {
        processes.answer = [&](const auto&) { return printed(output, {}, 1); };
        EXPECT_EQ(resolve(u"x"_s), notFound) << output;
    }
    processes.answer = [](const auto&) -> ProcessOutcome {
        return std::unexpected(LaunchFailure{u"no"_s});
    };
    EXPECT_EQ(resolve(u"x"_s), u"Failed to run yt-dlp"_s);
}

} // namespace
} // namespace orvane
