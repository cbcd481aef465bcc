// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include <atomic>

struct mpv_handle;

namespace orvane {

/// What the media library's network and demuxing layers warn of. They report to one handle of a
/// process only, the first, and to nobody once that has gone; so this keeps a handle that does
/// nothing but listen, and must be made before any other. Lines of players that are being taken
/// apart are heard too. Owned by the player factory; main thread.
class MpvLog final : public QObject {
    Q_OBJECT

public:
    MpvLog();
    ~MpvLog() override;

    /// Emits at once what has been said so far: an event of another handle may overtake the lines
    /// that explain it.
    void drain();

Q_SIGNALS:
    void line(const QString& text);

private:
    mpv_handle* m_handle;
    std::atomic_bool m_isAnnounced = false;
};

} // namespace orvane
