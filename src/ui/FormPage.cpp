// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/FormPage.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShowEvent>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Points between a caption and its control.
constexpr int captionGap = 4;

} // namespace

FormPage::FormPage(QWidget* parent) : QWidget(parent) {}

double FormPage::scale() {
    // A line is 20 points high; the longest caption must fit into 140 points less the gap.
    const QFontMetricsF metrics(QApplication::font());
    return std::max({1.0, metrics.height() / 20,
                     metrics.horizontalAdvance(u"Window Size Preset:"_s) / (140 - captionGap - 2)});
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

void FormPage::place(QWidget* control, const QRectF& frame) {
    if (control->parent() != this)
        control->setParent(this);
    control->setGeometry(pixels(frame));
    m_frames.insert(control, frame);
}

QLabel* FormPage::addLabel(const QString& text, const QRectF& frame, const LabelStyle& style) {
    auto* label = new QLabel(text, this);
    label->setTextFormat(Qt::PlainText);
    label->setFont(scaledFont(label->font(), style));
    label->setForegroundRole(style.color);
    label->setAlignment(style.alignment | Qt::AlignAbsolute | Qt::AlignVCenter);
    QRectF grown = frame;
    if (style.alignment == Qt::AlignLeft)
        grown.setWidth(std::max(grown.width(), label->sizeHint().width() / scale()));
    place(label, grown);
    return label;
}

QLabel* FormPage::addCaption(const QString& text, const QRectF& frame) {
    return addLabel(text, frame.adjusted(0, 0, -captionGap, 0), {.alignment = Qt::AlignRight});
}

void FormPage::hideControls() {
    for (auto it = m_frames.cbegin(); it != m_frames.cend(); ++it)
        it.key()->hide();
}

void FormPage::revealControls(int top, int bottom) {
    for (auto it = m_frames.cbegin(); it != m_frames.cend(); ++it) {
        const QRect frame = it.key()->geometry();
        if (frame.bottom() >= top && frame.top() <= bottom)
            it.key()->show();
    }
}

QRect FormPage::pixels(const QRectF& frame) const {
    const double s = scale();
    const QPointF corner(frame.x() * s, height() - (frame.y() + frame.height()) * s);
    return {corner.toPoint(), (frame.size() * s).toSize()};
}

void FormPage::resizeEvent(QResizeEvent*) {
    for (auto it = m_frames.cbegin(); it != m_frames.cend(); ++it)
        it.key()->setGeometry(pixels(it.value()));
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
