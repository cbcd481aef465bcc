// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/FormPage.h"

#include "language/Mirror.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShowEvent>
#include <QStyle>
#include <QWindow>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Points between a caption and its control.
constexpr int captionGap = 4;

} // namespace

FormPage::FormPage(QWidget* parent) : QWidget(parent), m_font(QApplication::font()) {}

double FormPage::scale() {
    // A line is 20 points high; the longest caption must fit into 140 points less the gap.
    const QFontMetricsF metrics(QApplication::font());
    return std::max({1.0, metrics.height() / 20,
                     metrics.horizontalAdvance(translated("Settings", "Window Size Preset:")) /
                         (140 - captionGap - 2)});
}

QSize FormPage::scaled(const QSizeF& points) {
    return (points * scale()).toSize();
}

QFont FormPage::scaledFont(QFont font, const LabelStyle& style) {
    if (style.size > 0)
        font.setPixelSize(qRound(style.size * scale()));
    font.setWeight(style.weight);
    return font;
}

void FormPage::place(QWidget* control, const QRectF& frame, Width width) {
    if (control->parent() != this)
        control->setParent(this);
    const Placed placed{frame, width};
    control->setGeometry(pixels(control, placed));
    m_placed.insert(control, placed);
}

QLabel* FormPage::addLabel(const QString& text, const QRectF& frame, const LabelStyle& style) {
    auto* label = new QLabel(text, this);
    label->setTextFormat(Qt::PlainText);
    label->setFont(scaledFont(label->font(), style));
    label->setForegroundRole(style.color);
    // Not by the direction of the text, which may be the name of a channel.
    label->setAlignment(QStyle::visualAlignment(layoutDirection(), style.alignment) |
                        Qt::AlignAbsolute | Qt::AlignVCenter);
    m_labels.insert(label, style);
    // A text that is set later must not grow the label beyond the page.
    const bool isGrowing = style.alignment == Qt::AlignLeft && !text.isEmpty();
    place(label, frame, isGrowing ? Width::grows : Width::fixed);
    return label;
}

QLabel* FormPage::addCaption(const QString& text, const QRectF& frame) {
    return addLabel(text, frame.adjusted(0, 0, -captionGap, 0), {.alignment = Qt::AlignRight});
}

void FormPage::hideControls() {
    for (auto it = m_placed.cbegin(); it != m_placed.cend(); ++it)
        it.key()->hide();
}

void FormPage::revealControls(int top, int bottom) {
    for (auto it = m_placed.cbegin(); it != m_placed.cend(); ++it) {
        const QRect frame = it.key()->geometry();
        if (frame.bottom() >= top && frame.top() <= bottom)
            it.key()->show();
    }
}

QRect FormPage::pixels(QWidget* control, const Placed& placed) const {
    const double s = scale();
    QRectF frame = placed.frame;
    if (placed.width == Width::grows)
        frame.setWidth(std::max(frame.width(), control->sizeHint().width() / s));
    const QPointF corner(frame.x() * s, height() - (frame.y() + frame.height()) * s);
    return mirrored({corner.toPoint(), (frame.size() * s).toSize()}, width());
}

void FormPage::layOut() {
    for (auto it = m_placed.cbegin(); it != m_placed.cend(); ++it)
        it.key()->setGeometry(pixels(it.key(), it.value()));
}

void FormPage::resizeEvent(QResizeEvent*) {
    layOut();
}

void FormPage::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        m_followFont.schedule();
}

void FormPage::followFont() {
    if (m_font == QApplication::font())
        return;
    m_font = QApplication::font();
    for (auto it = m_labels.cbegin(); it != m_labels.cend(); ++it)
        it.key()->setFont(scaledFont(it.key()->font(), it.value()));
    layOut();
    fontChanged();
}

FixedSize::FixedSize(QWidget& window, const QSizeF& points, std::function<void()> laidOut)
    : QObject(&window), m_window(window), m_points(points), m_laidOut(std::move(laidOut)) {
    window.installEventFilter(this);
    for (const QScreen* screen : QGuiApplication::screens()) {
        connect(screen, &QScreen::logicalDotsPerInchChanged, this, [this] { m_apply.schedule(); });
        // Qt 6.8 divides those by the scale, so that they stay the same; the size in points
        // changes.
        connect(screen, &QScreen::geometryChanged, this, [this] { m_apply.schedule(); });
    }
    apply();
}

bool FixedSize::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::FontChange)
        m_apply.schedule();
    return false;
}

void FixedSize::apply() {
    const QSize size = FormPage::scaled(m_points);
    m_window.setFixedSize(size);
    // After a change of the screen's scale, Qt takes the size in points for the size that the
    // window has already.
    if (QWindow* window = m_window.windowHandle())
        window->resize(size);
    m_laidOut();
}

void FormPage::showEvent(QShowEvent* event) {
    // Spontaneous events, such as restoring a minimized window, change nothing.
    if (!event->spontaneous())
        refresh();
}

QScrollArea* makeListScroll(const QString& name) {
    auto* scroll = new QScrollArea;
    scroll->setObjectName(name);
    scroll->setFrameShape(QFrame::NoFrame);
    // It scrolls to the control that has the focus, and has nothing else to do for a key.
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->viewport()->setAutoFillBackground(false);
    return scroll;
}

void showListPage(QScrollArea& scroll, FormPage* page) {
    const int scrolled = scroll.verticalScrollBar()->value();
    if (QWidget* previous = scroll.takeWidget())
        previous->deleteLater(); // One of its controls may be the caller.
    page->hideControls();
    scroll.setWidget(page);
    page->setAutoFillBackground(false);
    QScrollBar* bar = scroll.verticalScrollBar();
    bar->setValue(scrolled);
    const auto reveal = [&scroll, bar, page] {
        const int viewHeight = scroll.height();
        page->revealControls(bar->value() - viewHeight, bar->value() + 2 * viewHeight);
    };
    QObject::connect(bar, &QScrollBar::valueChanged, page, reveal);
    reveal();
}

void centreOnScreen(QWidget& window) {
    QRect frame(QPoint(), window.size());
    frame.moveCenter(window.screen()->availableGeometry().center());
    window.move(frame.topLeft());
}

} // namespace orvane
