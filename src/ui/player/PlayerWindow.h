// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"
#include "platform/media/view/VideoOutput.h"
#include "platform/windowing/UsableAreas.h"
#include "ui/menus/Menu.h"
#include "ui/window/DragEnd.h"
#include "ui/window/GhostMode.h"

#include <QElapsedTimer>
#include <QRectF>
#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace orvane {

class AppState;
class ApplicationActions;
class FloatingWindow;
class PlayerContainerView;
class PlayerCommands;
class Preferences;

/// The small floating window that shows the channel. Created by the application controller on first
/// use and kept; main thread. Closing it only posts `closePlayer`; the controller then hides it.
class PlayerWindow final : public QWidget, private GhostMode::Window {
    Q_OBJECT

public:
    /// All references outlive the window. `videoOutput` is not `automatic`.
    struct Collaborators {
        Preferences& preferences;
        AppState& state;
        PlayerCommands& player;
        NotificationCenter& notifications;
        EventMonitor& events;
        ApplicationActions& actions;
        /// Builds the context menu from the current state.
        std::function<Menu()> contextMenu;
        VideoOutput videoOutput;
    };

    explicit PlayerWindow(const Collaborators& collaborators);
    ~PlayerWindow() override;

    [[nodiscard]] PlayerContainerView& containerView() const { return *m_containerView; }

    /// Points in desktop coordinates, y downwards; in full screen the frame before full screen.
    [[nodiscard]] QRectF frame() const;

    /// Points. The corner nearest to a corner of the screen stays in place. Ignored in full screen.
    void setContentSize(const QSizeF& size);

    /// Shows the window, or restores it if a window manager has minimised it, without giving it the
    /// keyboard focus.
    void present();

    void toggleFullScreen();

    void setVisible(bool visible) override;

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void registerObservers();
    void placeFirst();
    void setFrame(const QRectF& frame);
    void ensureOnScreen();
    [[nodiscard]] QRectF frameInView(const QRectF& now);
    [[nodiscard]] bool isScaling() const;
    void updateSizeHints();
    void updateLevel();
    void setOpacity(double opacity);
    void fadeTo(double opacity);
    void conceal();

    [[nodiscard]] QRectF frameOnScreen() const override;
    void setIgnoresMouseEvents(bool ignores) override;
    void fadeOut() override;
    void fadeIn() override;
    void keepHidden() override;

    Collaborators m_with;
    UsableAreas m_usableAreas;
    std::unique_ptr<FloatingWindow> m_floating;
    PlayerContainerView* m_containerView;
    /// The size that the program has set, until the user resizes the window.
    std::optional<QSize> m_programmaticSize;
    /// Its last size outside full screen, in points, and the pixels per point at that time.
    QSize m_size;
    double m_scale = 1;
    /// Runs from a change of scale until the window should have its size in points again.
    QTimer m_scaling{this};
    /// In points of the new scale; missing until it is known.
    std::optional<QRectF> m_frameBeforeScaling;
    DragEnd m_dragEnd;
    QElapsedTimer m_sinceShown;
    std::optional<QRectF> m_frameBeforeFullScreen;
    /// Where the first start has put the window, until it is elsewhere.
    std::optional<QRectF> m_defaultFrame;
    bool m_isSessionLocked = false;
    QVariantAnimation m_fade;
    GhostMode m_ghostMode;
    std::vector<NotificationCenter::Token> m_observers;
};

} // namespace orvane
