// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>

namespace orvane {

/// A busy indicator: a ring of fading spokes that turns while it is visible and is hidden when
/// stopped. Uses no CPU time while hidden. Main thread.
class Spinner final : public QWidget {
    Q_OBJECT

public:
    /// Without a valid colour it has that of the palette's text.
    explicit Spinner(const QColor& color, QWidget* parent = nullptr);

    void start();
    void stop();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QColor m_color;
    QTimer m_timer;
    int m_step = 0;
};

} // namespace orvane
