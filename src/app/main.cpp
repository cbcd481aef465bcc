// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/Translation.h"

#include "app/Collaborators.h"
#include "app/Environment.h"
#include "app/Launch.h"
#include "app/Services.h"
#include "base/ProcessSettings.h"
#include "model/AppConstants.h"
#include "platform/bus/BusProbe.h"
#include "platform/bus/MessageBus.h"
#include "platform/media/MpvInstance.h"
#include "platform/media/VideoView.h"
#include "platform/system/Memory.h"
#include "platform/system/SearchPath.h"
#include "platform/system/TerminationSignals.h"
#include "platform/windowing/BaseSizes.h"
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "ui/ApplicationIcon.h"
#include "ui/theme/Theme.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include <cstdlib>

using namespace orvane;
using namespace Qt::StringLiterals;

namespace {

/// Prepares the environment for Qt and for child processes.
void prepareEnvironment(const QString& platform) {
    // pip installs into this folder for a single user, and a login manager's PATH often lacks it.
    const QString path = searchPathWith(searchPathOf(QProcessEnvironment::systemEnvironment()),
                                        QDir::homePath() + u"/.local/bin"_s);
    qputenv("PATH", path.toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", platform.toLocal8Bit());
    // mpv's hardware decoding needs EGL.
    if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "xcb_egl");
}

QString preferencesPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/orvane/preferences.json"_s;
}

Language chosenLanguage() {
    UserDefaults defaults(preferencesPath());
    return Preferences(defaults).language().value_or(systemLanguage());
}

/// Returns the arguments after the program's name.
QStringList argumentsOf(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    return arguments;
}

void prepareQt() {
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setApplicationName(AppConstants::appName);
    QApplication::setApplicationVersion(AppConstants::appVersion);
    QApplication::setDesktopFileName(AppConstants::bundleIdentifier);
}

} // namespace

int main(int argc, char** argv) {
    ProcessSettings::apply();
    limitMemoryArenas();
    Translation translation(chosenLanguage());
    Launch::Outcome launch = Launch::prepare(argumentsOf(argc, argv), preferencesPath());
    if (const auto* exit = std::get_if<Launch::Exit>(&launch))
        return exit->code;
    Launch::Start& start = std::get<Launch::Start>(launch);

    prepareEnvironment(start.platform);
    prepareQt();
    SilentBusDetour detour(MessageBus::addressOf(MessageBus::Kind::session));
    const QApplication application(argc, argv);
    detour.end();
    translation.install();
    const BaseSizes baseSizes;
    QApplication::setWindowIcon(applicationIcon());
    useNumericCLocale();

    const Environment environment = Environment::read();
    Services services(environment, preferencesPath(), chooseVideoOutput(environment.videoOutput));
    const Theme theme(services.preferences, services.notifications);
    AppDelegate delegate(appDelegateCollaborators(services));
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &delegate, &AppDelegate::terminate);

    delegate.applicationDidFinishLaunching(start.verbs);
    if (start.instance)
        Launch::serve(*start.instance, delegate);
    const int code = QApplication::exec();
    // Returning would run destructors, which wait for unfinished work.
    if (!delegate.isDrained() || services.http.hasUnansweredRequests()) {
        services.defaults.synchronize();
        std::_Exit(code);
    }
    return code;
}
