// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/BackgroundThreads.h"
#include "platform/media/MediaPlayer.h"
#include "platform/media/live/BufferFile.h"
#include "platform/media/live/BufferPolicy.h"
#include "platform/media/live/LiveEdge.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

struct mpv_event;

namespace orvane {

class MpvInstance;

/// Keeps the last minutes of a player's stream on the disk, and moves in them. It watches where the
/// position and the edge are, has libmpv forget what is too old, and has that cut out of libmpv's
/// files by jobs on another thread. Owned by the player, which passes the answers on; main thread.
/// Without a disk that can keep it the stream simply has no buffer.
class MpvLiveBuffer final : public QObject {
    Q_OBJECT

public:
    /// Both outlive it.
    MpvLiveBuffer(const MpvInstance& instance, BackgroundThreads& disk);
    ~MpvLiveBuffer() override;

    /// How much is kept; zero for nothing. Counts at once.
    void setLength(std::chrono::minutes length);
    /// The stream plays: only now its buffer may use the disk.
    void start();
    /// Picture and sound come from two addresses.
    void expectBoth() { m_comesApart = true; }
    /// It has been opened again.
    void restart();
    void stop();

    void setPaused(bool isPaused);
    void setAdvancing(bool isAdvancing) { m_isAdvancing = isAdvancing; }
    /// Without a picture the sound is what goes on, and the frames before it are kept in any case,
    /// for the picture to come back.
    void setPicture(MediaPlayer::Picture picture);
    /// Asks for the position; soon after a jump, for example.
    void poll();
    /// Takes the answer if it is one to a question of this object; returns whether it was.
    [[nodiscard]] bool handleReply(const mpv_event& reply);

    [[nodiscard]] MediaPlayer::LivePosition position() const;
    /// Returns whether there is anything to go back to.
    [[nodiscard]] bool goBack(std::chrono::milliseconds distance);
    /// Returns whether live could be reached. If not, the stream has to be opened again.
    [[nodiscard]] bool goLive();

Q_SIGNALS:
    void positionChanged();

private:
    enum class Disk { unused, asked, used, without };

    void goTo(double place);
    void sampled();
    void announce();
    void adjust();
    /// Moves the viewer on who is further behind than is kept.
    void keepUp();
    void updateDisk();
    void useDisk(std::optional<BufferPolicy::Disk> disk);
    void cut();
    void cutDone(const BufferPolicy::Disk& disk);
    [[nodiscard]] BufferPolicy::Seconds keptTime() const;

    const MpvInstance& m_instance;
    BackgroundThreads& m_threads;
    MediaPlayer::Picture m_picture = MediaPlayer::Picture::shown;
    QTimer m_pollTimer;
    QTimer m_cutTimer;
    LiveEdge m_edge;
    MediaPlayer::LivePosition m_announced;
    std::chrono::minutes m_length{};
    /// Shared with the job that uses it.
    std::shared_ptr<BufferFile> m_file;
    Disk m_disk = Disk::unused;
    bool m_isStarted = false;
    bool m_comesApart = false;
    bool m_isCutting = false;
    bool m_hasRoom = true;
    BufferPolicy::Disk m_usage;
    BufferPolicy::Holding m_held{};
    std::optional<double> m_rate;
    std::int64_t m_bytesBefore = 0;
    std::optional<double> m_position;
    std::optional<LiveEdge::Sample> m_sample;
    bool m_isPaused = false;
    bool m_isAdvancing = false;
};

} // namespace orvane
