// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/BackgroundThreads.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>

struct mpv_handle;

namespace orvane {

class MpvTeardownQueue;

/// What is known about the machine's sound server; shared by all players. A server that accepts and
/// never answers blocks every mpv handle that uses it, so a player that has waited for its sound
/// reports its suspicion, and the server is asked through a handle of its own. While it is silent,
/// it is asked again as soon as the last question has come back. Owned by the player factory; main
/// thread, which it never blocks.
class SoundServer final : public QObject {
    Q_OBJECT

public:
    /// How long the server may take to answer a question.
    static constexpr std::chrono::milliseconds answerLimit{1000};

    explicit SoundServer(MpvTeardownQueue& teardown);
    ~SoundServer() override;

    /// Whether players have to do without sound.
    [[nodiscard]] bool isSilent() const { return m_isSilent; }
    /// Asks the server, unless it is being asked.
    void suspect();

    /// Whether any player has had a working output.
    bool hasWorked = false;

Q_SIGNALS:
    void fellSilent();
    void answersAgain();

private:
    void ask(mpv_handle* handle);
    void answered();
    void setSilent(bool isSilent);

    MpvTeardownQueue& m_teardown;
    bool m_isSilent = false;
    bool m_isAsking = false;
    /// Runs while an answer is in time.
    QTimer m_limit;
    BackgroundThreads m_makers{1};
};

/// Detects that a player waits for its sound: mpv's core, which the sound output can block, does
/// not answer, or what is heard does not advance. Part of a player, which asks mpv for the position
/// of the sound at regular times. A plain value without a clock of its own.
class SoundWatch {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds checkInterval{500};
    /// A suspicion arises after this time without an answer or an advance. Together with the time
    /// for the server's own answer, a silent one is found out within some two seconds.
    static constexpr std::chrono::milliseconds limit{1000};

    void asked(TimePoint now);
    /// `position` is in seconds, nullopt without sound; it need not advance unless it is `expected`
    /// to.
    enum class Advance { expected, unexpected };
    void answered(std::optional<double> position, Advance advance, TimePoint now);
    [[nodiscard]] bool isSuspicious(TimePoint now) const;

private:
    std::optional<TimePoint> m_askedAt;
    std::optional<TimePoint> m_standsSince;
    std::optional<double> m_position;
};

} // namespace orvane
