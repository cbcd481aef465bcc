// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/ChannelResolver.h"

#include "language/Translation.h"

#include "base/Logging.h"
#include "streaming/tool/YtDlpTool.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <array>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// The description of a video lists all its subtitles and formats, which can take megabytes.
constexpr qsizetype descriptionLimit = 64 * 1024 * 1024;

/// White space of every script, and the invisible direction marks that text copied from a
/// right-to-left page contains.
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

QString untilQuery(const QString& piece) {
    static const QRegularExpression mark(u"[?#]"_s);
    return piece.left(piece.indexOf(mark));
}

} // namespace

ChannelResolver::ChannelResolver(std::optional<Origin> site, YtDlpTool& tool)
    : m_site(std::move(site)), m_tool(tool) {}

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
        // A link that was shared ends in a query.
        const QString handle = pieces.isEmpty() ? QString() : untilQuery(pieces.first());
        return handle.isEmpty() ? text : handle;
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
    const ResolveError notFound{
        translated("Settings", "Channel not found. Check the handle or URL.")};
    if (!m_site)
        co_return std::unexpected(notFound);
    const YtDlpSearch search = YtDlpSearch::of(YtDlpUser::channelResolver);
    const std::optional<YtDlpCommand> found = co_await m_tool.find(search);
    if (!found)
        co_return std::unexpected(notFound);
    const YtDlpCommand command = *found;
    // Inside an address, a handle that begins with "-" is not taken for an option.
    const QString page = m_site->address(QString(u"/@"_s + handle + u"/videos"_s));
    const ProcessRequest request{.program = command.program,
                                 .arguments =
                                     command.argumentsFor({u"--dump-json"_s, u"--playlist-items"_s,
                                                           u"1"_s, u"--no-download"_s, page}),
                                 .environment = variables(ToolEnvironment::extendedPath),
                                 .standardError = ProcessRequest::Stream::discard,
                                 .outputLimit = descriptionLimit};
    const ProcessOutcome outcome = co_await m_tool.runner().run(request, stop);
    if (!outcome)
        co_return std::unexpected(ResolveError{translated("Settings", "Failed to run yt-dlp")});
    const std::optional<QString> name = channelName(outcome->standardOutput.bytes);
    if (!name) {
        qCInfo(logStream).noquote() << "no channel at" << withoutSecrets(page);
        co_return std::unexpected(notFound);
    }
    co_return Name(*name);
}

} // namespace orvane
