// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/CachedPixmap.h"

#include <QAbstractButton>

namespace orvane {

/// The small round close button of a window without a title bar. Dimmed unless the pointer is over
/// it. Part of the player window; main thread.
class CloseButton final : public QAbstractButton {
    Q_OBJECT

public:
    explicit CloseButton(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void draw(QPainter& painter) const;

    CachedPixmap m_picture;
};

} // namespace orvane
