// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the real player window and controller, and executes commands from the standard input in
// place of keys, menus and settings. Answers each line with "done" and the result, if any.
#include "language/Translation.h"

#include "app/Collaborators.h"
#include "app/Services.h"
#include "platform/media/MpvInstance.h"
#include "platform/media/VideoView.h"
#include "platform/system/Memory.h"
#include "platform/system/TerminationSignals.h"
#include "state/AppNotification.h"
#include "ui/player/PlayerWindow.h"
#include "ui/theme/Theme.h"

#include <QApplication>
#include <QSocketNotifier>
#include <QStandardPaths>

#include <iostream>
#include <string>

using namespace orvane;
using namespace Qt::StringLiterals;

namespace {

PlayerWindow& player() {
    PlayerWindow* found = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* candidate = qobject_cast<PlayerWindow*>(window))
            found = candidate;
    }
    return *found;
}

/// Executes one command; returns its result.
QString execute(Services& services, AppDelegate& delegate, const QStringList& words) {
    const QString& command = words.first();
    const QString argument = words.value(1);
    const Channel channel = services.registry.featured().first();
    if (command == u"ghost"_s)
        services.state.setGhostMode(argument == u"on"_s);
    else if (command == u"opacity"_s) {
        services.preferences.setWindowOpacity(argument.toDouble());
        services.notifications.post(AppNotification::windowOpacityChanged, argument.toDouble());
    } else if (command == u"fullscreen"_s)
        services.notifications.post(AppNotification::toggleFullscreen);
    else if (command == u"loading"_s)
        services.state.setLoading(channel);
    else if (command == u"error"_s)
        services.state.setError(channel, words.sliced(1).join(u' '));
    else if (command == u"playing"_s)
        services.state.setPlaying(channel);
    else if (command == u"state"_s)
        return services.state.isFullscreen() ? u"fullscreen"_s : u"window"_s;
    else if (command == u"favourites"_s) {
        // The same channels become the enabled ones.
        const QStringList ids = words.sliced(1);
        services.preferences.setFavoriteChannelIDs(ids);
        services.preferences.setEnabledChannelIDs({ids.begin(), ids.end()});
    } else if (command == u"sleep"_s)
        services.sleepTimer.schedule(argument.toInt());
    else if (command == u"focus"_s)
        return QGuiApplication::focusWindow() != nullptr ? u"ours"_s : u"elsewhere"_s;
    else if (command == u"font"_s) {
        // As a desktop does.
        QFont font = QApplication::font();
        font.setPointSizeF(argument.toDouble());
        QApplication::setFont(font);
    } else if (command == u"about"_s)
        delegate.menuShowAbout();
    else if (command == u"close"_s)
        player().hide();
    else if (command == u"show"_s)
        player().present();
    else
        return u"unknown command"_s;
    return {};
}

} // namespace

int main(int argc, char** argv) {
    limitMemoryArenas();
    qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication::setQuitOnLastWindowClosed(false);
    const QApplication application(argc, argv);
    Translation translation(systemLanguage());
    translation.install();
    useNumericCLocale();
    const Environment environment = Environment::read();
    Services services(environment,
                      QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                          u"/orvane/preferences.json"_s,
                      chooseVideoOutput(environment.videoOutput));
    const Theme theme(services.preferences, services.notifications);
    AppDelegate delegate(appDelegateCollaborators(services));
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &delegate, &AppDelegate::terminate);
    delegate.applicationDidFinishLaunching();
    // Without a site nothing plays, so the window keeps showing the state that a command sets.
    services.player.stop();
    services.state.setError(services.registry.featured().first(), u"No site"_s);

    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&] {
        std::string line;
        if (!std::getline(std::cin, line)) {
            input.setEnabled(false);
            delegate.terminate();
            return;
        }
        const QStringList words = QString::fromStdString(line).split(u' ');
        std::cout << "done " << execute(services, delegate, words).toStdString() << std::endl;
    });
    return QApplication::exec();
}
