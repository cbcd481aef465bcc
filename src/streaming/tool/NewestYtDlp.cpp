// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/NewestYtDlp.h"

#include "base/Logging.h"
#include "streaming/tool/YtDlpSearch.h"

#include <QCoroFuture>
#include <QDateTime>
#include <QFileInfo>
#include <QPromise>
#include <QSet>

#include <utility>
#include <vector>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Names the contents of a file, without reading it, and how it is run.
QString stateOf(const YtDlpCommand& command) {
    const QFileInfo file(QFileInfo(command.program).canonicalFilePath());
    return u"%1 %2 %3 %4"_s.arg(static_cast<int>(command.kind))
        .arg(file.lastModified().toMSecsSinceEpoch())
        .arg(file.size())
        .arg(file.filePath());
}

/// Collects commands, of those with the same file only the first.
class CommandList {
public:
    void add(YtDlpCommand::Kind kind, const QString& path) {
        const YtDlpCommand command{kind, path};
        const QString state = stateOf(command);
        if (!HostFileSystem::isExecutableFile(path) || m_states.contains(state))
            return;
        m_states.insert(state);
        m_commands.append(command);
    }
    [[nodiscard]] const QList<YtDlpCommand>& commands() const { return m_commands; }

private:
    QSet<QString> m_states;
    QList<YtDlpCommand> m_commands;
};

} // namespace

NewestYtDlp::NewestYtDlp(ToolRunner& tools, QString privateCopy, std::stop_token stop)
    : m_tools(tools), m_privateCopy(std::move(privateCopy)), m_stop(std::move(stop)) {}

QCoro::Task<std::optional<YtDlpCandidate>> NewestYtDlp::find() {
    const QList<YtDlpCommand> all = co_await commands();
    // All children run at the same time, as each takes about a second.
    std::vector<QCoro::Task<std::optional<QString>>> answers;
    answers.reserve(static_cast<std::size_t>(all.size()));
    for (const YtDlpCommand& command : all)
        answers.push_back(version(command));
    std::optional<YtDlpCandidate> newest;
    for (qsizetype i = 0; i < all.size(); ++i) {
        const std::optional<QString> version = co_await answers.at(static_cast<std::size_t>(i));
        if (version && (!newest || isNewerVersion(*version, newest->version)))
            newest = YtDlpCandidate{all.at(i), *version};
    }
    if (newest) {
        qCInfo(logYtDlp).noquote()
            << "the newest here is" << newest->version << newest->command.program;
    }
    co_return newest;
}

QCoro::Task<QList<YtDlpCommand>> NewestYtDlp::commands() {
    const HostFileSystem& host = m_tools.host();
    CommandList list;
    for (const YtDlpUser user :
         {YtDlpUser::streamResolver, YtDlpUser::manager, YtDlpUser::channelResolver}) {
        for (const QString& path : placesOf(host, YtDlpSearch::of(user)))
            list.add(YtDlpCommand::Kind::executable, path);
    }
    const QString which = host.systemPath(u"/usr/bin/which"_s);
    const QStringList name{u"-a"_s, u"yt-dlp"_s};
    const std::optional<QString> printed =
        co_await m_tools.output(which, name, ToolEnvironment::extendedPath);
    for (const QString& path : printed.value_or(QString()).split(u'\n'))
        list.add(YtDlpCommand::Kind::executable, path.trimmed());
    list.add(YtDlpCommand::Kind::pythonModule, systemPython(host));
    list.add(YtDlpCommand::Kind::executable, m_privateCopy);
    co_return list.commands();
}

QCoro::Task<std::optional<QString>> NewestYtDlp::version(YtDlpCommand command) {
    const QString state = stateOf(command);
    if (m_versions.contains(state)) {
        const Version asked = m_versions.value(state);
        std::optional<QString> printed = co_await asked;
        co_return printed;
    }
    QPromise<std::optional<QString>> promise;
    promise.start();
    m_versions.insert(state, promise.future());
    std::optional<QString> printed = co_await askVersion(m_tools, command, m_stop);
    promise.addResult(printed);
    promise.finish();
    co_return printed;
}

} // namespace orvane
