// SPDX-License-Identifier: GPL-3.0-or-later
// Resolves each argument as the settings window would, with the machine's own yt-dlp, and prints
// the handle and the name, or the error.
#include "app/Environment.h"
#include "streaming/ChannelResolver.h"

#include <QCoreApplication>
#include <QCoroTask>

#include <cstdio>

using namespace orvane;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    LocalProcessRunner processes;
    ChannelResolver resolver(Environment::read().videoSite, HostFileSystem::real(), processes);
    for (const QString& input : QCoreApplication::arguments().sliced(1)) {
        const ChannelResolver::Result result = QCoro::waitFor(resolver.resolve(input, {}));
        const QString line =
            result ? result->handle + QLatin1Char('|') + result->name : result.error().description;
        std::puts(line.toUtf8().constData());
    }
    return 0;
}
