// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/ChannelResolver.h"

#include "streaming/Which.h"
#include "streaming/YtDlpLocator.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// A video's description names every subtitle and format, which can be megabytes.
constexpr qsizetype descriptionLimit = 64 * 1024 * 1024;

/// Blanks and line breaks of every script, and the marks of direction that come along when text is
/// copied from a right-to-left page.
bool isPadding(QChar c) {
    return c.isSpace() || c.category() == QChar::Other_Format;
}

QString trimmed(const QString& text) {
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isPadding(text.at(begin)))
        ++begin;
    while (end > begin && isPadding(text.at(end - 1)))
        --end;
    return text.sliced(begin, end - begin);
}

} // namespace

ChannelResolver::ChannelResolver(std::optional<Origin> site, HostFileSystem host,
                                 ProcessRunner& processes)
    : m_site(std::move(site)), m_host(std::move(host)), m_processes(processes) {}

QString ChannelResolver::extractHandle(const QString& input) {
    QString text = trimmed(input);
    const bool hasSlash = text.contains(u'/');
    if (text.startsWith(u'@') && !hasSlash)
        return text.sliced(1);
    if (!hasSlash && !text.contains(u'.'))
        return text;
    const std::array markers{u"/@"_s, u"/c/"_s, u"/channel/"_s};
    for (const QString& marker : markers) {
        const qsizetype at = text.indexOf(marker);
        if (at < 0)
            continue;
        const QStringList pieces = text.sliced(at + marker.size()).split(u'/', Qt::SkipEmptyParts);
        return pieces.isEmpty() ? text : pieces.first();
    }
    return text;
}

std::optional<QString> ChannelResolver::channelName(const QByteArray& json) {
    const QJsonObject video = QJsonDocument::fromJson(json).object();
    for (const QString& key : {u"channel"_s, u"uploader"_s}) {
        const QJsonValue name = video.value(key);
        if (name.isString())
            return name.toString();
    }
    return std::nullopt;
}

QCoro::Task<ChannelResolver::Result> ChannelResolver::resolve(QString input, std::stop_token stop) {
    const QString handle = extractHandle(input);
    const Name name = co_await fetchChannelName(handle, stop);
    if (!name)
        co_return std::unexpected(name.error());
    co_return ResolvedChannel{.handle = handle, .name = *name};
}

QCoro::Task<ChannelResolver::Name> ChannelResolver::fetchChannelName(QString handle,
                                                                     std::stop_token stop) {
    const ResolveError notFound{u"Channel not found. Check the handle or URL."_s};
    if (!m_site)
        co_return std::unexpected(notFound);
    const QString program = co_await findYtDlp();
    const YtDlpCommand command{program == m_host.systemPath(u"/usr/bin/python3"_s)
                                   ? YtDlpCommand::Kind::pythonModule
                                   : YtDlpCommand::Kind::executable,
                               program};
    // The handle stands inside the address, so whatever it is, it is no option.
    const QString page = m_site->address(QString(u"/@"_s + handle + u"/videos"_s));
    const ProcessRequest request{.program = command.program,
                                 .arguments =
                                     command.argumentsFor({u"--dump-json"_s, u"--playlist-items"_s,
                                                           u"1"_s, u"--no-download"_s, page}),
                                 .environment = std::nullopt,
                                 .standardError = ProcessRequest::Stream::discard,
                                 .outputLimit = descriptionLimit};
    const ProcessOutcome outcome = co_await m_processes.run(request, stop);
    if (!outcome)
        co_return std::unexpected(ResolveError{u"Failed to run yt-dlp"_s});
    const std::optional<QString> name = channelName(outcome->standardOutput.bytes);
    if (!name)
        co_return std::unexpected(notFound);
    co_return Name(*name);
}

QCoro::Task<QString> ChannelResolver::findYtDlp() {
    for (const QString& place :
         {m_host.systemPath(u"/opt/homebrew/bin/yt-dlp"_s),
          m_host.systemPath(u"/usr/local/bin/yt-dlp"_s), m_host.home() + u"/.local/bin/yt-dlp"_s}) {
        if (HostFileSystem::isExecutableFile(place))
            co_return QString(place);
    }
    const QString found = co_await whichYtDlp(m_host, m_processes, std::nullopt);
    if (HostFileSystem::isExecutableFile(found))
        co_return QString(found);
    co_return m_host.systemPath(u"/usr/bin/python3"_s);
}

} // namespace orvane
