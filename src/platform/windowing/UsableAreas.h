// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QRectF>
#include <QScreen>

#include <memory>

namespace orvane {

class SwayWorkspaces;
class X11Panels;

/// What panels leave of the screens. Qt knows it where the window manager announces it and there is
/// one screen; elsewhere the panels themselves tell, or sway. Owned by the window that keeps within
/// it; main thread, which it never blocks. Unknown panels count as none.
class UsableAreas final : public QObject {
    Q_OBJECT

public:
    UsableAreas();
    ~UsableAreas() override;

    /// Returns one for each screen, the primary first; points in desktop coordinates, y downwards.
    [[nodiscard]] QList<QRectF> read();

    /// Whether `changed` is wanted at a price, while the window is open; off at first.
    void setWatched(bool isWatched);

Q_SIGNALS:
    /// The screens, their scales or what is usable of them may have changed.
    void changed();

private:
    void follow(const QScreen* screen);
    [[nodiscard]] QRectF usable(const QScreen& screen);

    std::unique_ptr<SwayWorkspaces> m_sway;
    /// Once they are needed.
    std::unique_ptr<X11Panels> m_panels;
};

} // namespace orvane
