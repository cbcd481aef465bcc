// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/YtDlpConfiguration.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <array>
#include <utility>

namespace orvane::YtDlpConfiguration {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 longestFile = 1024 * 1024;

constexpr std::array longOptions{
    "--batch-file"_L1,
    "--dump-json"_L1,
    "--dump-pages"_L1,
    "--dump-intermediate-pages"_L1,
    "--dump-single-json"_L1,
    "--dump-user-agent"_L1,
    "--exec"_L1,
    "--exec-before-download"_L1,
    "--extractor-descriptions"_L1,
    "--get-comments"_L1,
    "--get-description"_L1,
    "--get-duration"_L1,
    "--get-filename"_L1,
    "--get-format"_L1,
    "--get-id"_L1,
    "--get-thumbnail"_L1,
    "--get-title"_L1,
    "--help"_L1,
    "--list-extractors"_L1,
    "--list-formats"_L1,
    "--list-impersonate-targets"_L1,
    "--list-subs"_L1,
    "--list-thumbnails"_L1,
    "--no-simulate"_L1,
    "--print"_L1,
    "--print-json"_L1,
    "--print-traffic"_L1,
    "--update"_L1,
    "--update-to"_L1,
    "--version"_L1,
    "--wait-for-video"_L1,
};
constexpr QLatin1StringView shortOptions{"aeFhjJOU"};
/// What follows one of them in the same word is its value.
constexpr QLatin1StringView shortOptionsWithValue{"2fINopPrRStu"};

bool isObstacleWord(const QString& word) {
    if (word.startsWith("--"_L1))
        return std::ranges::find(longOptions, word.section(u'=', 0, 0)) != longOptions.end();
    if (!word.startsWith(u'-'))
        return false;
    for (const QChar letter : word.sliced(1)) {
        if (shortOptions.contains(letter))
            return true;
        if (shortOptionsWithValue.contains(letter))
            return false;
    }
    return false;
}

/// Splits as a shell does, without its variables.
QStringList wordsOf(const QString& text) {
    QStringList words;
    QString word;
    bool isInWord = false;
    QChar quote;
    const auto add = [&](QStringView more) {
        word += more;
        isInWord = true;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == u'\\' && quote != u'\'' && i + 1 < text.size()) {
            add(QStringView(text).sliced(++i, 1));
        } else if (!quote.isNull() && c == quote) {
            quote = {};
        } else if (quote.isNull() && (c == u'"' || c == u'\'')) {
            quote = c;
            add({});
        } else if (quote.isNull() && (c.isSpace() || c == u'#')) {
            if (std::exchange(isInWord, false))
                words += std::exchange(word, {});
            if (c == u'#')
                i = text.indexOf(u'\n', i) < 0 ? text.size() : text.indexOf(u'\n', i);
        } else {
            add(QStringView(text).sliced(i, 1));
        }
    }
    if (isInWord)
        words += word;
    return words;
}

QString textOf(const QString& path) {
    // Not a pipe, which would be waited for.
    if (!QFileInfo(path).isFile())
        return {};
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(longestFile)) : QString();
}

/// Of each group yt-dlp reads the first file that is there.
QList<QStringList> groupsOf(const HostFileSystem& host, const QString& program) {
    const QString home = host.home();
    const QString configHome = host.configHome();
    const QString system = host.systemPath(u"/etc"_s);
    return {
        {QFileInfo(program).path() + u"/yt-dlp.conf"_s},
        {configHome + u"/yt-dlp.conf"_s, configHome + u"/yt-dlp/config"_s,
         configHome + u"/yt-dlp/config.txt"_s, home + u"/yt-dlp.conf"_s,
         home + u"/yt-dlp.conf.txt"_s, home + u"/.yt-dlp/config"_s,
         home + u"/.yt-dlp/config.txt"_s},
        {system + u"/yt-dlp.conf"_s, system + u"/yt-dlp/config"_s,
         system + u"/yt-dlp/config.txt"_s},
    };
}

} // namespace

bool isObstacle(const QString& text) {
    return std::ranges::any_of(wordsOf(text), isObstacleWord);
}

std::optional<QString> obstacle(const HostFileSystem& host, const QString& program) {
    for (const QStringList& group : groupsOf(host, program)) {
        const auto file = std::ranges::find_if(group, &HostFileSystem::exists);
        if (file != group.end() && isObstacle(textOf(*file)))
            return *file;
    }
    return std::nullopt;
}

} // namespace orvane::YtDlpConfiguration
