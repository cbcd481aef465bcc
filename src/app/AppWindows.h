// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/AboutWindow.h"
#include "ui/menus/Menu.h"
#include "ui/player/PlayerWindow.h"
#include "ui/settings/SettingsWindow.h"

#include <QSizeF>

#include <functional>
#include <memory>

namespace orvane {

class ApplicationActions;
class PlayerManager;
class Preferences;

/// The program's three windows: creates each when it is first shown, and keeps it until the program
/// ends, as closing only hides it. Owned by the application controller; main thread.
class AppWindows {
public:
    /// All outlive it.
    struct Collaborators {
        Preferences& preferences;
        PlayerManager& player;
        std::function<std::unique_ptr<PlayerWindow>(ApplicationActions&, std::function<Menu()>)>
            makePlayerWindow;
        /// The argument resizes the player window's content, in points.
        std::function<std::unique_ptr<SettingsWindow>(std::function<void(QSizeF)>)>
            makeSettingsWindow;
    };

    /// `contextMenu` builds the menu of a right click on the player.
    AppWindows(const Collaborators& collaborators, ApplicationActions& actions,
               std::function<Menu()> contextMenu);
    ~AppWindows();

    /// Called when the player window is on the screen for the first time.
    void onPlayerExposed(std::function<void()> callback) {
        m_onPlayerExposed = std::move(callback);
    }

    /// Does not give the window the keyboard focus.
    void showPlayer();
    /// Closes the player window as its close button does. Does nothing if there is none.
    void closePlayer();
    void hidePlayer();
    /// Shows in the player window that yt-dlp is being installed.
    void setInstalling(bool isInstalling);
    /// Stores the player window's frame in the preferences, or none if there is no window.
    void storePlayerFrame();
    [[nodiscard]] bool hasPlayer() const { return m_player != nullptr; }

    void showSettings();
    /// Shows the settings page for custom channels, and looks `text` up there unless it is empty.
    void showAddChannel(const QString& text);
    void showAbout();

    /// Hides every window for the end of the program.
    void hideAll();

private:
    void makePlayer();

    Collaborators m_with;
    ApplicationActions& m_actions;
    std::function<Menu()> m_contextMenu;
    std::function<void()> m_onPlayerExposed;
    std::unique_ptr<PlayerWindow> m_player;
    std::unique_ptr<SettingsWindow> m_settings;
    std::unique_ptr<AboutWindow> m_about;
};

} // namespace orvane
