// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpInstaller.h"

#include "base/Clock.h"
#include "base/Logging.h"
#include "streaming/tool/YtDlpRelease.h"

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int pythonPolls = 30;
constexpr std::chrono::milliseconds pythonPollInterval{2000};

} // namespace

QString errorDescription(YtDlpError error) {
    if (error == YtDlpError::noPython)
        return QString::fromUtf8(QT_TRANSLATE_NOOP(
            "YtDlp", "Python 3 is required. Please install Xcode Command Line Tools."));
    if (error == YtDlpError::noReleaseFile)
        return QString::fromUtf8(QT_TRANSLATE_NOOP(
            "YtDlp",
            "Could not install yt-dlp: it has no file for this computer's processor. Please "
            "install yt-dlp, or Python 3.10 or later, from your distribution."));
    return QString::fromUtf8(QT_TRANSLATE_NOOP(
        "YtDlp", "Could not install yt-dlp. Please install manually: brew install yt-dlp"));
}

YtDlpInstaller::YtDlpInstaller(ToolRunner& tools, YtDlpRelease& release, Clock& clock,
                               std::optional<Origin> homebrewScripts, std::stop_token stop)
    : m_tools(tools),
      m_release(release),
      m_clock(clock),
      m_homebrewScripts(std::move(homebrewScripts)),
      m_stop(std::move(stop)) {}

QCoro::Task<YtDlpInstaller::Installed> YtDlpInstaller::install(YtDlpPlan plan) {
    if (plan.needsPython) {
        const bool hasPython = co_await ensurePython();
        if (!hasPython)
            co_return std::unexpected(YtDlpError::noPython);
    }
    YtDlpError error = YtDlpError::notInstalled;
    for (const YtDlpPlan::Step& step : plan.steps) {
        const StepResult result = co_await runStep(plan, step);
        if (result.installed)
            co_return Installed(*result.installed);
        error = result.error;
        if (result.hasSucceeded && plan.whenNotFound == YtDlpPlan::WhenNotFound::fail)
            break;
    }
    co_return std::unexpected(error);
}

QCoro::Task<bool> YtDlpInstaller::ensurePython() {
    if (m_tools.firstExisting(pythonPlaces()))
        co_return true;
    qCInfo(logYtDlp) << "waiting for the system to install Python";
    const QString xcodeSelect = m_tools.host().systemPath(u"/usr/bin/xcode-select"_s);
    const QStringList install{u"--install"_s};
    co_await m_tools.output(xcodeSelect, install, ToolEnvironment::extendedPath);
    const QString python = systemPython(m_tools.host());
    const QStringList version{u"--version"_s};
    co_await m_tools.output(python, version, ToolEnvironment::extendedPath);
    for (int poll = 0; poll < pythonPolls && !m_stop.stop_requested(); ++poll) {
        co_await m_clock.sleep(pythonPollInterval, m_stop);
        if (m_tools.firstExisting(pythonPlaces()))
            co_return true;
    }
    co_return false;
}

QCoro::Task<YtDlpInstaller::StepResult> YtDlpInstaller::runStep(YtDlpPlan plan,
                                                                YtDlpPlan::Step step) {
    StepResult result;
    if (const auto* command = std::get_if<YtDlpPlan::RunCommand>(&step))
        result = co_await runCommand(plan, *command);
    else if (std::holds_alternative<YtDlpPlan::Download>(step))
        result = co_await download();
    else if (!m_tools.firstExisting(brewPlaces()))
        co_await installHomebrew();
    co_return result;
}

QCoro::Task<YtDlpInstaller::StepResult> YtDlpInstaller::runCommand(YtDlpPlan plan,
                                                                   YtDlpPlan::RunCommand command) {
    StepResult result;
    const std::optional<QString> program = m_tools.firstExisting(command.programs);
    if (!program)
        co_return result;
    const std::optional<QProcessEnvironment> environment = variables(plan.environment);
    const bool succeeded = co_await m_tools.install(*program, command.arguments, environment);
    result.hasSucceeded = succeeded;
    if (succeeded)
        result.installed = co_await searchForYtDlp(m_tools, plan.confirmation);
    co_return result;
}

QCoro::Task<> YtDlpInstaller::installHomebrew() {
    if (!m_homebrewScripts)
        co_return;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"NONINTERACTIVE"_s, u"1"_s);
    environment.insert(u"CI"_s, u"1"_s);
    const QString script = m_homebrewScripts->address(u"/Homebrew/install/HEAD/install.sh");
    const QString bash = m_tools.host().systemPath(u"/bin/bash"_s);
    const QStringList arguments{u"-c"_s, u"NONINTERACTIVE=1 /bin/bash -c \"$(curl -fsSL "_s +
                                             script + u")\""_s};
    const std::optional<QProcessEnvironment> variables = environment;
    co_await m_tools.install(bash, arguments, variables);
}

QCoro::Task<YtDlpInstaller::StepResult> YtDlpInstaller::download() {
    StepResult result;
    const QString destination = m_tools.host().home() + u"/.local/bin/yt-dlp"_s;
    const YtDlpRelease::Downloaded downloaded = co_await m_release.download(destination);
    if (downloaded)
        result.installed = downloaded->command;
    else if (downloaded.error() == YtDlpDownloadError::noFile)
        result.error = YtDlpError::noReleaseFile;
    co_return result;
}

} // namespace orvane
