// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/Appcast.h"

#include "base/PlainText.h"
#include "updates/VersionOrder.h"

#include <QXmlStreamReader>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

const QString sparkle = u"http://www.andymatuschak.org/xml-namespaces/sparkle"_s;
/// Longer than any readable version.
constexpr qsizetype longestShownVersion = 32;

/// An item as in the feed, which has two places for a version.
struct RawItem {
    AppcastItem item;
    QString system;
    QString enclosureVersion;
    QString enclosureShortVersion;
    bool hasEnclosure = false;
};

class AppcastParser {
public:
    explicit AppcastParser(const QByteArray& feed) : m_xml(feed) {}

    std::expected<QList<AppcastItem>, AppcastError> parse() {
        QList<AppcastItem> items;
        bool isFeed = false;
        while (!m_xml.atEnd() && !m_xml.hasError()) {
            switch (m_xml.readNext()) {
            case QXmlStreamReader::DTD:
                // Feeds need none, and with it come entities that can expand without limit.
                return std::unexpected(AppcastError::notXml);
            case QXmlStreamReader::StartElement:
                if (!isFeed && !isPlain(u"rss"))
                    return std::unexpected(AppcastError::notAFeed);
                isFeed = true;
                if (isPlain(u"item"))
                    addUsable(items, readItem());
                break;
            default:
                break;
            }
        }
        if (m_xml.hasError() || !isFeed)
            return std::unexpected(AppcastError::notXml);
        return items;
    }

private:
    [[nodiscard]] bool isPlain(QStringView name) const {
        return m_xml.namespaceUri().isEmpty() && m_xml.name() == name;
    }
    [[nodiscard]] bool isSparkle(QStringView name) const {
        return m_xml.namespaceUri() == sparkle && m_xml.name() == name;
    }
    /// Returns all text inside the element. `readElementText` is recursive, so that a deeply nested
    /// feed could overflow the stack.
    QString text() {
        QString result;
        int depth = 1;
        while (depth > 0 && !m_xml.atEnd()) {
            switch (m_xml.readNext()) {
            case QXmlStreamReader::StartElement:
                ++depth;
                break;
            case QXmlStreamReader::EndElement:
                --depth;
                break;
            case QXmlStreamReader::Characters:
                result += m_xml.text();
                break;
            default:
                break;
            }
        }
        return result.trimmed();
    }

    RawItem readItem() {
        RawItem raw;
        while (m_xml.readNextStartElement()) {
            if (isSparkle(u"version"))
                raw.item.version = text();
            else if (isSparkle(u"shortVersionString"))
                raw.item.shownVersion = text();
            else if (isSparkle(u"os"))
                raw.system = text();
            else if (isSparkle(u"releaseNotesLink"))
                raw.item.notesLink = QUrl(text());
            else if (isPlain(u"description"))
                raw.item.description = text();
            else if (isPlain(u"enclosure") && !raw.hasEnclosure)
                readEnclosure(raw);
            else
                m_xml.skipCurrentElement(); // Nested enclosures belong to delta updates.
        }
        return raw;
    }

    void readEnclosure(RawItem& raw) {
        const QXmlStreamAttributes attributes = m_xml.attributes();
        const auto own = [&attributes](QLatin1StringView name) {
            return attributes.value(sparkle, name).trimmed().toString();
        };
        raw.hasEnclosure = true;
        raw.item.archive = QUrl(attributes.value("url"_L1).trimmed().toString());
        raw.item.length = attributes.value("length"_L1).trimmed().toLongLong();
        raw.item.signature = own("edSignature"_L1).toLatin1();
        raw.enclosureVersion = own("version"_L1);
        raw.enclosureShortVersion = own("shortVersionString"_L1);
        if (raw.system.isEmpty())
            raw.system = own("os"_L1);
        m_xml.skipCurrentElement();
    }

    static void addUsable(QList<AppcastItem>& items, RawItem raw) {
        AppcastItem& item = raw.item;
        if (item.version.isEmpty())
            item.version = raw.enclosureVersion;
        if (item.shownVersion.isEmpty())
            item.shownVersion = raw.enclosureShortVersion;
        if (item.version.isEmpty())
            item.version = item.shownVersion;
        if (item.shownVersion.isEmpty())
            item.shownVersion = item.version;
        item.shownVersion = oneLine(item.shownVersion, longestShownVersion);
        const bool isForThisSystem = raw.system.isEmpty() || raw.system == u"linux";
        const bool canBeDownloaded =
            !item.archive.isEmpty() && item.length > 0 && !item.signature.isEmpty();
        if (isForThisSystem && canBeDownloaded && !item.version.isEmpty())
            items.append(item);
    }

    QXmlStreamReader m_xml;
};

} // namespace

std::expected<QList<AppcastItem>, AppcastError> parseAppcast(const QByteArray& feed) {
    return AppcastParser(feed).parse();
}

std::optional<AppcastItem> newestUpdate(const QList<AppcastItem>& items, QStringView version) {
    std::optional<AppcastItem> newest;
    for (const AppcastItem& item : items) {
        const QString toBeat = newest ? newest->version : version.toString();
        if (compareVersions(item.version, toBeat) > 0)
            newest = item;
    }
    return newest;
}

} // namespace orvane
