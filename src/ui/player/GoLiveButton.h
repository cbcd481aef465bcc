// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/CachedPixmap.h"

#include <QAbstractButton>
#include <QString>

#include <chrono>

namespace orvane {

/// Shows how far behind live the picture is, such as "−0:40", and goes to live when it is clicked.
/// Lies over the live dot, which it does not cover, so that the dot can be clicked too. Part of the
/// control bar, which shows it while there is something to show; main thread.
class GoLiveButton final : public QAbstractButton {
    Q_OBJECT

public:
    /// `textLeft` is where the text begins, in the button.
    GoLiveButton(int textLeft, QWidget* parent);

    void setBehind(std::chrono::milliseconds behind);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_textLeft;
    CachedPixmap m_figure;
};

/// Returns the time as minutes and seconds, or with hours, such as "0:40".
[[nodiscard]] QString clockTime(std::chrono::milliseconds time);

} // namespace orvane
