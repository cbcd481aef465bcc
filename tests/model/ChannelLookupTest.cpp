// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/ChannelLookup.h"

#include "model/BuiltInChannels.h"

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Looks `text` up in the built-in table and a few custom channels. Returns an id, "or" with the
/// candidates, or "near" with the suggestions.
QString found(const QString& text) {
    const QList<Channel> channels = builtInChannels() + QList{Channel::custom(u"a"_s, u"Twins"_s),
                                                              Channel::custom(u"b"_s, u"twins"_s),
                                                              Channel::custom(u"c"_s, u"wion"_s)};
    const auto ids = [](const QList<Channel>& list) {
        QString joined;
        for (const Channel& channel : list)
            joined += u' ' + channel.id();
        return joined;
    };
    const ChannelLookup::Result result = ChannelLookup::find(channels, text);
    if (const auto* channel = std::get_if<Channel>(&result))
        return channel->id();
    if (const auto* ambiguous = std::get_if<ChannelLookup::Ambiguous>(&result))
        return u"or"_s + ids(ambiguous->candidates);
    return u"near"_s + ids(std::get<ChannelLookup::Unknown>(result).nearest);
}

TEST(ChannelLookup, FindsAnIdThenANameIgnoringCase) {
    EXPECT_EQ(found(u" dwnews "_s), u"dwnews");
    EXPECT_EQ(found(u"sky NEWS uk"_s), u"skynewsuk");
    EXPECT_EQ(found(u" الجزيرة مباشر"_s), u"aljazeeralive");
    EXPECT_EQ(found(u"العربية english"_s), u"alarabiyaen");
    EXPECT_EQ(found(u"wion"_s), u"wion") << "an id comes before another channel's name";
    EXPECT_EQ(found(u"TWINS"_s), u"or custom_a custom_b");
    EXPECT_EQ(found(u"WION"_s), u"or wion custom_c");
}

TEST(ChannelLookup, SuggestsTheNearestForAnUnknownText) {
    EXPECT_EQ(found(u"eurnoews"_s), u"near euronews");
    EXPECT_EQ(found(u"Al-Jazeera"_s), u"near aljazeera aljazeeradoc");
    EXPECT_EQ(found(u"sky"_s), u"near skynewsuk skynewsarabia");
    EXPECT_EQ(found(u"العربيه"_s), u"near alarabiya");
    // An empty text matches no empty Arabic name.
    for (const QString& text : {u""_s, u"  "_s, u"weather"_s, QString(100000, u'x')})
        EXPECT_EQ(found(text), u"near") << text.left(20).toStdString();
}

} // namespace
} // namespace orvane
