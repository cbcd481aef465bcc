// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"
#include "platform/windowing/EventMonitor.h"

#include <memory>

namespace orvane {

class AppState;
class ApplicationActions;
class ChannelRegistry;
class PlayerCommands;
class Preferences;

/// Handles the single-key shortcuts: always in the program's own windows, and in ghost mode, when
/// the user may be working in another program, in those too. Started and stopped by the application
/// controller; main thread.
class HotkeyManager {
public:
    /// All outlive the manager.
    struct Collaborators {
        AppState& state;
        const Preferences& preferences;
        const ChannelRegistry& registry;
        PlayerCommands& player;
        NotificationCenter& notifications;
        EventMonitor& events;
        ApplicationActions& actions;
    };

    explicit HotkeyManager(const Collaborators& collaborators);
    ~HotkeyManager();

    void start();
    void stop();

private:
    using Outcome = EventMonitor::Outcome;

    void updateGlobalMonitor();
    [[nodiscard]] Outcome handle(const KeyEvent& event);
    [[nodiscard]] Outcome press(const KeyEvent& event);
    [[nodiscard]] bool playFavorite(KeyCode key);
    [[nodiscard]] bool pressCharacter(const QString& character);
    [[nodiscard]] Outcome pressKey(KeyCode key);

    Collaborators m_with;
    std::unique_ptr<QObject> m_monitor;
    /// Present only in ghost mode, so that keys of other programs are not watched without need.
    std::unique_ptr<QObject> m_globalMonitor;
    NotificationCenter::Token m_ghostModeObserver;
    /// The outcome of the first press of the key that is held down.
    Outcome m_firstOutcome = Outcome::passedOn;
};

} // namespace orvane
