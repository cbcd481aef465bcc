// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>

namespace orvane {

/// A star that is full while it is checked. Main thread. Whoever makes it gives it a tool tip and
/// an accessible name.
class StarButton final : public QAbstractButton {
    Q_OBJECT

public:
    explicit StarButton(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace orvane
