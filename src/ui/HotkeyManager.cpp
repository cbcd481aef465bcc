// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/HotkeyManager.h"

#include "playback/PlayerCommands.h"
#include "settings/Preferences.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "state/ChannelRegistry.h"
#include "ui/ApplicationActions.h"

#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Every modifier except the number pad's, including Caps Lock.
constexpr std::uint32_t rejectedModifiers = 0xFFDF0000;
constexpr float volumeStep = 0.1F;

bool isInDialog(const KeyEvent& event) {
    return event.target == KeyEvent::Target::window || event.target == KeyEvent::Target::textField;
}

bool isArrow(KeyCode key) {
    return key >= KeyCode::leftArrow && key <= KeyCode::upArrow;
}

} // namespace

HotkeyManager::HotkeyManager(const Collaborators& collaborators) : m_with(collaborators) {}

HotkeyManager::~HotkeyManager() = default;

void HotkeyManager::start() {
    m_monitor = m_with.events.addLocalKeyDownMonitor(
        [this](const KeyEvent& event) { return handleHere(event); });
    m_observers = m_with.notifications.addObservers([this] { updateGlobalMonitor(); },
                                                    AppNotification::ghostModeChanged,
                                                    AppNotification::shortcutsInGhostModeChanged);
    const auto follow = [this](auto topic, bool& value) {
        m_observers.push_back(m_with.notifications.addObserver(topic, [this, &value](bool isOn) {
            value = isOn;
            updateGlobalMonitor();
        }));
    };
    follow(AppNotification::sessionLockChanged, m_isSessionLocked);
    follow(AppNotification::statusItemShownChanged, m_hasStatusItem);
    updateGlobalMonitor();
}

void HotkeyManager::stop() {
    m_observers.clear();
    m_globalMonitor.reset();
    m_monitor.reset();
}

void HotkeyManager::updateGlobalMonitor() {
    if (keysElsewhere() == Elsewhere::none)
        m_globalMonitor.reset();
    else if (!m_globalMonitor)
        m_globalMonitor = m_with.events.addGlobalKeyDownMonitor(
            [this](const KeyEvent& event) { return handleElsewhere(event); });
}

HotkeyManager::Elsewhere HotkeyManager::keysElsewhere() const {
    if (!m_with.state.isGhostMode() || m_isSessionLocked)
        return Elsewhere::none;
    if (m_with.preferences.shortcutsInGhostMode().value_or(false))
        return Elsewhere::all;
    return m_hasStatusItem ? Elsewhere::none : Elsewhere::escape;
}

HotkeyManager::Outcome HotkeyManager::handleElsewhere(const KeyEvent& event) {
    if (keysElsewhere() == Elsewhere::escape && event.keyCode != KeyCode::escape)
        return Outcome::passedOn;
    return handle(event);
}

HotkeyManager::Outcome HotkeyManager::handleHere(const KeyEvent& event) {
    if (pressKeyEquivalent(event) || pressSoundKey(event))
        return Outcome::consumed;
    return handle(event);
}

bool HotkeyManager::pressSoundKey(const KeyEvent& event) {
    if (isInDialog(event) || (event.modifierFlags & rejectedModifiers) != 0 ||
        event.charactersIgnoringModifiers.toLower() != u"s")
        return false;
    if (event.repeat == KeyEvent::Repeat::first)
        m_with.actions.menuToggleSoundOnly();
    return true;
}

bool HotkeyManager::pressKeyEquivalent(const KeyEvent& event) {
    if ((event.modifierFlags & rejectedModifiers) != ModifierFlags::control)
        return false;
    const QString character = event.charactersIgnoringModifiers.toLower();
    const bool isFirst = event.repeat == KeyEvent::Repeat::first;
    if (character == u"n") {
        if (isFirst)
            m_with.actions.menuAddChannel();
    } else if (character == u",") {
        if (isFirst)
            m_with.actions.menuOpenSettings();
    } else if (character == u"q") {
        if (isFirst)
            m_with.actions.terminate();
    } else {
        return false;
    }
    return true;
}

HotkeyManager::Outcome HotkeyManager::handle(const KeyEvent& event) {
    if (isInDialog(event) && !m_with.preferences.shortcutsInTextFields())
        return Outcome::passedOn;
    // Only arrows repeat: a toggle must not flip while its key is held down.
    if (event.repeat == KeyEvent::Repeat::again && !isArrow(event.keyCode))
        return m_firstOutcome;
    m_firstOutcome = press(event);
    if (m_firstOutcome == Outcome::consumed && event.target == KeyEvent::Target::textField)
        m_with.notifications.post(AppNotification::textFieldLostKey);
    return m_firstOutcome;
}

HotkeyManager::Outcome HotkeyManager::press(const KeyEvent& event) {
    if ((event.modifierFlags & rejectedModifiers) != 0)
        return Outcome::passedOn;
    const QString character = event.charactersIgnoringModifiers.toLower();
    // The only button of the player window that gets the focus is the one that retries a failed
    // channel, which has no picture to pause.
    if (event.target == KeyEvent::Target::button && character == u" ")
        return Outcome::passedOn;
    if (playFavorite(event.keyCode) || pressCharacter(character))
        return Outcome::consumed;
    if (event.keyCode == KeyCode::escape && event.escapeCloses && !m_with.state.isGhostMode())
        return Outcome::passedOn;
    if (event.keyCode == KeyCode::backspace || event.keyCode == KeyCode::end)
        return pressTimeKey(event);
    return pressKey(event.keyCode);
}

HotkeyManager::Outcome HotkeyManager::pressTimeKey(const KeyEvent& event) {
    // They edit a text, and move in a list.
    if (isInDialog(event))
        return Outcome::passedOn;
    if (event.keyCode == KeyCode::backspace)
        m_with.player.goBack(usualStepBack);
    else
        m_with.player.goLive();
    return Outcome::consumed;
}

bool HotkeyManager::playFavorite(KeyCode key) {
    if (key < KeyCode::digit1 || key > KeyCode::digit7)
        return false;
    // By key code and not by digit: the codes are in the order of the favourites.
    const int index = std::to_underlying(key) - std::to_underlying(KeyCode::digit1);
    const QStringList favorites = m_with.preferences.favoriteChannelIDs();
    if (index >= favorites.size())
        return false;
    const auto channel = m_with.registry.channel(favorites.at(index));
    if (channel)
        m_with.player.play(*channel);
    return channel.has_value();
}

bool HotkeyManager::pressCharacter(const QString& character) {
    if (character == u"g")
        m_with.actions.menuToggleGhostMode();
    else if (character == u"m")
        m_with.player.toggleMute();
    else if (character == u"q")
        m_with.actions.terminate();
    else if (character == u" ")
        m_with.player.togglePlayPause();
    else if (character == u"f") {
        if (!m_with.state.isGhostMode())
            m_with.notifications.post(AppNotification::toggleFullscreen);
    } else if (character == u",")
        m_with.notifications.post(AppNotification::openSettings);
    else
        return false;
    return true;
}

HotkeyManager::Outcome HotkeyManager::pressKey(KeyCode key) {
    switch (key) {
    case KeyCode::escape:
        if (m_with.state.isGhostMode()) {
            m_with.state.setGhostMode(false);
            return Outcome::consumed;
        }
        m_with.notifications.post(AppNotification::toggleFullscreen);
        return Outcome::passedOn; // The focused window may use Escape too.
    case KeyCode::leftArrow:
        m_with.player.playNeighbor(ChannelStep::previous);
        return Outcome::consumed;
    case KeyCode::rightArrow:
        m_with.player.playNeighbor(ChannelStep::next);
        return Outcome::consumed;
    case KeyCode::downArrow:
        m_with.player.adjustVolume(-volumeStep);
        return Outcome::consumed;
    case KeyCode::upArrow:
        m_with.player.adjustVolume(volumeStep);
        return Outcome::consumed;
    default:
        return Outcome::passedOn;
    }
}

} // namespace orvane
