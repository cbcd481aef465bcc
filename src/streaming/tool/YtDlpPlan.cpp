// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpPlan.h"

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

using RunCommand = YtDlpPlan::RunCommand;

/// Where Homebrew's installer puts it on Linux, for all users or for one.
const QStringList linuxBrewPlaces{u"/home/linuxbrew/.linuxbrew/bin/brew"_s,
                                  u"~/.linuxbrew/bin/brew"_s};

QStringList words(const QString& text) {
    return text.split(u' ');
}

} // namespace

// An older pip does not know --break-system-packages, hence two attempts each.

YtDlpPlan YtDlpPlan::ofManager() {
    return {.user = YtDlpUser::manager,
            .needsPython = true,
            .environment = ToolEnvironment::extendedPath,
            .steps = {RunCommand{pipPlaces(),
                                 words(u"install --user --break-system-packages yt-dlp"_s)},
                      RunCommand{pipPlaces(), words(u"install --user yt-dlp"_s)}, InstallHomebrew{},
                      RunCommand{brewPlaces(), words(u"install yt-dlp"_s)}, Download{}},
            .confirmation = YtDlpSearch::of(YtDlpUser::manager),
            .whenNotFound = WhenNotFound::tryNextStep};
}

YtDlpPlan YtDlpPlan::ofStreamResolver() {
    YtDlpSearch confirmation = YtDlpSearch::of(YtDlpUser::streamResolver);
    confirmation.which.reset();
    return {.user = YtDlpUser::streamResolver,
            .needsPython = false,
            .environment = ToolEnvironment::inherited,
            .steps = {RunCommand{{u"/usr/bin/python3"_s},
                                 words(u"-m pip install --user --quiet yt-dlp"_s)},
                      RunCommand{QStringList{u"/opt/homebrew/bin/brew"_s} + linuxBrewPlaces,
                                 words(u"install yt-dlp"_s)}},
            .confirmation = confirmation,
            .whenNotFound = WhenNotFound::fail};
}

QList<RunCommand> upgradeCommands() {
    return {
        {pipPlaces(), words(u"install --user --upgrade --break-system-packages yt-dlp"_s)},
        {pipPlaces(), words(u"install --user --upgrade yt-dlp"_s)},
        {brewPlaces(), words(u"upgrade yt-dlp"_s)},
    };
}

QStringList pythonPlaces() {
    return {u"/usr/bin/python3"_s, u"/opt/homebrew/bin/python3"_s, u"/usr/local/bin/python3"_s};
}

QStringList pipPlaces() {
    return {u"/usr/bin/pip3"_s, u"/opt/homebrew/bin/pip3"_s, u"/usr/local/bin/pip3"_s,
            u"/Library/Developer/CommandLineTools/usr/bin/pip3"_s};
}

QStringList brewPlaces() {
    return QStringList{u"/opt/homebrew/bin/brew"_s, u"/usr/local/bin/brew"_s} + linuxBrewPlaces;
}

} // namespace orvane
