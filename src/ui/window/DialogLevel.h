// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QWidget>

namespace orvane {

/// Keeps the program's dialogs above the windows of other programs only while they overlap the
/// player window, which would hide them otherwise. Owned by the player window; main thread.
class DialogLevel final : public QObject {
    Q_OBJECT

public:
    explicit DialogLevel(QWidget& player);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool isDialog(const QWidget& window) const;
    void applyToAll() const;
    void apply(QWidget& dialog) const;

    QWidget& m_player;
};

} // namespace orvane
