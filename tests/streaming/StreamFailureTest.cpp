// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/ladder/StreamFailure.h"

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

TEST(StreamFailure, IsReadFromTheTextsOfYtDlpAndThePlayer) {
    const struct {
        StreamFailure failure;
        QString text;
    } rows[] = {
        {StreamFailure::outdated,
         u"ERROR: [youtube] x: This app version is no longer supported. Please update."_s},
        {StreamFailure::outdated, u"ERROR: [youtube] x: No video formats found!; please report"_s},
        {StreamFailure::outdated, u"ERROR: [youtube] x: Requested format is not available."_s},
        {StreamFailure::outdated,
         u"WARNING: [youtube] x: ios client https formats require a GVS PO Token\nERROR: x"_s},
        {StreamFailure::outdated,
         u"ERROR: [youtube] x: Unable to download API page: HTTP Error 403: Forbidden"_s},
        {StreamFailure::notLive, u"ERROR: [youtube:tab] @x: The channel is not currently live"_s},
        {StreamFailure::notLive,
         u"WARNING: PO Token\nERROR: [youtube] x: This live event will begin in 3 hours."_s},
        {StreamFailure::botCheck,
         u"ERROR: [youtube] x: Sign in to confirm you’re not a bot. Use --cookies"_s},
        {StreamFailure::unavailable, u"ERROR: [youtube] x: Private video. Sign in"_s},
        {StreamFailure::unavailable,
         u"ERROR: [youtube] x: Join this channel to get access to members-only content"_s},
        {StreamFailure::offline,
         u"ERROR: Unable to download webpage: <urlopen error [Errno -3] Temporary failure in "
         "name resolution>"_s},
        {StreamFailure::offline, u"Failed to resolve hostname cdn.example"_s},
        {StreamFailure::unknown, u"Stream ended"_s},
        {StreamFailure::unknown, QString()},
    };
    for (const auto& row : rows)
        EXPECT_EQ(streamFailureOf(row.text), row.failure) << qUtf8Printable(row.text);
}

TEST(StreamFailure, HasAMessageForTheUser) {
    EXPECT_EQ(messageFor(u"Stream ended"_s), u"Stream ended"_s);
    EXPECT_EQ(messageFor(u"Stream resolve failed: WARNING: a\nERROR: [x] one\nERROR: [x] two\n"_s),
              u"[x] two"_s);
    EXPECT_FALSE(messageFor(u"ERROR: [youtube] x: Private video"_s).contains(u"ERROR"_s));
}

} // namespace
} // namespace orvane
