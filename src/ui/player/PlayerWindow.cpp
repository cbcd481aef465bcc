// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/PlayerWindow.h"

#include "language/DirectedMenu.h"

#include "model/AppConstants.h"
#include "platform/windowing/EventMonitor.h"
#include "platform/windowing/FirstExposure.h"
#include "platform/windowing/FloatingWindowFactory.h"
#include "settings/Preferences.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "ui/AccessibleRole.h"
#include "ui/ApplicationActions.h"
#include "ui/menus/MenuRenderer.h"
#include "ui/player/PlayerContainerView.h"
#include "ui/window/DialogLevel.h"
#include "ui/window/EdgeResizer.h"
#include "ui/window/WindowDrag.h"
#include "ui/window/WindowGeometry.h"

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHideEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScreen>
#include <QShowEvent>
#include <QWindow>

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize aspectRatio(16, 9);
/// After a change of the screen's scale or the showing of the window, until its size and place are
/// what the window manager or the user chose.
constexpr std::chrono::milliseconds windowManagerTime{1000};
/// Points by which the actual size may differ from the one requested of the window manager.
constexpr int sizeTolerance = 2;

/// Whether two frames are the same but for rounding to pixels.
bool isSame(const QRectF& one, const QRectF& other) {
    const QPointF corners = one.topLeft() - other.topLeft();
    const QSizeF sizes = one.size() - other.size();
    return std::max({std::abs(corners.x()), std::abs(corners.y()), std::abs(sizes.width()),
                     std::abs(sizes.height())}) < 1;
}

/// Ignores the release of the click that opened a menu unless the pointer was dragged: a menu with
/// no space below the pointer opens under it, on a busy machine before the button is released, and
/// that release would choose an item.
class OpeningClickFilter final : public QObject {
public:
    OpeningClickFilter(QMenu* menu, QPoint pressPosition)
        : QObject(menu), m_pressPosition(pressPosition) {
        menu->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::MouseButtonPress &&
            event->type() != QEvent::MouseButtonRelease)
            return false;
        watched->removeEventFilter(this); // Later clicks are ordinary ones.
        const auto* click = static_cast<const QMouseEvent*>(event);
        const QPoint distance = click->globalPosition().toPoint() - m_pressPosition;
        return event->type() == QEvent::MouseButtonRelease &&
               distance.manhattanLength() < QApplication::startDragDistance();
    }

private:
    QPoint m_pressPosition;
};

} // namespace

PlayerWindow::PlayerWindow(const Collaborators& collaborators)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_with(collaborators),
      m_floating(makeFloatingWindow(*this)),
      m_containerView(new PlayerContainerView(m_with.state, m_with.player, m_with.actions,
                                              m_with.notifications, m_with.videoOutput, this)),
      m_dragEnd(*m_floating),
      m_ghostMode(*this, m_with.events) {
    setAccessibleRole(*this, QAccessible::Window);
    setWindowTitle(AppConstants::appName);
    setProperty(EventMonitor::shortcutWindow, true);
    setMinimumSize(smallestPlayerSize);
    // It is rarely the active window, as it does not take the keyboard focus when it is shown.
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowRole(u"player"_s);
    setWindowOpacity(m_with.preferences.usableWindowOpacity());
    placeFirst();

    m_scaling.setSingleShot(true);
    connect(&m_dragEnd, &DragEnd::over, this, [this] {
        m_scaling.start(windowManagerTime);
        m_frameBeforeScaling.reset();
        ensureOnScreen();
    });
    // A quick drag is over before its new scale is noticed.
    for (const WindowDrag* drag : findChildren<WindowDrag*>())
        connect(drag, &WindowDrag::started, this, [this] { m_frameBeforeScaling.reset(); });
    m_fade.setDuration(GhostMode::ghostFadeDuration);
    connect(&m_fade, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { setOpacity(value.toDouble()); });
    connect(&m_fade, &QAbstractAnimation::finished, this, &PlayerWindow::conceal);
    new DialogLevel(*this);
    auto* resizer = new EdgeResizer(this, [this](const QRectF& frame) {
        m_floating->setFrame(frame);
        m_floating->flush();
    });
    resizer->onResize([this] {
        m_programmaticSize.reset();
        updateSizeHints();
    });
    registerObservers();
    connect(&m_usableAreas, &UsableAreas::changed, this, &PlayerWindow::ensureOnScreen);
}

PlayerWindow::~PlayerWindow() = default;

void PlayerWindow::registerObservers() {
    m_observers.push_back(m_with.notifications.addObserver(AppNotification::toggleFullscreen,
                                                           [this] { toggleFullScreen(); }));
    m_observers.push_back(m_with.notifications.addObserver(AppNotification::windowOpacityChanged,
                                                           [this](double opacity) {
                                                               if (m_ghostMode.isHiddenByGhost())
                                                                   return;
                                                               m_fade.stop();
                                                               setOpacity(opacity);
                                                           }));
    m_observers.push_back(m_with.notifications.addObserver(
        AppNotification::staysAboveFullScreenChanged, [this] { updateLevel(); }));
    m_observers.push_back(m_with.notifications.addObserver(AppNotification::sessionLockChanged,
                                                           [this](bool isLocked) {
                                                               m_isSessionLocked = isLocked;
                                                               updateLevel();
                                                           }));
    m_observers.push_back(
        m_with.notifications.addObserver(AppNotification::ghostModeChanged, [this](bool isOn) {
            if (isOn)
                m_ghostMode.start();
            else
                m_ghostMode.stop();
        }));
}

void PlayerWindow::updateLevel() {
    // A lock screen may be an ordinary full-screen window.
    m_floating->setAboveFullScreen(!m_isSessionLocked && m_with.preferences.staysAboveFullScreen());
}

QRectF PlayerWindow::frame() const {
    if (isFullScreen())
        return m_frameBeforeFullScreen.value_or(normalGeometry());
    return m_floating->frame();
}

void PlayerWindow::placeFirst() {
    const QList<QRectF> areas = m_usableAreas.read();
    const QRectF frame = initialPlayerFrame(m_with.preferences.windowFrame(), areas);
    // The panels may come later, or tell of themselves later.
    if (frame == defaultPlayerFrame(areas.first()))
        m_defaultFrame = frame;
    setFrame(frame);
}

void PlayerWindow::setContentSize(const QSizeF& size) {
    if (isFullScreen())
        return;
    setFrame(resizedPlayerFrame(m_floating->frame(), size, m_usableAreas.read()));
    m_floating->flush();
}

void PlayerWindow::setFrame(const QRectF& frame) {
    m_size = frame.size().toSize();
    m_programmaticSize = m_size;
    updateSizeHints();
    m_floating->setFrame(frame);
}

void PlayerWindow::ensureOnScreen() {
    if (isFullScreen())
        return;
    const QRectF now = m_floating->frame();
    const QRectF whole = frameInView(now);
    if (whole == now)
        return;
    setFrame(whole);
    m_floating->flush();
}

QRectF PlayerWindow::frameInView(const QRectF& now) {
    if (screen()->devicePixelRatio() != m_scale) {
        m_scale = screen()->devicePixelRatio();
        m_dragEnd.start();
        m_scaling.start(windowManagerTime);
        // Until a new window is in its place, the window manager may have put it on another screen.
        if (m_sinceShown.hasExpired(windowManagerTime.count()))
            m_frameBeforeScaling.reset();
    }
    // Requests during a drag are ignored, or move the window away from the pointer.
    if (m_dragEnd.isWaiting())
        return now;
    const QList<QRectF> areas = m_usableAreas.read();
    if (isScaling()) {
        // Qt leaves the window at its size in pixels. From the same frame each time, as the usable
        // areas may follow the scale later.
        if (!m_frameBeforeScaling)
            m_frameBeforeScaling = now;
        return resizedPlayerFrame(*m_frameBeforeScaling, m_size, areas);
    }
    if (m_defaultFrame && isSame(now, *m_defaultFrame))
        return *(m_defaultFrame = defaultPlayerFrame(areas.first()));
    // Not every window manager brings a window into view, and some leave only a strip visible.
    return playerFrameInView(now, areas);
}

bool PlayerWindow::isScaling() const {
    return m_scaling.isActive() || m_dragEnd.isWaiting();
}

void PlayerWindow::updateSizeHints() {
    // The hints must allow the shape of a size set by the program, or window managers would change
    // it. The extra point covers their rounding.
    const QSize chosen = m_programmaticSize.value_or(aspectRatio);
    const bool isNarrower =
        chosen.width() * aspectRatio.height() < chosen.height() * aspectRatio.width();
    const bool isWider =
        chosen.width() * aspectRatio.height() > chosen.height() * aspectRatio.width();
    m_floating->setSizeHints(smallestPlayerSize, isNarrower ? chosen + QSize(0, 1) : aspectRatio,
                             isWider ? chosen + QSize(1, 0) : aspectRatio);
}

void PlayerWindow::present() {
    if (isMinimized()) {
        // Window managers give the focus to a window that is only restored, not to one that
        // appears.
        hide();
        setWindowState(windowState() & ~Qt::WindowMinimized);
    }
    show(); // Not raised: some window managers give the focus to a window that is.
}

void PlayerWindow::toggleFullScreen() {
    if (!isVisible())
        return;
    if (!isFullScreen())
        m_frameBeforeFullScreen = m_floating->frame();
    setWindowState(windowState() ^ Qt::WindowFullScreen);
    m_floating->flush();
}

void PlayerWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange)
        return;
    if (isMinimized() && m_floating->followsFullScreen())
        QMetaObject::invokeMethod(this, &PlayerWindow::present, Qt::QueuedConnection);
    m_with.state.setFullscreen(isFullScreen());
    m_containerView->fullScreenChanged();
    if (!isFullScreen())
        updateSizeHints();
}

void PlayerWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    m_with.preferences.setWindowFrame(frame());
    m_with.notifications.post(AppNotification::closePlayer);
}

void PlayerWindow::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new DirectedMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    renderMenuWithin(screen()->availableGeometry().height(), m_with.contextMenu(), m_with.actions,
                     *menu);
    if (event->reason() == QContextMenuEvent::Mouse)
        new OpeningClickFilter(menu, event->globalPos());
    menu->popup(event->globalPos());
}

void PlayerWindow::resizeEvent(QResizeEvent*) {
    m_containerView->setGeometry(rect());
    // A new scale of the screen shows itself as another size in points first.
    if (isFullScreen() || screen()->devicePixelRatio() != m_scale || isScaling())
        return;
    m_size = size();
    const QSize change = size() - m_programmaticSize.value_or(size());
    if (std::max(std::abs(change.width()), std::abs(change.height())) > sizeTolerance) {
        m_programmaticSize.reset();
        updateSizeHints();
    }
}

void PlayerWindow::setVisible(bool visible) {
    if (!visible && isVisible())
        m_floating->aboutToHide();
    QWidget::setVisible(visible);
}

void PlayerWindow::showEvent(QShowEvent* event) {
    if (event->spontaneous())
        return; // The window manager restores a window that it had hidden.
    // The user may drag it to a screen of another scale.
    connect(windowHandle(), &QWindow::screenChanged, this, &PlayerWindow::ensureOnScreen,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection));
    m_scale = screen()->devicePixelRatio();
    m_usableAreas.setWatched(true);
    m_floating->aboutToShow();
    m_frameBeforeScaling = m_floating->frame();
    m_sinceShown.start();
    QMetaObject::invokeMethod(this, [this] { m_floating->shown(); }, Qt::QueuedConnection);
    new FirstExposure(windowHandle(), [this] { m_floating->appeared(); });
    updateLevel();
    m_with.state.setPlayerShown(true);
}

void PlayerWindow::hideEvent(QHideEvent* event) {
    // A window that the window manager hides, on another workspace for example, is still open.
    if (event->spontaneous())
        return;
    m_usableAreas.setWatched(false);
    m_with.state.setPlayerShown(false);
    if (isFullScreen()) {
        const QRectF frameToOpenIn = frame();
        setWindowState(windowState() & ~Qt::WindowFullScreen);
        setFrame(frameToOpenIn);
    }
}

// Ghost mode

QRectF PlayerWindow::frameOnScreen() const {
    // Where it is to return to, as it may be elsewhere while it has vanished.
    return m_ghostMode.isHiddenByGhost() ? m_floating->frame() : QRectF(geometry());
}

void PlayerWindow::setIgnoresMouseEvents(bool ignores) {
    m_floating->setAcceptsPointer(!ignores);
}

void PlayerWindow::setOpacity(double opacity) {
    setWindowOpacity(opacity);
    m_floating->flush();
}

void PlayerWindow::fadeTo(double opacity) {
    m_fade.stop();
    m_fade.setStartValue(windowOpacity());
    m_fade.setEndValue(opacity);
    m_fade.start();
}

void PlayerWindow::fadeOut() {
    fadeTo(0);
}

void PlayerWindow::fadeIn() {
    m_floating->setVanished(false);
    m_containerView->show();
    fadeTo(m_with.preferences.usableWindowOpacity());
}

void PlayerWindow::conceal() {
    if (!m_ghostMode.isHiddenByGhost())
        return;
    // An invisible window needs no painting, and without support for opacity it must not be
    // painted.
    m_containerView->hide();
    m_floating->setVanished(true);
}

void PlayerWindow::keepHidden() {
    if (m_fade.state() == QAbstractAnimation::Stopped)
        conceal();
}

} // namespace orvane
