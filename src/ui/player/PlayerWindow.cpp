// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/PlayerWindow.h"

#include "model/AppConstants.h"
#include "platform/windowing/FloatingWindowFactory.h"
#include "settings/Preferences.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "ui/ApplicationActions.h"
#include "ui/menus/MenuRenderer.h"
#include "ui/player/PlayerContainerView.h"
#include "ui/window/EdgeResizer.h"
#include "ui/window/WindowGeometry.h"

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QScreen>
#include <QShowEvent>

#include <algorithm>
#include <cstdlib>

namespace orvane {

namespace {

constexpr QSize ratio(16, 9);
/// Points by which a window manager may miss a size that it was asked for.
constexpr int rounding = 2;

QList<QRectF> usableAreas() {
    QList<QRectF> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

/// A menu that finds no room below the pointer opens under it, and on a busy machine before the
/// button that opened it is released. That release chooses nothing, unless the pointer was dragged
/// to what it chooses.
class OpeningClick final : public QObject {
public:
    OpeningClick(QMenu* menu, QPoint place) : QObject(menu), m_place(place) {
        menu->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::MouseButtonPress &&
            event->type() != QEvent::MouseButtonRelease)
            return false;
        watched->removeEventFilter(this); // What comes later is a click of its own.
        const auto* click = static_cast<const QMouseEvent*>(event);
        const QPoint way = click->globalPosition().toPoint() - m_place;
        return event->type() == QEvent::MouseButtonRelease &&
               way.manhattanLength() < QApplication::startDragDistance();
    }

private:
    QPoint m_place;
};

} // namespace

PlayerWindow::PlayerWindow(const Collaborators& collaborators)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_with(collaborators),
      m_floating(makeFloatingWindow(*this)),
      m_containerView(new PlayerContainerView(m_with.state, m_with.player, m_with.actions,
                                              m_with.notifications, m_with.videoOutput, this)),
      m_ghostMode(*this, m_with.events) {
    setWindowTitle(AppConstants::appName);
    setMinimumSize(smallestPlayerSize);
    setWindowOpacity(m_with.preferences.windowOpacity());
    setFrame(initialPlayerFrame(m_with.preferences.windowFrame(), usableAreas()));

    m_fade.setDuration(GhostMode::ghostFadeDuration);
    connect(&m_fade, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { setOpacity(value.toDouble()); });
    connect(&m_fade, &QAbstractAnimation::finished, this, &PlayerWindow::conceal);
    auto* resizer = new EdgeResizer(this);
    resizer->onResize([this] {
        m_sizeByProgram.reset();
        keepShape();
    });
    registerObservers();
    followScreens();
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
    m_observers.push_back(
        m_with.notifications.addObserver(AppNotification::ghostModeChanged, [this](bool isOn) {
            if (isOn)
                m_ghostMode.start();
            else
                m_ghostMode.stop();
        }));
}

QRectF PlayerWindow::frame() const {
    if (isFullScreen())
        return m_frameBeforeFullScreen.value_or(normalGeometry());
    return m_floating->frame();
}

void PlayerWindow::setContentSize(const QSizeF& size) {
    if (isFullScreen())
        return;
    setFrame(resizedPlayerFrame(m_floating->frame(), size, usableAreas()));
    m_floating->flush();
}

void PlayerWindow::setFrame(const QRectF& frame) {
    m_sizeByProgram = frame.size().toSize();
    keepShape();
    m_floating->setFrame(frame);
}

void PlayerWindow::followScreens() {
    // Later, because the list of screens may still be the old one.
    const auto watch = [this](const QScreen* screen) {
        connect(screen, &QScreen::geometryChanged, this, &PlayerWindow::comeIntoView,
                Qt::QueuedConnection);
    };
    for (const QScreen* screen : QGuiApplication::screens())
        watch(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, watch);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &PlayerWindow::comeIntoView,
            Qt::QueuedConnection);
}

void PlayerWindow::comeIntoView() {
    // Not every window manager does it, and some are content with a strip of the window.
    if (isFullScreen())
        return;
    const QRectF now = m_floating->frame();
    const QRectF whole = playerFrameInView(now, usableAreas());
    if (whole == now)
        return;
    setFrame(whole);
    m_floating->flush();
}

void PlayerWindow::keepShape() {
    // A size that the program chose is of a good shape too, or window managers would bend it; one
    // point more, because of the rounding in theirs.
    const QSize chosen = m_sizeByProgram.value_or(ratio);
    const bool isNarrower = chosen.width() * ratio.height() < chosen.height() * ratio.width();
    const bool isWider = chosen.width() * ratio.height() > chosen.height() * ratio.width();
    m_floating->setSizeHints(smallestPlayerSize, isNarrower ? chosen + QSize(0, 1) : ratio,
                             isWider ? chosen + QSize(1, 0) : ratio);
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
    m_with.state.setFullscreen(isFullScreen());
    m_containerView->updateCursor();
    if (!isFullScreen())
        keepShape();
}

void PlayerWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    m_with.preferences.setWindowFrame(frame());
    m_with.notifications.post(AppNotification::closePlayer);
}

void PlayerWindow::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    renderMenu(m_with.contextMenu(), m_with.actions, *menu);
    if (event->reason() == QContextMenuEvent::Mouse)
        new OpeningClick(menu, event->globalPos());
    menu->popup(event->globalPos());
}

void PlayerWindow::resizeEvent(QResizeEvent*) {
    m_containerView->setGeometry(rect());
    if (!m_sizeByProgram || isFullScreen())
        return;
    const QSize change = size() - *m_sizeByProgram;
    if (std::max(std::abs(change.width()), std::abs(change.height())) > rounding) {
        m_sizeByProgram.reset();
        keepShape();
    }
}

void PlayerWindow::showEvent(QShowEvent* event) {
    if (event->spontaneous())
        return; // The window manager has brought back what it had hidden itself.
    m_floating->aboutToShow();
    QMetaObject::invokeMethod(this, [this] { m_floating->shown(); }, Qt::QueuedConnection);
}

// Ghost mode

QRectF PlayerWindow::frameOnScreen() const {
    return geometry();
}

void PlayerWindow::setIgnoresMouseEvents(bool ignores) {
    using enum FloatingWindow::InputArea;
    if (!ignores)
        m_floating->setInputArea(everywhere, 0);
    else if (m_floating->concealment() == FloatingWindow::Concealment::noContent)
        m_floating->setInputArea(ring, GhostMode::ghostPadding);
    else
        m_floating->setInputArea(nowhere, 0);
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
    m_floating->setShapeEmpty(false);
    m_containerView->show();
    fadeTo(m_with.preferences.windowOpacity());
}

void PlayerWindow::conceal() {
    if (!m_ghostMode.isHiddenByGhost())
        return;
    // Nobody sees it, so nothing has to be painted; and where the desktop knows no opacity, nothing
    // must be.
    m_containerView->hide();
    if (m_floating->concealment() == FloatingWindow::Concealment::emptyShape)
        m_floating->setShapeEmpty(true);
}

void PlayerWindow::keepHidden() {
    if (m_fade.state() == QAbstractAnimation::Stopped)
        conceal();
}

} // namespace orvane
