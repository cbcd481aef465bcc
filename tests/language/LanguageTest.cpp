// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/Translation.h"

#include "app/commands/CommandLine.h"
#include "streaming/ladder/StreamFailure.h"
#include "ui/FittedText.h"

#include <QFontMetricsF>
#include <QHash>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

TEST(Language, IsChosenAsOtherProgramsDo) {
    using Set = QHash<QByteArray, QString>;
    for (const auto& [set, expected] : {
             std::pair(Set{}, Language::english),
             {Set{{"LANG", u"ar_EG.UTF-8"_s}}, Language::arabic},
             {Set{{"LANG", u"ar_EG.UTF-8"_s}, {"LC_MESSAGES", u"fr"_s}}, Language::french},
             {Set{{"LC_MESSAGES", u"fr_CA"_s}, {"LC_ALL", u"en_US"_s}}, Language::english},
             {Set{{"LANG", u"de_DE.UTF-8"_s}}, Language::english},
             {Set{{"LANG", u"arn_CL"_s}}, Language::english},
             {Set{{"LANG", u"de"_s}, {"LANGUAGE", u"de_AT:fr:ar"_s}}, Language::french},
             {Set{{"LANG", u"ar"_s}, {"LANGUAGE", u"en:fr"_s}}, Language::english},
             {Set{{"LANG", u"ar"_s}, {"LANGUAGE", u":de"_s}}, Language::arabic},
             {Set{{"LANGUAGE", u"ar"_s}}, Language::arabic},
             {Set{{"LC_ALL", u"C"_s}, {"LANG", u"fr"_s}, {"LANGUAGE", u"ar"_s}}, Language::english},
             {Set{{"LANG", u"C.UTF-8"_s}, {"LANGUAGE", u"ar"_s}}, Language::arabic},
         })
        EXPECT_EQ(systemLanguage([&](const char* name) { return set.value(name); }), expected);
    const QLocale morocco(u"ar_MA"_s);
    EXPECT_EQ(localeOf(Language::arabic, morocco), morocco) << "where digits are Latin";
    EXPECT_EQ(localeOf(Language::arabic, QLocale(u"fr_FR"_s)).toString(12), u"١٢"_s);
}

class InLanguage : public testing::Test {
protected:
    void use(Language language) {
        m_translation.reset();
        m_translation.emplace(language);
    }

private:
    std::optional<Translation> m_translation;
};

TEST_F(InLanguage, EveryPluralHasItsForm) {
    const auto all = [](std::initializer_list<int> counts) {
        QStringList list;
        for (const int count : counts)
            list += translated("Menu", "%n minutes", nullptr, count);
        return list;
    };
    use(Language::arabic);
    EXPECT_EQ(all({0, 1, 2, 3, 10, 11, 102}),
              (QStringList{u"٠ دقيقة"_s, u"دقيقة واحدة"_s, u"دقيقتان"_s, u"٣ دقائق"_s,
                           u"١٠ دقائق"_s, u"١١ دقيقة"_s, u"١٠٢ دقيقة"_s}));
    use(Language::french);
    EXPECT_EQ(all({0, 1, 2}), (QStringList{u"0 minute"_s, u"1 minute"_s, u"2 minutes"_s}));
    use(Language::english);
    EXPECT_EQ(all({0, 1, 2}), (QStringList{u"0 minutes"_s, u"1 minute"_s, u"2 minutes"_s}));
}

TEST_F(InLanguage, FailuresAreLookedUpInEnglishAndShownInTheLanguage) {
    const QString text = u"Stream resolve failed: ERROR: [site] a: unable to read"_s;
    EXPECT_EQ(messageFor(text), u"[site] a: unable to read"_s);
    EXPECT_EQ(detailsFor(text), text);
    use(Language::arabic);
    EXPECT_EQ(messageFor(text), u"\u2066[site] a: unable to read\u2069"_s);
    EXPECT_EQ(detailsFor(text),
              u"تعذّر العثور على البث: \u2066ERROR: [site] a: unable to read\u2069"_s);
    EXPECT_EQ(messageFor(u"Stream stalled"_s), u"توقف البث"_s);
    EXPECT_EQ(streamFailureOf(text + u" http error 403"_s), StreamFailure::outdated);
    const auto wrong = CommandLine::parse({u"--hel"_s});
    EXPECT_EQ(wrong.error().message,
              u"معامل غير متوقع «\u2068--hel\u2069»؛ هل تقصد \u2066--help\u2069؟"_s);
}

TEST_F(InLanguage, BrokenLinesKeepWhatIsIsolated) {
    const QFont font;
    const double width = QFontMetricsF(font).horizontalAdvance(u"mmmmmmmmmm"_s);
    const QStringList lines =
        fittedText(u"العنوان \u2066https://site.example/with/a/long/path/to/it\u2069 طويل"_s, font,
                   width, 3)
            .split(u'\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_FALSE(lines[0].startsWith(u'\u2066'));
    EXPECT_TRUE(lines[1].startsWith(u'\u2066'));
    EXPECT_TRUE(lines[2].startsWith(u'\u2066') && lines[2].contains(u'\u2069'));
    EXPECT_TRUE(fittedText(u"طويل جدا "_s.repeated(20), font, width, 2).endsWith(u"…"));
}

} // namespace
} // namespace orvane
