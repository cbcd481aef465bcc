// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/ControlBar.h"

#include "model/AppNotification.h"
#include "model/AppState.h"

#include <QLabel>
#include <QPainter>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int labelPixelSize = 12;
constexpr int labelLeft = 20;
constexpr int labelHeight = 16;
constexpr int labelGap = 8;
constexpr int minimumLabelWidth = 30;

} // namespace

ControlBar::ControlBar(AppState& state, NotificationCenter& notifications, QWidget* parent)
    : QWidget(parent), m_state(state), m_channelLabel(new QLabel(this)) {
    QFont font = m_channelLabel->font();
    font.setPixelSize(labelPixelSize);
    font.setWeight(QFont::DemiBold);
    m_channelLabel->setFont(font);
    m_channelLabel->setTextFormat(Qt::PlainText);
    m_channelLabel->setObjectName(u"channelLabel"_s);
    QPalette palette = m_channelLabel->palette();
    palette.setColor(QPalette::WindowText, QColor::fromRgbF(1.0F / 3, 1.0F / 3, 1.0F / 3));
    m_channelLabel->setPalette(palette);
    // The bar is laid out from the left whatever script a name is in.
    m_channelLabel->setAlignment(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);

    m_observers.push_back(notifications.addObserver(AppNotification::channelChanged,
                                                    [this](const auto&) { updateChannel(); }));
    updateChannel();
}

void ControlBar::updateChannel() {
    const auto& channel = m_state.currentChannel();
    m_channelName = channel ? channel->displayName() : u"Select a channel"_s;
    fitChannelName();
}

void ControlBar::fitChannelName() {
    m_channelLabel->setText(m_channelLabel->fontMetrics().elidedText(m_channelName, Qt::ElideRight,
                                                                     m_channelLabel->width()));
}

void ControlBar::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), QColor::fromRgbF(0.93F, 0.93F, 0.93F, 0.95F));
}

void ControlBar::resizeEvent(QResizeEvent*) {
    const int room = std::max(width() - labelLeft - labelGap, minimumLabelWidth);
    // The text's own height where it is more: Arabic script reaches further up and down.
    const int textHeight = std::max(labelHeight, m_channelLabel->sizeHint().height());
    m_channelLabel->setGeometry(labelLeft, (height() - textHeight) / 2, room, textHeight);
    fitChannelName();
}

} // namespace orvane
