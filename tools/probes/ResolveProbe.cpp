// SPDX-License-Identifier: GPL-3.0-or-later
// Resolves each argument as the settings window does, with the machine's own yt-dlp, and prints
// the handle and the name, or the error.
#include "app/Environment.h"
#include "base/Clock.h"
#include "platform/system/HttpClient.h"
#include "streaming/ChannelResolver.h"
#include "streaming/tool/YtDlpTool.h"

#include <QCoreApplication>
#include <QCoroTask>

#include <cstdio>

using namespace orvane;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    LocalProcessRunner processes;
    SystemClock clock;
    HttpClient http(QCoreApplication::applicationName());
    YtDlpTool tool(HostFileSystem::real(), processes, clock, http, {});
    ChannelResolver resolver(Environment::read().videoSite, tool);
    for (const QString& input : QCoreApplication::arguments().sliced(1)) {
        const ChannelResolver::Result result = QCoro::waitFor(resolver.resolve(input, {}));
        const QString line =
            result ? result->handle + QLatin1Char('|') + result->name : result.error().description;
        std::puts(line.toUtf8().constData());
    }
    return 0;
}
