// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DeferredCall.h"

#include <QObject>
#include <QString>

struct mpv_handle;

namespace orvane {

/// The warnings of mpv's network and demuxer code. That code reports to one handle per process, the
/// first one created, and to none once that is destroyed. So this class has a handle that only
/// receives log lines, and must be created before any other. Lines of players that are being
/// destroyed arrive here too. Owned by the player factory; main thread.
class MpvLog final : public QObject {
    Q_OBJECT

public:
    MpvLog();
    ~MpvLog() override;

    /// Emits the pending lines now: an event of another handle may arrive before the lines that
    /// explain it.
    void drain();

Q_SIGNALS:
    void line(const QString& text);

private:
    mpv_handle* m_handle;
    DeferredCall m_linesArrived{[this] { drain(); }};
};

} // namespace orvane
