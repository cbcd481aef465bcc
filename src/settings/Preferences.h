// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/Language.h"

#include "model/Channel.h"
#include "model/Resolution.h"
#include "settings/AppTheme.h"

#include <QList>
#include <QRectF>
#include <QSet>
#include <QString>
#include <QStringList>

#include <array>
#include <chrono>
#include <optional>

namespace orvane {

class UserDefaults;

/// All persistent settings. Every read and write goes straight to the store; nothing is cached
/// here, so all readers see the last write. Owned by the composition root; main thread only. Never
/// fails: a value that is absent or of the wrong type reads as its default, which is not written
/// back.
class Preferences {
public:
    explicit Preferences(UserDefaults& defaults);

    /// Default 480p.
    [[nodiscard]] Resolution resolution() const;
    void setResolution(Resolution resolution);

    /// The stored value, which may be any number if the file was edited by hand; default 1.
    [[nodiscard]] float volume() const;
    /// The same, limited to 0 ... 1.
    [[nodiscard]] float usableVolume() const;
    void setVolume(float volume);

    /// Default false.
    [[nodiscard]] bool isMuted() const;
    void setMuted(bool muted);

    /// Empty when the player was closed, nullopt when no channel has been played.
    [[nodiscard]] std::optional<QString> lastChannelID() const;
    void setLastChannelID(const std::optional<QString>& id);

    /// Default true.
    [[nodiscard]] bool autoPlayLastChannel() const;
    void setAutoPlayLastChannel(bool on);

    /// Default: the ids of all channels at the time of reading.
    [[nodiscard]] QSet<QString> enabledChannelIDs() const;
    void setEnabledChannelIDs(const QSet<QString>& ids);

    /// In order; default: the ids of the featured channels.
    [[nodiscard]] QStringList favoriteChannelIDs() const;
    void setFavoriteChannelIDs(const QStringList& ids);

    /// Points in desktop coordinates, y downwards. An invalid stored text reads as the zero
    /// rectangle, which callers treat as unusable.
    [[nodiscard]] std::optional<QRectF> windowFrame() const;
    void setWindowFrame(const std::optional<QRectF>& frame);

    /// Width in points; default 420, also for a stored 0. Deliberately not the width of any of the
    /// size buttons.
    [[nodiscard]] int windowSizePreset() const;
    void setWindowSizePreset(int width);

    /// The stored value, which may be any number if the file was edited by hand; default 1.
    [[nodiscard]] double windowOpacity() const;
    /// The same, limited to 0.1 ... 1, as a window must be neither invisible nor beyond opaque.
    [[nodiscard]] double usableWindowOpacity() const;
    void setWindowOpacity(double opacity);

    /// Default `system`.
    [[nodiscard]] AppTheme theme() const;
    void setTheme(AppTheme theme);

    /// Of the interface, from the next start on; nullopt: the system's.
    [[nodiscard]] std::optional<Language> language() const;
    void setLanguage(std::optional<Language> language);

    /// Default false.
    [[nodiscard]] bool ghostModeEnabled() const;
    void setGhostModeEnabled(bool on);

    /// In stored order; empty when the stored list cannot be read.
    [[nodiscard]] QList<Channel> customChannels() const;
    void setCustomChannels(const QList<Channel>& channels);
    /// Appends the channel and enables it, unless the list has its handle already, ignoring case.
    void addCustomChannel(const QString& handle, const QString& name);
    /// Removes all channels with this handle, ignoring case. Leaves the enabled and favourite ids.
    void removeCustomChannel(const QString& handle);

    /// Whether single-key shortcuts act while a text field has the focus; default true.
    [[nodiscard]] bool shortcutsInTextFields() const;
    void setShortcutsInTextFields(bool on);

    /// Whether shortcuts act in ghost mode while the user types in other programs; nullopt until
    /// the user has answered the question.
    [[nodiscard]] std::optional<bool> shortcutsInGhostMode() const;
    void setShortcutsInGhostMode(bool on);

    /// Whether the player window stays above other programs' full-screen windows. Absent: yes.
    [[nodiscard]] bool staysAboveFullScreen() const;
    void setStaysAboveFullScreen(bool on);

    /// Whether the channels that may be asked for next are resolved ahead. Default true.
    [[nodiscard]] bool preparesNextChannels() const;
    void setPreparesNextChannels(bool on);

    /// The lengths that a stream's buffer can have; zero is none.
    static constexpr std::array<std::chrono::minutes, 4> bufferLengths{
        std::chrono::minutes{0}, std::chrono::minutes{1}, std::chrono::minutes{5},
        std::chrono::minutes{15}};
    /// One of these. Default five minutes, also for any other stored number.
    [[nodiscard]] std::chrono::minutes bufferLength() const;
    void setBufferLength(std::chrono::minutes length);

    /// Default false.
    [[nodiscard]] bool onboardingCompleted() const;
    void setOnboardingCompleted(bool completed);

private:
    UserDefaults& m_defaults;
};

} // namespace orvane
