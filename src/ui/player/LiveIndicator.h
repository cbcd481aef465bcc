// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/CachedPixmap.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <chrono>

namespace orvane {

/// A red dot that pulses once a second, starting one second after it is shown; a grey one that
/// stands still while what is shown is not live. Uses no CPU time while hidden. Part of the control
/// bar; main thread.
class LiveIndicator final : public QWidget {
    Q_OBJECT

public:
    explicit LiveIndicator(QWidget* parent = nullptr);

    void setLive(bool isLive);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void pulse();

    QTimer m_pulseTimer;
    QElapsedTimer m_shownFor;
    CachedPixmap m_dot;
    bool m_isLive = true;
};

/// Returns an opacity from 0.3 to 1; `shownFor` is the time since the dot was shown.
[[nodiscard]] double pulseOpacity(std::chrono::milliseconds shownFor);

} // namespace orvane
