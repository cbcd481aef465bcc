// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Launch.h"

#include "language/Translation.h"

#include "app/AppDelegate.h"
#include "app/commands/ChannelText.h"
#include "app/commands/CommandLine.h"
#include "app/commands/Revision.h"
#include "app/commands/Versions.h"
#include "base/Logging.h"
#include "model/AppConstants.h"
#include "platform/system/Resources.h"
#include "platform/windowing/DisplayChoice.h"
#include "platform/windowing/x11/X11.h"
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "state/ChannelRegistry.h"

#include <QFileInfo>

#include <chrono>
#include <cstdio>

namespace orvane::Launch {

using namespace Qt::StringLiterals;

namespace {

constexpr int failed = 1;
constexpr int usageError = 2;

/// Enough for another copy that is starting on a busy machine.
constexpr std::chrono::seconds claimTimeout{10};
/// Enough for the rest of a message of a few bytes.
constexpr std::chrono::seconds messageTimeout{3};

Exit print(const QByteArray& text) {
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
    return {std::fflush(stdout) == 0 ? 0 : failed};
}

void printError(const QString& message) {
    const QByteArray text = "orvane: " + message.trimmed().toUtf8() + '\n';
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stderr);
}

Exit printError(const QString& message, int code) {
    printError(message);
    return {code};
}

QList<Channel> allChannels(const QString& preferencesPath) {
    UserDefaults defaults(preferencesPath);
    const Preferences preferences(defaults);
    return ChannelRegistry(preferences).all();
}

/// Replaces the text that the user typed with the channel's id, or returns an error message.
std::optional<QString> lookUp(Verb::Play& play, const QList<Channel>& channels) {
    const ChannelLookup::Result result = ChannelLookup::find(channels, play.text);
    if (const auto* channel = std::get_if<Channel>(&result)) {
        play.text = channel->id();
        return std::nullopt;
    }
    if (const auto* ambiguous = std::get_if<ChannelLookup::Ambiguous>(&result))
        return ChannelText::explain(play.text, *ambiguous);
    return ChannelText::explain(play.text, std::get<ChannelLookup::Unknown>(result));
}

std::optional<QString> lookUpChannels(QList<Verb::Value>& verbs, const QString& preferencesPath) {
    for (Verb::Value& verb : verbs) {
        auto* const play = std::get_if<Verb::Play>(&verb);
        if (play == nullptr)
            continue;
        if (auto error = lookUp(*play, allChannels(preferencesPath)))
            return error;
    }
    return std::nullopt;
}

std::optional<InstanceAddress> address(const QString& preferencesPath) {
    // Another preferences file has other channels, so each file has a copy of its own.
    return instanceAddress(instanceFolders(u"orvane"_s),
                           instanceName(qEnvironmentVariable("DISPLAY"),
                                        qEnvironmentVariable("WAYLAND_DISPLAY"),
                                        QFileInfo(preferencesPath).absoluteFilePath()));
}

SingleInstance::Claim claim(const QList<Verb::Value>& verbs, const QString& preferencesPath) {
    const auto place = address(preferencesPath);
    if (!place)
        return SingleInstance::Failure::noLock;
    const QByteArray message =
        Verb::encode(verbs.isEmpty() ? QList{Verb::Value(Verb::Show{})} : verbs);
    return SingleInstance::claim(*place, message, claimTimeout);
}

/// Returns whether the session names a display; without one no copy can run in it.
bool hasDisplay() {
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

Outcome start(std::unique_ptr<SingleInstance> instance, const QList<Verb::Value>& verbs) {
    if (const std::optional<QString> missing = Resources::missing())
        return printError(*missing, failed);
    const auto display = chooseDisplay(DisplaySession::read(), X11::canConnect);
    if (!display)
        return printError(display.error(), failed);
    if (!display->notice.isEmpty())
        printError(display->notice);
    return Start{std::move(instance), verbs, display->platform};
}

bool onlyQuits(const QList<Verb::Value>& verbs) {
    return verbs.size() == 1 && std::holds_alternative<Verb::Quit>(verbs.first());
}

Outcome handleFailure(SingleInstance::Failure failure, const QList<Verb::Value>& verbs) {
    switch (failure) {
    case SingleInstance::Failure::tooLong:
        return printError(translated("CommandLine", "the options are too long"), usageError);
    case SingleInstance::Failure::refused:
        return printError(translated("CommandLine", "another version of Orvane is running and does "
                                                    "not know these options; quit it first"),
                          failed);
    case SingleInstance::Failure::noAnswer:
        return printError(translated("CommandLine", "Orvane is running but does not answer"),
                          failed);
    case SingleInstance::Failure::noLock:
    case SingleInstance::Failure::noSocket:
        break;
    }
    printError(translated(
        "CommandLine",
        "neither XDG_RUNTIME_DIR nor the folder for temporary files is usable, so Orvane cannot "
        "check whether it is already running"));
    return onlyQuits(verbs) ? Outcome(Exit{failed}) : start(nullptr, verbs);
}

Outcome run(QList<Verb::Value> verbs, const QString& preferencesPath) {
    if (const auto error = lookUpChannels(verbs, preferencesPath))
        return printError(*error, usageError);
    if (!hasDisplay())
        return printError(noDisplay(), failed);
    SingleInstance::Claim result = claim(verbs, preferencesPath);
    if (const auto* failure = std::get_if<SingleInstance::Failure>(&result))
        return handleFailure(*failure, verbs);
    if (std::holds_alternative<SingleInstance::Delivered>(result) || onlyQuits(verbs))
        return Exit{};
    return start(std::get<std::unique_ptr<SingleInstance>>(std::move(result)), verbs);
}

/// Executes each kind of command.
struct Execute {
    const QString& preferencesPath;

    Outcome operator()(const CommandLine::ShowHelp&) const {
        return print(CommandLine::help().toUtf8());
    }
    Outcome operator()(const CommandLine::ShowVersion&) const {
        return print(versionText().toUtf8());
    }
    Outcome operator()(const CommandLine::ListChannels& list) const {
        const QList<Channel> channels = allChannels(preferencesPath);
        return print(list.format == CommandLine::ListChannels::Format::json
                         ? ChannelText::json(channels)
                         : ChannelText::table(channels).toUtf8());
    }
    Outcome operator()(const CommandLine::Run& command) const {
        if (command.isVerbose)
            enableVerboseLogging();
        qCInfo(logApp).noquote() << AppConstants::appName << AppConstants::appVersion << revision;
        return run(command.verbs, preferencesPath);
    }
};

} // namespace

Outcome prepare(const QStringList& arguments, const QString& preferencesPath) {
    const auto command = CommandLine::parse(arguments);
    if (!command)
        return printError(command.error().message + u'\n' +
                              translated("CommandLine", "Try orvane --help."),
                          usageError);
    return std::visit(Execute{preferencesPath}, *command);
}

void serve(SingleInstance& instance, AppDelegate& delegate) {
    QObject::connect(&delegate, &AppDelegate::terminating, &delegate,
                     [&instance] { instance.close(); });
    instance.serve(
        [&delegate](const QByteArray& message) {
            const auto verbs = Verb::decode(message);
            if (!verbs)
                return MessageServer::Answer::refused;
            for (const Verb::Value& verb : *verbs)
                delegate.perform(verb);
            return MessageServer::Answer::done;
        },
        messageTimeout);
}

} // namespace orvane::Launch
