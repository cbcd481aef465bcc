// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/media/MpvInstance.h"
#include "platform/media/SoundServer.h"

#include <QObject>
#include <QTimer>

#include <string_view>

struct mpv_event;

namespace orvane {

/// The way of a player's sound to an output of the machine: it tries again an output that has been
/// lost, and finds out that the sound server does not answer, which would hold up the picture too.
/// Owned by the player, which tells it what happens; main thread.
class MpvSound final : public QObject {
    Q_OBJECT

public:
    /// `sound` is what the instance was made with. Both objects outlive it.
    MpvSound(const MpvInstance& instance, MpvInstance::Sound sound, SoundServer& server);

    /// The stream is being opened; a server that does not answer may hold that up.
    void opening();
    void opened() { m_isOpening = false; }
    void stop();
    void setWanted(bool isWanted) { m_isWanted = isWanted; }
    void setAdvancing(bool isAdvancing) { m_isAdvancing = isAdvancing; }
    /// `name` is mpv's name of the current output.
    void setOutput(std::string_view name);
    /// Takes the answer if it is one to a question of this object; returns whether it was.
    [[nodiscard]] bool handleReply(const mpv_event& reply);

    /// Whether the end of the instance may take as long as the server likes.
    [[nodiscard]] bool mayHang() const;

Q_SIGNALS:
    /// The player has to be replaced by one without sound.
    void lost();

private:
    void check();
    void lose();
    void regain();

    const MpvInstance& m_instance;
    SoundServer& m_server;
    MpvInstance::Sound m_sound;
    SoundWatch m_watch;
    QTimer m_checkTimer;
    /// Runs while the output is lost.
    QTimer m_retryTimer;
    /// Whether sound goes to an output of the machine.
    bool m_isHeard = false;
    bool m_isOpening = false;
    bool m_isWanted = false;
    bool m_isAdvancing = false;
};

} // namespace orvane
