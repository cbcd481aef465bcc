// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/ladder/StreamFailure.h"

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

struct Case {
    const char* text;
    StreamFailure failure;
};

using enum StreamFailure;
constexpr Case cases[] = {
    {"ERROR: [youtube:tab] @dwnews: The channel is not currently live", notLive},
    {"ERROR: [youtube] iyU6v19C9c8: This live event will begin in 3 hours.", notLive},
    {"ERROR: [youtube] iyU6v19C9c8: Premieres in 5 hours", notLive},
    {"ERROR: [youtube] iyU6v19C9c8: Premiere will begin shortly", notLive},
    {"ERROR: [youtube] iyU6v19C9c8: This live event has ended.", notLive},
    {"ERROR: [youtube] iyU6v19C9c8: This live stream recording is not available.", notLive},
    {"ERROR: [youtube] iyU6v19C9c8: Sign in to confirm you’re not a bot. Use "
     "--cookies-from-browser or --cookies for the authentication.",
     botCheck},
    {"ERROR: [youtube:tab] @dwnews: Unable to download webpage: HTTP Error 429: Too Many Requests "
     "(caused by <HTTPError 429: Too Many Requests>)",
     botCheck},
    {"ERROR: [youtube] iyU6v19C9c8: Private video. Sign in if you've been granted access to this "
     "video",
     unavailable},
    {"ERROR: [youtube] iyU6v19C9c8: Join this channel to get access to members-only content like "
     "this video, and other exclusive perks.",
     unavailable},
    {"ERROR: [youtube] iyU6v19C9c8: This video is available to this channel's members on level: "
     "Fan (or any higher level).",
     unavailable},
    {"ERROR: [youtube] iyU6v19C9c8: Video unavailable. This video has been removed by the uploader",
     unavailable},
    {"ERROR: [youtube] iyU6v19C9c8: The uploader has not made this video available in your "
     "country\nThis video is available in Germany.\nYou might want to use a VPN",
     unavailable},
    {"ERROR: [youtube] iyU6v19C9c8: Video unavailable. This video contains content from DW, who "
     "has blocked it in your country on copyright grounds",
     unavailable},
    {"ERROR: [youtube:tab] @dwnews: Unable to download webpage: HTTP Error 404: Not Found (caused "
     "by <HTTPError 404: 'Not Found'>)",
     unavailable},
    {"ERROR: [youtube:tab] @dwnews: Unable to download webpage: <urlopen error [Errno -3] "
     "Temporary failure in name resolution> (caused by URLError(gaierror(-3)))",
     offline},
    {"ERROR: [youtube:tab] @dwnews: Unable to download webpage: HTTPSConnection(host='a', "
     "port=443): Failed to resolve 'a' ([Errno -2] Name or service not known)",
     offline},
    {"ERROR: [generic] Unable to download webpage: <urlopen error [Errno 111] Connection refused>",
     offline},
    {"WARNING: [youtube] Skipping client \"ios\" since it requires a PO Token\nERROR: [youtube] "
     "iyU6v19C9c8: No video formats found!; please report this issue",
     outdated},
    {"ERROR: [youtube] iyU6v19C9c8: Requested format is not available. Use --list-formats",
     outdated},
    {"WARNING: [youtube] YouTube said: ERROR - This app version is no longer supported\nWARNING: "
     "[youtube] No supported JavaScript runtime could be found\nERROR: [youtube] iyU6v19C9c8: "
     "Private video. Sign in if you've been granted access to this video",
     unavailable},
    {"ERROR: [youtube] iyU6v19C9c8: Sign in to confirm your age. This video may be inappropriate "
     "for some users.",
     unknown},
    {"ERROR: [generic] 'x' is not a valid URL", unknown},
    {"Stream ended", unknown},
};

TEST(StreamFailure, IsReadFromTheText) {
    for (const Case& each : cases) {
        const QString text = QString::fromUtf8(each.text);
        EXPECT_EQ(streamFailureOf(text), each.failure) << each.text;
        EXPECT_EQ(streamFailureOf(u"Stream resolve failed: "_s + text), each.failure) << each.text;
    }
}

TEST(StreamFailure, MessageIsTheLastErrorOrTheTextItselfForAnUnknownFailure) {
    EXPECT_EQ(messageFor(u"Stream resolve failed: WARNING: old\nERROR: one\n ERROR: two\nhint\n"_s),
              u"two"_s);
    EXPECT_EQ(messageFor(u"Stream resolve failed: ERROR: one\nmore"_s), u"one"_s);
    EXPECT_EQ(messageFor(u"Stream ended, no ERROR: here"_s), u"Stream ended, no ERROR: here"_s);
    EXPECT_EQ(messageFor(u"ERROR: a: Private video"_s), messageFor(u"http error 404"_s));
}

} // namespace
} // namespace orvane
