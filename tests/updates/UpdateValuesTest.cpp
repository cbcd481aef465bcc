// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Environment.h"
#include "base/PlainText.h"
#include "updates/Appcast.h"
#include "updates/UpdateFile.h"
#include "updates/UpdateSignature.h"
#include "updates/VersionOrder.h"

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

TEST(Versions, AreComparedNumberByNumber) {
    const QString huge = u"1.99999999999999999999999999999999"_s;
    const struct {
        QString first;
        char relation;
        QString second;
    } cases[] = {
        {u"1.0"_s, '<', u"1.0.1"_s},
        {u"1.9"_s, '<', u"1.10"_s},
        {u"1.0b1"_s, '<', u"1.0"_s},
        {u"0.9"_s, '<', u"1.0b1"_s},
        {u"1.0b2"_s, '<', u"1.0b10"_s},
        {u"1.0a9"_s, '<', u"1.0b1"_s},
        {u"1.0b1c"_s, '<', u"1.0b1"_s},
        {u"1.0b1"_s, '<', u"1.0.0b2"_s},
        {u"1.5"_s, '<', huge},
        {huge, '<', u"1.100000000000000000000000000000000"_s},
        {huge, '<', u"2"_s},
        {u""_s, '<', u"0.0.1"_s},
        {u"1.0-9"_s, '<', u"1.1-1"_s},
        {u"2.2.0"_s, '<', u"2.3b1"_s},
        {u"1.0"_s, '=', u"1.0.0"_s},
        {u"1"_s, '=', u"01.00"_s},
        {u"1.0-rc1"_s, '=', u"1.0"_s},
        {u"1.0B1"_s, '=', u"1.0.0b1"_s},
        {u"1.0b"_s, '=', u"1.0b0"_s},
        {u""_s, '=', u"0"_s},
        {huge, '=', huge + u".0-1"_s},
    };
    for (const auto& [first, relation, second] : cases) {
        const auto expected =
            relation == '<' ? std::weak_ordering::less : std::weak_ordering::equivalent;
        EXPECT_EQ(compareVersions(first, second), expected) << qPrintable(first + u' ' + second);
        EXPECT_EQ(0 <=> compareVersions(second, first), expected) << qPrintable(second);
    }
}

QByteArray feedOf(const QByteArray& items) {
    return R"(<?xml version="1.0" encoding="utf-8"?>
        <rss version="2.0" xmlns:s="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel>
        <title>Orvane</title><description>All versions</description>)" +
           items + "</channel></rss>";
}

QByteArray itemOf(const QByteArray& children, const QByteArray& attributes = {}) {
    return "<item>" + children +
           R"(<enclosure url="https://a.example/o.tar.gz" length="5")"
           R"( s:edSignature="c2ln" )" +
           attributes + "/></item>";
}

QStringList versionsIn(const QByteArray& feed) {
    QStringList versions;
    const auto items = parseAppcast(feed);
    if (!items)
        return {items.error() == AppcastError::notXml ? u"not XML"_s : u"not a feed"_s};
    for (const AppcastItem& item : *items)
        versions += item.version + u' ' + item.shownVersion;
    return versions;
}

TEST(Appcast, YieldsAllFieldsOfAnItem) {
    const auto items = parseAppcast(feedOf(
        "<item><title>x</title><s:version>2.3.0</s:version><s:deltas>"
        "<enclosure url='https://a.example/delta' length='1' s:edSignature='x'/></s:deltas>"
        "<s:shortVersionString>2.3\u202e beta "
        "</s:shortVersionString><description><![CDATA[<b>New</b>]]>"
        "</description><s:releaseNotesLink> notes.html </s:releaseNotesLink>"
        "<enclosure url='https://a.example/o.tar.gz' length='5' s:edSignature='c2ln' s:os='linux'/>"
        "</item>"));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1);
    const AppcastItem& item = items->first();
    EXPECT_EQ(item.version, u"2.3.0"_s);
    EXPECT_EQ(item.shownVersion, u"2.3 beta"_s);
    EXPECT_EQ(item.description, u"<b>New</b>"_s);
    EXPECT_EQ(item.notesLink, QUrl(u"notes.html"_s));
    EXPECT_EQ(item.archive, QUrl(u"https://a.example/o.tar.gz"_s));
    EXPECT_EQ(item.length, 5);
    EXPECT_EQ(item.signature, "c2ln");
}

TEST(Appcast, SkipsItemsThatAreIncompleteOrForOtherSystems) {
    const QByteArray version = "<s:version>3</s:version>";
    const auto withEnclosure = [&version](const QByteArray& attributes) {
        return "<item>" + version + "<enclosure " + attributes + "/></item>";
    };
    const struct {
        QByteArray item;
        QStringList versions;
    } cases[] = {
        {itemOf(version), {u"3 3"_s}},
        {itemOf({}, "s:version='4' s:shortVersionString='four'"), {u"4 four"_s}},
        {itemOf("<s:shortVersionString>5</s:shortVersionString>"), {u"5 5"_s}},
        {itemOf(version, "s:os='linux'"), {u"3 3"_s}},
        {itemOf(version, "s:os='macos'"), {}},
        {itemOf("<s:os>windows</s:os>" + version), {}},
        {itemOf({}), {}},
        {"<item>" + version + "</item>", {}},
        {withEnclosure("length='5' s:edSignature='x'"), {}},
        {withEnclosure("url='https://a.example' s:edSignature='x'"), {}},
        {withEnclosure("url='https://a.example' length='5'"), {}},
        {withEnclosure("url='https://a.example' length='-5' s:edSignature='x'"), {}},
        {withEnclosure("url='https://a.example' length='0' s:edSignature='x'"), {}},
        {withEnclosure("url='https://a.example' length='5' s:edSignature=''"), {}},
        {withEnclosure("url='https://a.example' length='5' edSignature='x'"), {}},
        {"<item xmlns='urn:other'>" + version + "</item>", {}},
    };
    for (const auto& [item, versions] : cases)
        EXPECT_EQ(versionsIn(feedOf(item)), versions) << item.constData();
    const auto items =
        parseAppcast(feedOf(itemOf({}, "s:version='2.4'") + itemOf({}, "s:version='2.10'") +
                            itemOf({}, "s:version='2.9'")));
    ASSERT_TRUE(items);
    EXPECT_EQ(newestUpdate(*items, u"2.2").value_or(AppcastItem{}).version, u"2.10"_s);
    EXPECT_FALSE(newestUpdate(*items, u"2.10.0"));
    EXPECT_FALSE(newestUpdate(*items, u"2.11"));
}

TEST(Appcast, IsAFeedOrAnError) {
    for (const char* feed :
         {"", "<rss>", "good morning",
          "<!DOCTYPE r [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;&a;&a;'>]><rss>&b;</rss>"})
        EXPECT_EQ(versionsIn(feed), QStringList{u"not XML"_s}) << feed;
    EXPECT_EQ(versionsIn("<html><body/></html>"), QStringList{u"not a feed"_s});
    const QByteArray deep =
        QByteArray("<a>").repeated(200000) + QByteArray("</a>").repeated(200000);
    EXPECT_EQ(versionsIn(feedOf(
                  itemOf("<s:version>3</s:version><description>" + deep + "</description>"))),
              QStringList{u"3 3"_s});
}

TEST(PlainText, IsReadableForAnyNotes) {
    const struct {
        QString markup, text;
    } cases[] = {
        {u"Faster.\n\n  - and <3 smaller\n"_s, u"Faster.\n\n  - and <3 smaller"_s},
        {u"<h2>New</h2>\n<ul>\n <li>One &amp; <b>two</b></li>\n<li>&lt;b&gt; &#8364;&#x41;</li></ul>"_s,
         u"New\n\n• One & two\n• <b> €A"_s},
        {u"a<br>b<br/>c<p>d</p>"_s, u"a\nb\nc\n\nd"_s},
        {u"<style>p{}</style>x<script>alert('<p>')</script >y<!-- <p>no -->z"_s, u"xyz"_s},
        {u"<p>a &unknown; &; & b <unclosed"_s, u"a &unknown; &; & b"_s},
        {u"<p>x</p><script>never closed"_s, u"x"_s},
        {u"<img src=x onerror=alert(1)>"_s, u""_s},
    };
    for (const auto& [markup, text] : cases)
        EXPECT_EQ(plainText(markup), text) << qPrintable(markup);
    EXPECT_LE(plainText(QString(maximumPlainText * 2, u'x')).size(), maximumPlainText);
}

TEST(Environment, ReplacesTheAddressOfTheFeed) {
    const QString builtIn = Environment::read().appcast;
    for (const QString& feed : {u"https://a.example/appcast.xml?a=b"_s, u""_s}) {
        qputenv("ORVANE_APPCAST", feed.toLatin1());
        EXPECT_EQ(Environment::read().appcast, feed);
    }
    qunsetenv("ORVANE_APPCAST");
    EXPECT_EQ(Environment::read().appcast, builtIn);
}

TEST(SafeFileName, IsAVisibleFileAndNoPath) {
    const struct {
        QString address, name;
    } cases[] = {
        {u"https://a.example/x/orvane-2.3.tar.gz?a=/b"_s, u"orvane-2.3.tar.gz"_s},
        {u"https://a.example/"_s, u"update"_s},
        {u"https://a.example/.bashrc"_s, u"bashrc"_s},
        {u"https://a.example/..%2F..%2F.ssh%2Fkeys"_s, u"keys"_s},
        {u"https://a.example/a%5C..%5Cb"_s, u"b"_s},
        {u"https://a.example/%2e%2e"_s, u"update"_s},
        {u"https://a.example/-rf%0A%00x"_s, u"rf x"_s},
        {u"https://a.example/a%E2%80%AEgz.exe"_s, u"agz.exe"_s},
    };
    for (const auto& [address, name] : cases)
        EXPECT_EQ(safeFileName(QUrl(address)), name) << qPrintable(address);
    const QString longest =
        safeFileName(QUrl(u"https://a.example/"_s + QString(300, u'é') + u".zip"_s));
    EXPECT_LE(longest.toUtf8().size(), 200);
    EXPECT_TRUE(longest.endsWith(u"é.zip"));

    EXPECT_EQ(numberedFileName(u"a.tar.gz"_s, 0), u"a.tar.gz"_s);
    EXPECT_EQ(numberedFileName(u"a-2.3.tar.gz"_s, 2), u"a-2.3 (2).tar.gz"_s);
    EXPECT_EQ(numberedFileName(u"a.zip"_s, 1), u"a (1).zip"_s);
    EXPECT_EQ(numberedFileName(u"a"_s, 1), u"a (1)"_s);
}

TEST(UpdateKey, VerifiesSignaturesAndRejectsInvalidKeys) {
    // The first test vector of RFC 8032: an empty message.
    const QByteArray key =
        QByteArray::fromHex("d75a980182b10ab7d54bfed3c964073a0ee172f3daa62325af021a68f707511a");
    const QByteArray signature =
        QByteArray::fromHex("e5564300c360ac729086e2cc806e828a84877f1eb8e5d974d873e065224901555fb882"
                            "1590a33bacc61e39701cf9b46b"
                            "d25bf5f0595bbe24655141438e7a100b");
    const std::optional<UpdateKey> parsed = UpdateKey::parse(key.toBase64());
    ASSERT_TRUE(parsed);
    EXPECT_TRUE(parsed->hasSigned({}, signature.toBase64()));
    const unsigned char other = 'x';
    EXPECT_FALSE(parsed->hasSigned({&other, 1}, signature.toBase64()));
    EXPECT_FALSE(parsed->hasSigned({}, signature.first(63).toBase64()));
    EXPECT_FALSE(parsed->hasSigned({}, "not base64!"));
    for (const QByteArray& bad : {QByteArray(), QByteArray("!"), key.first(31).toBase64(),
                                  (key + 'x').toBase64(), QByteArray(32, '\0').toBase64()})
        EXPECT_FALSE(UpdateKey::parse(bad)) << bad.constData();
}

} // namespace
} // namespace orvane
