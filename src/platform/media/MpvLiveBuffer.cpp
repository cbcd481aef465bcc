// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/MpvLiveBuffer.h"

#include "base/Logging.h"
#include "platform/media/MpvInstance.h"

#include <QFuture>
#include <QStandardPaths>

#include <mpv/client.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using BufferPolicy::Seconds;

namespace {

constexpr std::chrono::milliseconds pollInterval{1000};
constexpr std::chrono::milliseconds cutInterval{5000};
/// What has arrived so long before the oldest part that is kept is cut out: more than the player
/// needs to forget it.
constexpr Seconds cutMargin{20};
/// A viewer who is nearly as far back as can be stays there.
constexpr Seconds leastStep{1};
/// The next step of a viewer who pauses for too long.
constexpr Seconds catchUp{10};
/// Longer than the time between two polls.
constexpr Seconds timeToForget{1.5};
/// Until it is known: a picture and sound have some 70 packets a second.
constexpr double usualRate = 24'000;
/// A limit is set anew when it has changed by this share.
constexpr double notableChange = 0.03;
/// The limit counts for each of two files alone, and sound has more packets than a picture.
constexpr double shareOfSound = 2.5;
/// Some seconds of a picture, if they are in memory.
constexpr std::int64_t bytesForPicture = 8 << 20;

enum BufferReply : std::uint64_t { positionReply = 100, cacheReply };

std::chrono::milliseconds inMilliseconds(Seconds time) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(time);
}

/// A map that libmpv has answered with.
class NodeMap {
public:
    explicit NodeMap(const mpv_node* node)
        : m_list(node != nullptr && node->format == MPV_FORMAT_NODE_MAP ? node->u.list : nullptr) {}

    [[nodiscard]] const mpv_node* find(std::string_view key) const {
        for (int i = 0; m_list != nullptr && i < m_list->num; ++i) {
            if (key == m_list->keys[i])
                return &m_list->values[i];
        }
        return nullptr;
    }

    [[nodiscard]] std::optional<double> number(std::string_view key) const {
        const mpv_node* node = find(key);
        if (node == nullptr)
            return std::nullopt;
        if (node->format == MPV_FORMAT_DOUBLE)
            return node->u.double_;
        if (node->format == MPV_FORMAT_INT64)
            return double(node->u.int64);
        return std::nullopt;
    }

private:
    const mpv_node_list* m_list;
};

/// Returns the first key frame that is kept. There is one range, as live streams are only read on.
std::optional<double> beginningOf(const mpv_node* ranges) {
    if (ranges == nullptr || ranges->format != MPV_FORMAT_NODE_ARRAY || ranges->u.list->num == 0)
        return std::nullopt;
    return NodeMap(&ranges->u.list->values[0]).number("start");
}

} // namespace

MpvLiveBuffer::MpvLiveBuffer(const MpvInstance& instance, BackgroundThreads& disk)
    : m_instance(instance), m_threads(disk) {
    m_pollTimer.setInterval(pollInterval);
    connect(&m_pollTimer, &QTimer::timeout, this, &MpvLiveBuffer::poll);
    m_cutTimer.setInterval(cutInterval);
    connect(&m_cutTimer, &QTimer::timeout, this, &MpvLiveBuffer::cut);
}

MpvLiveBuffer::~MpvLiveBuffer() {
    // Its end waits for the disk.
    if (m_file)
        m_threads.start([file = std::move(m_file)]() mutable { file.reset(); });
}

void MpvLiveBuffer::setLength(std::chrono::minutes length) {
    m_length = length;
    updateDisk();
}

void MpvLiveBuffer::start() {
    m_isStarted = true;
    m_pollTimer.start();
    updateDisk();
}

void MpvLiveBuffer::restart() {
    m_edge = {};
    m_held = {};
    m_position.reset();
    announce();
}

void MpvLiveBuffer::stop() {
    m_isStarted = false;
    m_pollTimer.stop();
    m_cutTimer.stop();
}

void MpvLiveBuffer::setPaused(bool isPaused) {
    m_isPaused = isPaused;
    if (isPaused)
        m_edge.pause();
}

void MpvLiveBuffer::setPicture(MediaPlayer::Picture picture) {
    m_picture = picture;
    adjust();
}

void MpvLiveBuffer::poll() {
    if (!m_isStarted)
        return;
    const bool hasPicture = m_picture == MediaPlayer::Picture::shown;
    m_instance.requestNumber(hasPicture ? "time-pos" : "audio-pts", positionReply);
    m_instance.requestNode("demuxer-cache-state", cacheReply);
}

bool MpvLiveBuffer::handleReply(const mpv_event& reply) {
    if (reply.reply_userdata != positionReply && reply.reply_userdata != cacheReply)
        return false;
    if (reply.reply_userdata == positionReply) {
        m_position = MpvInstance::numberIn(reply);
        return true;
    }
    const auto* property = static_cast<const mpv_event_property*>(reply.data);
    const bool isAnswer = reply.error >= 0 && property->data != nullptr;
    const NodeMap state(isAnswer ? static_cast<const mpv_node*>(property->data) : nullptr);
    const std::optional<double> end = state.number("cache-end");
    if (!m_position || !end)
        return true;
    const std::optional<double> start = beginningOf(state.find("seekable-ranges"));
    m_held = {.span = Seconds(start ? *end - *start : 0),
              .bytes = std::int64_t(state.number("total-bytes").value_or(0))};
    m_edge.sampled(
        {.position = *m_position, .start = start, .end = *end, .isAdvancing = m_isAdvancing},
        LiveEdge::TimePoint::clock::now());
    sampled();
    return true;
}

void MpvLiveBuffer::sampled() {
    if (const std::optional<double> rate = BufferPolicy::rateOf(m_held))
        m_rate = rate;
    adjust();
    keepUp();
    announce();
}

void MpvLiveBuffer::announce() {
    const MediaPlayer::LivePosition now = position();
    if (now == std::exchange(m_announced, now))
        return;
    Q_EMIT positionChanged();
}

Seconds MpvLiveBuffer::keptTime() const {
    if (m_disk != Disk::used || !m_hasRoom)
        return Seconds(0);
    return BufferPolicy::keptTime(m_length, m_usage, m_held.span);
}

void MpvLiveBuffer::adjust() {
    const double rate = m_rate.value_or(usualRate) * (m_comesApart ? shareOfSound : 1);
    // Whoever is behind goes to live with all of it: what lies ahead is not taken off. What lies
    // before a break is dropped at once, as a tight limit would not let a new range begin.
    const bool isPastBreak = m_edge.sinceBreak().value_or(Seconds::max()) < timeToForget;
    const Seconds reach = isPastBreak ? Seconds(0) : keptTime();
    const std::int64_t kept = BufferPolicy::bytesBefore(reach, rate);
    const std::int64_t least = m_picture == MediaPlayer::Picture::shown ? 0 : bytesForPicture;
    const std::int64_t bytes = std::max(kept, least);
    if (std::abs(double(bytes - m_bytesBefore)) <= notableChange * double(m_bytesBefore))
        return;
    m_bytesBefore = bytes;
    m_instance.command(
        {"set", "demuxer-max-back-bytes", QByteArray::number(qint64(bytes)).constData()});
}

void MpvLiveBuffer::keepUp() {
    const Seconds kept = keptTime();
    if (m_disk != Disk::used || m_edge.behind() <= kept)
        return;
    const Seconds least = std::max(kept - catchUp, Seconds(0));
    if (const std::optional<double> place = m_edge.placeBack(least - m_edge.behind()))
        goTo(*place);
}

MediaPlayer::LivePosition MpvLiveBuffer::position() const {
    return {.behind = inMilliseconds(m_edge.behind()),
            .canGoBack = m_edge.kept() > Seconds(0) && keptTime() > m_edge.behind()};
}

bool MpvLiveBuffer::goBack(std::chrono::milliseconds distance) {
    // Of what libmpv still knows, the oldest part may be cut out of its files already.
    const Seconds limit = std::max(keptTime() - m_edge.behind(), Seconds(0));
    if (distance > 0ms && limit < leastStep)
        return false;
    const std::optional<double> place = m_edge.placeBack(std::min(Seconds(distance), limit));
    if (place)
        goTo(*place);
    return place.has_value();
}

bool MpvLiveBuffer::goLive() {
    if (m_edge.isLive())
        return true;
    const std::optional<double> place = m_edge.placeOfLive();
    if (place)
        goTo(*place);
    return place.has_value();
}

void MpvLiveBuffer::goTo(double place) {
    m_edge.jumped(place);
    m_instance.seek(place);
    announce();
}

void MpvLiveBuffer::updateDisk() {
    if (m_disk != Disk::unused || !m_isStarted || m_length == 0min)
        return;
    m_disk = Disk::asked;
    const QString parent =
        QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + u"/orvane"_s;
    m_file = std::make_shared<BufferFile>(parent.toStdString());
    m_threads.run([file = m_file] { return file->prepare(); })
        .then(this, [this](std::optional<BufferPolicy::Disk> disk) { useDisk(disk); });
}

void MpvLiveBuffer::useDisk(std::optional<BufferPolicy::Disk> disk) {
    m_hasRoom = disk && BufferPolicy::hasRoom(*disk, BufferPolicy::Presence::absent);
    if (!m_hasRoom) {
        qCInfo(logPlayer, "No disk for the last minutes of the stream");
        m_disk = Disk::without;
        return;
    }
    m_disk = Disk::used;
    m_usage = *disk;
    const QByteArray folder = QByteArray::fromStdString(m_file->folder());
    // What is not used of the list ahead would be added to the limit of the one behind.
    m_instance.command({"set", "demuxer-donate-buffer", "no"});
    // Its name until mpv 0.36, and since.
    m_instance.command({"set", "cache-dir", folder.constData()});
    m_instance.command({"set", "demuxer-cache-dir", folder.constData()});
    m_instance.command({"set", "cache-on-disk", "yes"});
    adjust();
    m_cutTimer.start();
}

void MpvLiveBuffer::cut() {
    if (std::exchange(m_isCutting, true))
        return;
    const BufferFile::TimePoint now = BufferFile::TimePoint::clock::now();
    const Seconds kept = std::max(keptTime(), m_edge.behind()) + m_edge.lead() + cutMargin;
    const auto before = now - std::chrono::ceil<BufferFile::TimePoint::duration>(kept);
    m_threads.run([file = m_file, before, now] { return file->cutBefore(before, now); })
        .then(this, [this](const BufferPolicy::Disk& disk) { cutDone(disk); });
}

void MpvLiveBuffer::cutDone(const BufferPolicy::Disk& disk) {
    m_isCutting = false;
    m_usage = disk;
    const bool hasRoom = BufferPolicy::hasRoom(disk, m_hasRoom ? BufferPolicy::Presence::present
                                                               : BufferPolicy::Presence::absent);
    if (hasRoom == std::exchange(m_hasRoom, hasRoom))
        return;
    qCInfo(logPlayer, "The disk has %s for the last minutes of the stream",
           hasRoom ? "room again" : "no room any more");
    adjust();
    announce();
}

} // namespace orvane
