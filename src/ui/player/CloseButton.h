// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/CachedPixmap.h"

#include <QAbstractButton>

namespace orvane {

/// The small round button that stands in for the one of a title bar. Dimmed while the pointer is
/// elsewhere. Part of the player window; main thread.
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
