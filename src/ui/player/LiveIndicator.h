// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/CachedPixmap.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <chrono>

namespace orvane {

/// A red dot that pulses once a second, starting one second after it is shown. Uses no CPU time
/// while hidden. Part of the control bar; main thread.
class LiveIndicator final : public QWidget {
    Q_OBJECT

public:
    explicit LiveIndicator(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QTimer m_pulseTimer;
    QElapsedTimer m_shownFor;
    CachedPixmap m_dot;
};

/// Returns an opacity from 0.3 to 1; `shownFor` is the time since the dot was shown.
[[nodiscard]] double pulseOpacity(std::chrono::milliseconds shownFor);

} // namespace orvane
