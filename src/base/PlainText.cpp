// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/PlainText.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Including "&" and ";".
constexpr qsizetype maximumReferenceLength = 10;

constexpr uint zeroWidthNonJoiner = 0x200C;
constexpr uint zeroWidthJoiner = 0x200D;

/// Returns whether `c` is invisible or changes the direction; joiners do not count.
bool isHidden(uint c) {
    const bool joins = c == zeroWidthNonJoiner || c == zeroWidthJoiner;
    return !joins && (!QChar::isPrint(c) || QChar::category(c) == QChar::Other_Format);
}

/// Returns whether `text` begins with a tag; other angle brackets are ordinary characters.
bool beginsTag(QStringView text) {
    return text.size() > 1 && text.front() == u'<' &&
           (text.at(1).isLetter() || text.at(1) == u'/' || text.at(1) == u'!');
}

bool hasTags(QStringView text) {
    for (qsizetype at = text.indexOf(u'<'); at >= 0; at = text.indexOf(u'<', at + 1)) {
        if (beginsTag(text.sliced(at)))
            return text.indexOf(u'>', at) >= 0;
    }
    return false;
}

/// Resolves the character reference at the beginning of `text`; also returns its length.
std::pair<QString, qsizetype> reference(QStringView text) {
    static const QHash<QString, QString> names{
        {u"amp"_s, u"&"_s},  {u"lt"_s, u"<"_s},     {u"gt"_s, u">"_s},         {u"quot"_s, u"\""_s},
        {u"apos"_s, u"'"_s}, {u"nbsp"_s, u" "_s},   {u"ndash"_s, u"–"_s},      {u"mdash"_s, u"—"_s},
        {u"bull"_s, u"•"_s}, {u"hellip"_s, u"…"_s}, {u"rsquo"_s, u"\u2019"_s},
    };
    const qsizetype end = text.first(std::min(text.size(), maximumReferenceLength)).indexOf(u';');
    const QString name = end > 1 ? text.sliced(1, end - 1).toString() : QString();
    if (names.contains(name))
        return {names.value(name), end + 1};
    const bool isHexadecimal = name.startsWith(u"#x"_s, Qt::CaseInsensitive);
    bool isNumber = false;
    const uint code =
        name.startsWith(u'#')
            ? name.sliced(isHexadecimal ? 2 : 1).toUInt(&isNumber, isHexadecimal ? 16 : 10)
            : 0;
    if (isNumber && QChar::isPrint(code) && code <= QChar::LastValidCodePoint)
        return {QString::fromUcs4(reinterpret_cast<const char32_t*>(&code), 1), end + 1};
    return {u"&"_s, 1};
}

/// Removes the markup from a text in one pass.
class MarkupStripper {
public:
    explicit MarkupStripper(QStringView markup) : m_rest(markup) {}

    QString strip() {
        while (!m_rest.isEmpty()) {
            if (beginsTag(m_rest))
                takeTag();
            else if (m_rest.front() == u'&')
                takeReference();
            else
                takeCharacter();
        }
        return m_text;
    }

private:
    void skip(qsizetype count) { m_rest = m_rest.sliced(std::min(count, m_rest.size())); }

    /// Skips to the end of the next `end`, or to the end of the text.
    void skipPast(QStringView end) {
        const qsizetype at = m_rest.indexOf(end, 0, Qt::CaseInsensitive);
        skip(at < 0 ? m_rest.size() : at + end.size());
    }

    void takeReference() {
        const auto [text, length] = reference(m_rest);
        m_text += text;
        skip(length);
    }

    void takeCharacter() {
        const QChar character = m_rest.front();
        skip(1);
        if (!character.isSpace())
            m_text += character;
        else if (!m_text.isEmpty() && !m_text.back().isSpace())
            m_text += u' ';
    }

    void takeTag() {
        if (m_rest.startsWith(u"<!--"))
            return skipPast(u"-->");
        const QStringView inside = m_rest.sliced(m_rest.at(1) == u'/' ? 2 : 1);
        const auto end = std::find_if_not(inside.begin(), inside.end(),
                                          [](QChar c) { return c.isLetterOrNumber(); });
        const QString name = inside.first(end - inside.begin()).toString().toLower();
        const bool isOpening = inside.data() == m_rest.data() + 1;
        skipPast(u">");
        if (isOpening && (name == u"script" || name == u"style" || name == u"title")) {
            skipPast(u"</"_s + name);
            skipPast(u">");
        } else
            startLine(name, isOpening);
    }

    void startLine(const QString& name, bool isOpening) {
        static const QSet<QString> paragraphs{u"p"_s,  u"ul"_s, u"ol"_s, u"table"_s,
                                              u"h1"_s, u"h2"_s, u"h3"_s, u"h4"_s,
                                              u"h5"_s, u"h6"_s, u"hr"_s, u"pre"_s};
        if (paragraphs.contains(name))
            m_text += u"\n\n"_s;
        else if (name == u"br" || name == u"div" || name == u"tr")
            m_text += u'\n';
        else if (name == u"li" && isOpening)
            m_text += u"\n• "_s;
    }

    QStringView m_rest;
    QString m_text;
};

/// Removes trailing spaces of lines, and all but one of several empty lines.
QString tidied(const QString& text) {
    QString result;
    bool wasEmpty = true;
    for (QStringView line : QStringView(text).split(u'\n')) {
        while (!line.isEmpty() && line.back().isSpace())
            line.chop(1);
        if (line.isEmpty() && wasEmpty)
            continue;
        wasEmpty = line.isEmpty();
        result += line.toString() + u'\n';
    }
    return result.trimmed();
}

/// Keeps line breaks and tabs.
QString withoutHidden(const QString& text) {
    QList<uint> points = text.toUcs4();
    points.removeIf([](uint c) { return isHidden(c) && !QChar::isSpace(c); });
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(points.constData()), points.size());
}

} // namespace

QString plainText(QStringView markup) {
    const QStringView text = markup.first(std::min(markup.size(), maximumPlainText));
    return tidied(withoutHidden(hasTags(text) ? MarkupStripper(text).strip() : text.toString()));
}

QString oneLine(QStringView text, qsizetype maximum) {
    // Cut early to bound the work, but with a margin, as simplified() may shorten the text.
    QList<uint> points = text.trimmed().left(4 * maximum).toString().simplified().toUcs4();
    points.removeIf(isHidden);
    QString line;
    for (const uint c : points) {
        const auto piece = QChar::fromUcs4(c);
        if (line.size() + QStringView(piece).size() > maximum)
            break;
        line += piece;
    }
    return line;
}

} // namespace orvane
