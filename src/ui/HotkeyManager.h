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

/// The single keys that drive the player: in this program's own windows always, in other programs
/// only in ghost mode, where the person may be working in one of them. Started and stopped by the
/// application controller; main thread.
class HotkeyManager {
public:
    /// All outlive it.
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

    void followGhostMode();
    [[nodiscard]] Outcome handle(const KeyEvent& event);
    [[nodiscard]] Outcome press(const KeyEvent& event);
    [[nodiscard]] bool playFavorite(KeyCode key);
    [[nodiscard]] bool pressCharacter(const QString& character);
    [[nodiscard]] Outcome pressKey(KeyCode key);

    Collaborators m_with;
    std::unique_ptr<QObject> m_monitor;
    /// Only in ghost mode: nobody's keys are looked at without need.
    std::unique_ptr<QObject> m_globalMonitor;
    NotificationCenter::Token m_ghostModeObserver;
    /// What became of the key that is held down.
    Outcome m_firstOutcome = Outcome::passedOn;
};

} // namespace orvane
