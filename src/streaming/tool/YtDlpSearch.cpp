// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpSearch.h"

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

using Place = YtDlpSearch::Place;

Place inSystem(const QString& path) {
    return {Place::Root::system, path};
}

Place inHome(const QString& path) {
    return {Place::Root::home, path};
}

/// The scripts of `pip install --user` for Python 3.9 up to `lastMinor`.
QList<Place> userScripts(int lastMinor) {
    QList<Place> places;
    for (int minor = 9; minor <= lastMinor; ++minor)
        places.append(inHome(u"/Library/Python/3.%1/bin/yt-dlp"_s.arg(minor)));
    return places;
}

bool isAccepted(const QString& path, const YtDlpSearch& search) {
    const bool isThere = search.accepts == YtDlpSearch::Accepts::existingFiles
                             ? HostFileSystem::exists(path)
                             : HostFileSystem::isExecutableFile(path);
    return isThere && !search.broken.contains(BrokenTool::at(path));
}

QString realPath(const HostFileSystem& host, const Place& place) {
    return place.root == Place::Root::home ? QString(host.home() + place.path)
                                           : host.systemPath(place.path);
}

} // namespace

YtDlpSearch YtDlpSearch::of(YtDlpUser user) {
    const Place homebrew = inSystem(u"/opt/homebrew/bin/yt-dlp"_s);
    const Place local = inSystem(u"/usr/local/bin/yt-dlp"_s);
    const Place system = inSystem(u"/usr/bin/yt-dlp"_s);
    // Where Homebrew's installer puts it on Linux, for all users or for one.
    const QList linuxBrew{inSystem(u"/home/linuxbrew/.linuxbrew/bin/yt-dlp"_s),
                          inHome(u"/.linuxbrew/bin/yt-dlp"_s)};
    const Place localBin = inHome(u"/.local/bin/yt-dlp"_s);
    switch (user) {
    case YtDlpUser::manager:
        return {.user = user,
                .places = QList{homebrew, local, localBin} + userScripts(14) + linuxBrew,
                .accepts = Accepts::existingFiles,
                .which = ToolEnvironment::extendedPath,
                .pythonModule = PythonModule::ignore,
                .keeps = Keeps::whileItExists};
    case YtDlpUser::streamResolver:
        return {.user = user,
                .places = QList{homebrew, local, system} + userScripts(13) + linuxBrew,
                .accepts = Accepts::executableFiles,
                .which = ToolEnvironment::inherited,
                .pythonModule = PythonModule::useIfItRuns,
                .keeps = Keeps::forTheRun};
    case YtDlpUser::channelResolver:
        break;
    }
    return {.user = user,
            .places = QList{homebrew, local, localBin} + linuxBrew,
            .accepts = Accepts::executableFiles,
            .which = ToolEnvironment::extendedPath,
            .pythonModule = PythonModule::useUnchecked,
            .keeps = Keeps::nothing};
}

QString systemPython(const HostFileSystem& host) {
    return host.systemPath(u"/usr/bin/python3"_s);
}

QStringList placesOf(const HostFileSystem& host, const YtDlpSearch& search) {
    QStringList paths;
    for (const Place& place : search.places)
        paths += realPath(host, place);
    return paths;
}

std::optional<QString> findInPlaces(const HostFileSystem& host, const YtDlpSearch& search) {
    for (const QString& path : placesOf(host, search)) {
        if (isAccepted(path, search))
            return path;
    }
    return std::nullopt;
}

QCoro::Task<std::optional<YtDlpCommand>> searchForYtDlp(ToolRunner& tools, YtDlpSearch search) {
    if (const std::optional<QString> path = findInPlaces(tools.host(), search))
        co_return YtDlpCommand{YtDlpCommand::Kind::executable, *path};
    if (search.which) {
        const QString which = tools.host().systemPath(u"/usr/bin/which"_s);
        const QStringList name{u"yt-dlp"_s};
        const std::optional<QString> printed = co_await tools.output(which, name, *search.which);
        const QString path = printed.value_or(QString()).trimmed();
        if (!path.isEmpty() && isAccepted(path, search))
            co_return YtDlpCommand{YtDlpCommand::Kind::executable, path};
    }
    if (search.pythonModule == YtDlpSearch::PythonModule::ignore)
        co_return std::nullopt;
    const YtDlpCommand module{YtDlpCommand::Kind::pythonModule, systemPython(tools.host())};
    if (search.pythonModule == YtDlpSearch::PythonModule::useIfItRuns) {
        const QStringList version = module.argumentsFor({u"--version"_s});
        const bool runs =
            co_await tools.succeeds(module.program, version, ToolEnvironment::inherited);
        if (!runs)
            co_return std::nullopt;
    }
    co_return YtDlpCommand(module);
}

} // namespace orvane
