// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/TaskScope.h"
#include "platform/system/HttpClient.h"
#include "streaming/tool/YtDlpManager.h"
#include "streaming/tool/YtDlpUpdater.h"
#include "support/FakeClock.h"
#include "support/FakeMachine.h"
#include "support/LoopbackServer.h"

#include <QCoroTask>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>

namespace orvane::test {

using namespace Qt::StringLiterals;

inline const QString notInstalled =
    u"Could not install yt-dlp. Please install manually: brew install yt-dlp"_s;
inline const QString localBin = u"/home/.local/bin/yt-dlp"_s;

/// Real child processes and a real web server, on a machine of the test's own that has Python and
/// no yt-dlp.
struct ToolSetup {
    explicit ToolSetup(const QString& architecture = u"x86_64"_s)
        : tool{machine.host(),
               processes,
               clock,
               http,
               {.gitHubApi = server.origin(),
                .gitHub = server.origin(),
                .gitHubRaw = server.origin(),
                .architecture = architecture},
               machine.real(u"/data/yt-dlp"_s)} {
        machine.install(u"/usr/bin/which"_s, "exit 1\n");
        machine.install(u"/usr/bin/python3"_s, "exit 1\n");
        machine.install(u"/bin/chmod"_s, "exec /bin/chmod \"$@\"\n");
    }
    ToolSetup(const ToolSetup&) = delete;
    ToolSetup& operator=(const ToolSetup&) = delete;
    ~ToolSetup() { QCoro::waitFor(tasks.join()); }

    /// Returns the path on the fake machine, or the error.
    [[nodiscard]] QString install(const YtDlpPlan& plan) {
        return describe(QCoro::waitFor(tool.install(plan)));
    }
    [[nodiscard]] QString ensure() {
        const YtDlpTool::Installed installed = QCoro::waitFor(manager.ensureInstalled());
        QCoro::waitFor(tasks.join());
        return describe(installed);
    }
    [[nodiscard]] QString find(const YtDlpSearch& search) {
        const std::optional<YtDlpCommand> found =
            QCoro::waitFor(searchForYtDlp(tool.runner(), search));
        return found ? describe(YtDlpTool::Installed(*found)) : QString();
    }
    [[nodiscard]] QString newest() {
        const std::optional<YtDlpTool::Candidate> found = QCoro::waitFor(tool.newest());
        return found ? describe(YtDlpTool::Installed(found->command)) : QString();
    }
    [[nodiscard]] QString describe(const YtDlpTool::Installed& installed) const {
        if (!installed)
            return errorDescription(installed.error());
        const QString path = installed->program.sliced(machine.real({}).size());
        return (QStringList{path} + installed->argumentsFor({})).join(u' ');
    }
    [[nodiscard]] QString read(const QString& path) const {
        QFile file(machine.real(path));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed()
                                              : u"no file"_s;
    }
    void publish(const QByteArray& executable, qsizetype cutAfter = -1) {
        server.answers[files + u"yt-dlp_linux"_s] = {.body = executable, .cutAfter = cutAfter};
    }
    void publishChecksum(const QByteArray& executable, const QByteArray& name = "yt-dlp_linux") {
        const QByteArray sum =
            QCryptographicHash::hash(executable, QCryptographicHash::Sha256).toHex();
        QByteArray& list = server.answers[files + u"SHA2-256SUMS"_s].body;
        list = "0000  yt-dlp_macos\n" + list + sum + "  " + name + "\n";
    }
    [[nodiscard]] QStringList inLocalBin() const {
        return QDir(machine.real(u"/home/.local/bin"_s))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    const QString files = u"/yt-dlp/yt-dlp/releases/latest/download/"_s;
    FakeMachine machine;
    LoopbackServer server;
    LocalProcessRunner processes;
    FakeClock clock;
    HttpClient http{u"Orvane"_s};
    TaskScope tasks;
    YtDlpTool tool;
    std::optional<YtDlpCommand> preferred;
    YtDlpUpdater updater{tool, [this] { return preferred; }, tasks};
    YtDlpManager manager{tool, updater, tasks};
};

} // namespace orvane::test
