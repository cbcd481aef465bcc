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

/// Between a caption and its control.
constexpr int captionGap = 4;

} // namespace

FormPage::FormPage(QWidget* parent) : QWidget(parent) {}

double FormPage::scale() {
    // A line has 20 points, and the longest caption those that the gap leaves it.
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
    m_places.insert(control, frame);
}

QLabel* FormPage::addLabel(const QString& text, const QRectF& frame, const LabelStyle& style) {
    auto* label = new QLabel(text, this);
    label->setTextFormat(Qt::PlainText);
    label->setFont(scaledFont(label->font(), style));
    label->setForegroundRole(style.color);
    label->setAlignment(style.alignment | Qt::AlignAbsolute | Qt::AlignVCenter);
    QRectF room = frame;
    if (style.alignment == Qt::AlignLeft)
        room.setWidth(std::max(room.width(), label->sizeHint().width() / scale()));
    place(label, room);
    return label;
}

QLabel* FormPage::addCaption(const QString& text, const QRectF& frame) {
    return addLabel(text, frame.adjusted(0, 0, -captionGap, 0), {.alignment = Qt::AlignRight});
}

void FormPage::hideControls() {
    for (auto place = m_places.cbegin(); place != m_places.cend(); ++place)
        place.key()->hide();
}

void FormPage::revealControls(int top, int bottom) {
    for (auto place = m_places.cbegin(); place != m_places.cend(); ++place) {
        const QRect frame = place.key()->geometry();
        if (frame.bottom() >= top && frame.top() <= bottom)
            place.key()->show();
    }
}

QRect FormPage::pixels(const QRectF& frame) const {
    const double s = scale();
    const QPointF corner(frame.x() * s, height() - (frame.y() + frame.height()) * s);
    return {corner.toPoint(), (frame.size() * s).toSize()};
}

void FormPage::resizeEvent(QResizeEvent*) {
    for (auto place = m_places.cbegin(); place != m_places.cend(); ++place)
        place.key()->setGeometry(pixels(place.value()));
}

void FormPage::showEvent(QShowEvent* event) {
    // A window that only comes back from the task bar has not been out of reach.
    if (!event->spontaneous())
        refresh();
}

QScrollArea* makePageScroll(const QString& name) {
    auto* scroll = new QScrollArea;
    scroll->setObjectName(name);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->viewport()->setAutoFillBackground(false);
    return scroll;
}

void showPage(QScrollArea& scroll, FormPage* page) {
    const int scrolled = scroll.verticalScrollBar()->value();
    if (QWidget* last = scroll.takeWidget())
        last->deleteLater(); // One of its controls may be what has asked for another page.
    page->hideControls();
    scroll.setWidget(page);
    page->setAutoFillBackground(false);
    QScrollBar* bar = scroll.verticalScrollBar();
    bar->setValue(scrolled);
    const auto reveal = [&scroll, bar, page] {
        const int room = scroll.height();
        page->revealControls(bar->value() - room, bar->value() + 2 * room);
    };
    QObject::connect(bar, &QScrollBar::valueChanged, page, reveal);
    reveal();
}

void centreOnScreen(QWidget& window) {
    QRect frame(QPoint(), window.size());
    frame.moveCenter(window.screen()->availableGeometry().center());
    window.move(frame.topLeft());
}

void setTextColor(QWidget& widget, const QColor& color) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::WindowText, color);
    palette.setColor(QPalette::ButtonText, color);
    widget.setPalette(palette);
    widget.setForegroundRole(QPalette::NoRole);
}

} // namespace orvane
