// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/Channel.h"

#include "model/BuiltInChannels.h"
#include "model/Resolution.h"
#include "settings/AppTheme.h"

#include <QCryptographicHash>
#include <QSet>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

TEST(Channel, IsEqualById) {
    const Channel a(u"id"_s, u"أ"_s, u"A"_s, u"a"_s, ChannelCategory::featured, u"12345678901"_s);
    const Channel b(u"id"_s, QString(), u"B"_s, u"b"_s, ChannelCategory::custom);
    const Channel c(u"ID"_s, u"أ"_s, u"A"_s, u"a"_s, ChannelCategory::featured, u"12345678901"_s);
    EXPECT_EQ(a, b);
    EXPECT_NE(a, c);
    EXPECT_EQ(std::hash<Channel>()(a), std::hash<Channel>()(b));
    EXPECT_EQ((QSet<Channel>{a, b, c}.size()), 2);
}

TEST(Channel, ShowsItsArabicNameUnlessEmpty) {
    const auto named = [](const QString& arabic) {
        return Channel(u"x"_s, arabic, u"English"_s, u"x"_s, ChannelCategory::featured);
    };
    EXPECT_EQ(named(u"العربية"_s).displayName(), u"العربية"_s);
    EXPECT_EQ(named(QString()).displayName(), u"English"_s);
    EXPECT_EQ(named(u" "_s).displayName(), u" "_s);
}

TEST(Channel, HasALivePageOnTheSite) {
    const auto site = Origin::parse(u"https://video.example"_s);
    ASSERT_TRUE(site);
    const Channel channel(u"france24en"_s, QString(), u"F"_s, u"france24_en"_s,
                          ChannelCategory::international);
    EXPECT_EQ(channel.youtubeURL(*site).toString(), u"https://video.example/@france24_en/live"_s);
}

TEST(RawValues, AreMatchedExactly) {
    EXPECT_EQ(fromRawValue<Resolution>(u"Best"), Resolution::rBest);
    for (const auto* text : {u"best", u"720", u"", u" 720p", u"r720"})
        EXPECT_FALSE(fromRawValue<Resolution>(text));
    EXPECT_EQ(fromRawValue<ChannelCategory>(u"قنواتي"), ChannelCategory::custom);
    EXPECT_FALSE(fromRawValue<ChannelCategory>(u"featured"));
    EXPECT_EQ(fromRawValue<AppTheme>(u"Dark"), AppTheme::dark);
    EXPECT_FALSE(fromRawValue<AppTheme>(u"dark"));
}

TEST(Resolution, CapsTheHeightExceptForTheBest) {
    QStringList rows;
    for (const Resolution r : allCases<Resolution>)
        rows += u"%1 %2 %3"_s.arg(displayName(r)).arg(heightValue(r)).arg(ytdlpFormat(r));
    EXPECT_EQ(rows, (QStringList{u"360p 360 best[height<=360]"_s, u"480p 480 best[height<=480]"_s,
                                 u"720p 720 best[height<=720]"_s, u"Best 9999 best"_s}));
}

// The users' settings contain these ids, and a wrong handle or video id breaks a channel, so the
// table must not change by accident.
TEST(BuiltInChannels, AreExactlyTheShippedTable) {
    QByteArray table;
    for (const Channel& c : builtInChannels()) {
        const QStringList fields{c.id(),
                                 c.nameAr(),
                                 c.nameEn(),
                                 c.handle(),
                                 rawValue(c.category()),
                                 c.videoId().value_or(u"-"_s)};
        table += fields.join(u'|').toUtf8() + '\n';
    }
    EXPECT_EQ(builtInChannels().size(), 23);
    EXPECT_EQ(QCryptographicHash::hash(table, QCryptographicHash::Sha256).toHex(),
              "20b8426819b6ad088e810f9896396f74d8bd0ceeb83dfe08ce167e7829ec29f6");
}

} // namespace
} // namespace orvane
