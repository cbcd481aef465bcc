// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/ladder/StreamQuery.h"

#include <QUrl>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Takes picture and sound apart only where the site offers no stream with both.
QString widerFormat(Resolution resolution) {
    if (resolution == Resolution::rBest)
        return u"b/bv*+ba"_s;
    return u"b[height<=%1]/bv*[height<=%1]+ba/b/bv*+ba"_s.arg(heightValue(resolution));
}

/// Addresses contain no blanks.
std::optional<QUrl> parseAddress(const QString& text) {
    QUrl url(text, QUrl::StrictMode);
    if (text.isEmpty() || !url.isValid())
        return std::nullopt;
    return url;
}

} // namespace

QStringList StreamQuery::arguments() const {
    const bool choosesClients = rung == Rung::defaultClients || rung == Rung::javaScript;
    QStringList result{u"-f"_s, choosesClients ? widerFormat(resolution) : ytdlpFormat(resolution),
                       u"-g"_s, u"--no-playlist"_s};
    if (!choosesClients)
        result += {u"--extractor-args"_s, u"youtube:player_client=android,ios"_s};
    for (const QString& runtime : runtimes)
        result += {runtimeOption(), runtime};
    result += {u"--no-check-certificate"_s, page};
    return result;
}

std::optional<StreamAddress> StreamQuery::read(const QString& printed) const {
    const QString text = printed.trimmed();
    const bool mayBeApart = rung == Rung::defaultClients || rung == Rung::javaScript;
    const QStringList lines = mayBeApart ? text.split(u'\n') : QStringList{text};
    const std::optional<QUrl> picture = parseAddress(lines.first().trimmed());
    if (!picture || lines.size() > 2)
        return std::nullopt;
    StreamAddress address(*picture);
    if (lines.size() == 2) {
        address.sound = parseAddress(lines.last().trimmed());
        if (!address.sound)
            return std::nullopt;
    }
    return address;
}

QString runtimeOption() {
    return u"--js-runtimes"_s;
}

QStringList installedRuntimes(const HostFileSystem& host) {
    struct Runtime {
        QString name;
        QStringList places;
    };
    const auto inSystem = [&](const QString& program) {
        return QStringList{host.systemPath(u"/usr/local/bin/"_s + program),
                           host.systemPath(u"/usr/bin/"_s + program)};
    };
    const Runtime known[] = {
        {u"deno"_s, QStringList{host.home() + u"/.deno/bin/deno"_s} + inSystem(u"deno"_s)},
        {u"node"_s, inSystem(u"node"_s)},
        {u"bun"_s, QStringList{host.home() + u"/.bun/bin/bun"_s} + inSystem(u"bun"_s)},
        {u"quickjs"_s, inSystem(u"qjs"_s)},
    };
    QStringList found;
    for (const Runtime& runtime : known) {
        for (const QString& place : runtime.places) {
            if (HostFileSystem::isExecutableFile(place)) {
                found += runtime.name + u':' + place;
                break;
            }
        }
    }
    return found;
}

} // namespace orvane
