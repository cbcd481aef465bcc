// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"
#include "platform/windowing/EventMonitor.h"

#include <memory>
#include <vector>

namespace orvane {

class AppState;
class ApplicationActions;
class ChannelRegistry;
class PlayerCommands;
class Preferences;

/// Handles the single-key shortcuts: always in the program's own windows, and in ghost mode, when
/// the user may be working in another program, in those too, if the user has allowed that. Without
/// permission only Escape leaves ghost mode from there, and only if there is no tray icon to do it.
/// A locked session is never watched. Started and stopped by the application controller; main
/// thread.
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

    /// The keys that act while another program has the focus.
    enum class Elsewhere { none, escape, all };

    void updateGlobalMonitor();
    [[nodiscard]] Elsewhere keysElsewhere() const;
    Outcome handleElsewhere(const KeyEvent& event);
    [[nodiscard]] Outcome handleHere(const KeyEvent& event);
    [[nodiscard]] bool pressKeyEquivalent(const KeyEvent& event);
    [[nodiscard]] bool pressSoundKey(const KeyEvent& event);
    [[nodiscard]] Outcome handle(const KeyEvent& event);
    [[nodiscard]] Outcome press(const KeyEvent& event);
    [[nodiscard]] bool playFavorite(KeyCode key);
    [[nodiscard]] bool pressCharacter(const QString& character);
    [[nodiscard]] Outcome pressKey(KeyCode key);
    [[nodiscard]] Outcome pressTimeKey(const KeyEvent& event);

    Collaborators m_with;
    std::unique_ptr<QObject> m_monitor;
    /// Present only in ghost mode, so that keys of other programs are not watched without need.
    std::unique_ptr<QObject> m_globalMonitor;
    std::vector<NotificationCenter::Token> m_observers;
    bool m_isSessionLocked = false;
    bool m_hasStatusItem = false;
    /// The outcome of the first press of the key that is held down.
    Outcome m_firstOutcome = Outcome::passedOn;
};

} // namespace orvane
