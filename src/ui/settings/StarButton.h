// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>

namespace orvane {

/// A check box in the shape of a star, filled while checked. Main thread. The owner sets the tool
/// tip and the accessible name.
class StarButton final : public QAbstractButton {
    Q_OBJECT

public:
    explicit StarButton(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace orvane
