// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QWidget>

namespace orvane {

/// A coloured background with rounded corners. Main thread.
class RoundedBox final : public QWidget {
    Q_OBJECT

public:
    /// Lengths are pixels; an invalid `border` draws none.
    struct Look {
        QColor background;
        double radius = 0;
        QColor border = {};
    };

    explicit RoundedBox(const Look& look, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Look m_look;
};

} // namespace orvane
