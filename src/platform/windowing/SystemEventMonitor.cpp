// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/SystemEventMonitor.h"

#include "platform/windowing/X11PointerFence.h"
#include "platform/windowing/x11/X11.h"
#include "platform/windowing/x11/X11Geometry.h"
#include "platform/windowing/x11/X11Keyboard.h"
#include "platform/windowing/x11/X11RawInput.h"
#include "platform/windowing/x11/X11RawKeys.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QKeyEvent>
#include <QWidget>

namespace orvane {

namespace {

class LocalPointerMonitor final : public QObject {
public:
    explicit LocalPointerMonitor(EventMonitor::Handler handler) : m_handler(std::move(handler)) {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        // Only for the window, not again for the widgets in it.
        const bool isPointerEvent =
            event->type() == QEvent::MouseMove || event->type() == QEvent::Enter;
        if (isPointerEvent && watched->isWindowType())
            m_handler();
        return false;
    }

private:
    EventMonitor::Handler m_handler;
};

bool isMenuOpen() {
    return QApplication::activePopupWidget() != nullptr;
}

KeyEvent::Target keyTarget() {
    const QWidget* widget = QApplication::focusWidget();
    if (widget != nullptr && widget->testAttribute(Qt::WA_InputMethodEnabled))
        return KeyEvent::Target::textField;
    const QWidget* window = QApplication::activeWindow();
    if (window == nullptr)
        return KeyEvent::Target::elsewhere;
    if (!window->property(EventMonitor::shortcutWindow).toBool())
        return KeyEvent::Target::window;
    const bool isButton = qobject_cast<const QAbstractButton*>(widget) != nullptr;
    return isButton ? KeyEvent::Target::button : KeyEvent::Target::elsewhere;
}

KeyEvent::Repeat repeat(bool isRepeat) {
    return isRepeat ? KeyEvent::Repeat::again : KeyEvent::Repeat::first;
}

class LocalKeyDownMonitor final : public QObject {
public:
    LocalKeyDownMonitor(X11Keyboard& keyboard, EventMonitor::KeyHandler handler)
        : m_keyboard(keyboard), m_handler(std::move(handler)) {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || !watched->isWindowType() || isMenuOpen())
            return false;
        const auto* press = static_cast<const QKeyEvent*>(event);
        KeyEvent key = m_keyboard.keyEvent(press->nativeScanCode(), press->nativeModifiers());
        key.repeat = repeat(press->isAutoRepeat());
        key.target = keyTarget();
        key.escapeCloses = qobject_cast<const QDialog*>(QApplication::activeWindow()) != nullptr;
        // Copied, because the handler may destroy this monitor.
        const EventMonitor::KeyHandler handle = m_handler;
        return handle(key) == EventMonitor::Outcome::consumed;
    }

private:
    X11Keyboard& m_keyboard;
    EventMonitor::KeyHandler m_handler;
};

} // namespace

SystemEventMonitor::SystemEventMonitor()
    : m_keyboard(std::make_unique<X11Keyboard>()),
      m_rawInput(std::make_unique<X11RawInput>()),
      m_rawKeys(std::make_unique<X11RawKeys>()) {}

SystemEventMonitor::~SystemEventMonitor() = default;

std::unique_ptr<QObject> SystemEventMonitor::addGlobalPointerMonitor(Handler handler) {
    auto monitor = std::make_unique<QObject>();
    QObject::connect(m_rawInput.get(), &X11RawInput::pointerMoved, monitor.get(),
                     std::move(handler));
    return monitor;
}

std::unique_ptr<QObject> SystemEventMonitor::addLocalPointerMonitor(Handler handler) {
    return std::make_unique<LocalPointerMonitor>(std::move(handler));
}

std::unique_ptr<QObject> SystemEventMonitor::addDepartureMonitor(const QRectF& area,
                                                                 Handler handler) {
    if (!X11::isXWayland())
        return std::make_unique<QObject>();
    auto fence = std::make_unique<X11PointerFence>(area);
    QObject::connect(fence.get(), &X11PointerFence::entered, fence.get(), std::move(handler));
    return fence;
}

std::unique_ptr<QObject> SystemEventMonitor::addGlobalKeyDownMonitor(KeyHandler handler) {
    auto monitor = std::make_unique<QObject>();
    QObject::connect(
        m_rawKeys.get(), &X11RawKeys::pressed, monitor.get(),
        [this, handle = std::move(handler)](std::uint32_t key, std::uint32_t state, bool isRepeat) {
            if (QGuiApplication::focusWindow() != nullptr || isMenuOpen())
                return;
            KeyEvent event = m_keyboard->keyEvent(key, state);
            event.repeat = repeat(isRepeat);
            handle(event);
        });
    return monitor;
}

std::unique_ptr<QObject> SystemEventMonitor::addLocalKeyDownMonitor(KeyHandler handler) {
    return std::make_unique<LocalKeyDownMonitor>(*m_keyboard, std::move(handler));
}

std::optional<QPointF> SystemEventMonitor::pointerLocation() const {
    if (!X11::isPointerKnown())
        return std::nullopt;
    return QCursor::pos();
}

} // namespace orvane
