// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/ControlBar.h"

#include "language/Mirror.h"

#include "playback/PlayerCommands.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "ui/ApplicationActions.h"
#include "ui/CachedPixmap.h"
#include "ui/DisplayText.h"
#include "ui/player/GlyphButton.h"
#include "ui/player/GoLiveButton.h"
#include "ui/player/LiveIndicator.h"
#include "ui/theme/SystemColors.h"
#include "ui/window/WindowDrag.h"

#include <QLabel>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int labelPixelSize = 12;
constexpr int labelLeft = 20;
constexpr int labelHeight = 16;
constexpr int labelGap = 8;
constexpr int minimumLabelWidth = 30;
constexpr int indicatorSize = 10;
constexpr int margin = 6;
constexpr int buttonSize = 32;
constexpr int buttonStep = 36;

/// A line of text whose alignment depends on the direction of the interface, not of the text.
class NameLabel final : public QLabel {
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent*) override {
        const QPixmap& name = m_name.get(*this, text(), [this](QPainter& painter) {
            style()->drawItemText(&painter, rect(),
                                  QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) |
                                      Qt::AlignAbsolute | Qt::AlignVCenter,
                                  palette(), isEnabled(), text(), foregroundRole());
        });
        QPainter(this).drawPixmap(0, 0, name);
    }

private:
    CachedPixmap m_name;
};

} // namespace

ControlBar::ControlBar(AppState& state, PlayerCommands& player, ApplicationActions& actions,
                       NotificationCenter& notifications, QWidget* parent)
    : QWidget(parent),
      m_state(state),
      m_player(player),
      m_actions(actions),
      m_notifications(notifications),
      m_liveIndicator(new LiveIndicator(this)),
      m_goLiveButton(new GoLiveButton(labelLeft - margin, this)),
      m_channelLabel(new NameLabel(this)),
      m_muteButton(new GlyphButton(SystemColors::blue, this)),
      m_ghostButton(new GlyphButton(SystemColors::purple, this)),
      m_fullscreenBtn(new GlyphButton(SystemColors::green, this)),
      m_closeButton(new GlyphButton(SystemColors::orange, this)),
      m_quitButton(new GlyphButton(SystemColors::red, this)) {
    new WindowDrag(this);
    setUpLabel();
    setUpButtons();
    registerObservers();
    updateChannel();
    updateMuteButton();
    updateGhostButton();
    updateLivePosition();
}

void ControlBar::setUpLabel() {
    QFont font = m_channelLabel->font();
    font.setPixelSize(labelPixelSize);
    font.setWeight(QFont::DemiBold);
    m_channelLabel->setFont(font);
    m_channelLabel->setTextFormat(Qt::PlainText);
    m_channelLabel->setObjectName(u"channelLabel"_s);
    QPalette palette = m_channelLabel->palette();
    palette.setColor(QPalette::WindowText, SystemColors::barText);
    m_channelLabel->setPalette(palette);
}

void ControlBar::setUpButtons() {
    m_goLiveButton->setObjectName(u"goLiveButton"_s);
    m_muteButton->setObjectName(u"muteButton"_s);
    m_ghostButton->setObjectName(u"ghostButton"_s);
    m_fullscreenBtn->setObjectName(u"fullscreenBtn"_s);
    m_closeButton->setObjectName(u"closeButton"_s);
    m_quitButton->setObjectName(u"quitButton"_s);

    m_fullscreenBtn->setGlyph(u"⛶"_s, translated("Player", "Full screen"));
    m_fullscreenBtn->setToolTip(translated("Player", "Fullscreen (F)"));
    m_closeButton->setGlyph(u"✕"_s, translated("Player", "Close player"));
    m_closeButton->setToolTip(translated("Player", "Close player"));
    m_quitButton->setGlyph(u"⏻"_s, translated("Player", "Quit Orvane"));
    m_quitButton->setToolTip(translated("Player", "Quit Orvane (Q)"));

    const auto onClick = [this](GlyphButton* button, auto action) {
        connect(button, &QAbstractButton::clicked, this, action);
    };
    connect(m_goLiveButton, &QAbstractButton::clicked, this, [this] { m_player.goLive(); });
    onClick(m_muteButton, [this] { m_player.toggleMute(); });
    onClick(m_ghostButton, [this] { m_state.setGhostMode(!m_state.isGhostMode()); });
    onClick(m_fullscreenBtn, [this] { m_notifications.post(AppNotification::toggleFullscreen); });
    onClick(m_closeButton, [this] { m_notifications.post(AppNotification::closePlayer); });
    onClick(m_quitButton, [this] { m_actions.terminate(); });
}

void ControlBar::registerObservers() {
    const auto follow = [this](auto topic, void (ControlBar::*take)()) {
        m_observers.push_back(
            m_notifications.addObserver(topic, [this, take] { (this->*take)(); }));
    };
    follow(AppNotification::channelChanged, &ControlBar::updateChannel);
    follow(AppNotification::muteChanged, &ControlBar::updateMuteButton);
    follow(AppNotification::ghostModeChanged, &ControlBar::updateGhostButton);
    follow(AppNotification::livePositionChanged, &ControlBar::updateLivePosition);
}

void ControlBar::updateChannel() {
    const auto& channel = m_state.currentChannel();
    m_channelName =
        channel ? singleLineName(channel->displayName()) : translated("Player", "Select a channel");
    fitChannelName();
}

void ControlBar::updateMuteButton() {
    if (m_state.isMuted())
        m_muteButton->setGlyph(u"🔇"_s, translated("Player", "Unmute"));
    else
        m_muteButton->setGlyph(u"🔊"_s, translated("Player", "Mute"));
}

void ControlBar::updateGhostButton() {
    if (m_state.isGhostMode()) {
        m_ghostButton->setGlyph(u"👻"_s, translated("Player", "Turn ghost mode off"));
        m_ghostButton->setToolTip(translated("Player", "Ghost Mode ON (G)"));
    } else {
        m_ghostButton->setGlyph(u"👁"_s, translated("Player", "Turn ghost mode on"));
        m_ghostButton->setToolTip(translated("Player", "Ghost Mode OFF (G)"));
    }
}

void ControlBar::updateLivePosition() {
    const std::chrono::milliseconds behind = m_state.livePosition().behind;
    const bool isLive = behind < std::chrono::seconds(1);
    m_liveIndicator->setLive(isLive);
    m_goLiveButton->setBehind(behind);
    m_goLiveButton->setHidden(isLive);
    layOut();
    fitChannelName();
}

void ControlBar::fitChannelName() {
    m_channelLabel->setText(m_channelLabel->fontMetrics().elidedText(m_channelName, Qt::ElideRight,
                                                                     m_channelLabel->width()));
}

void ControlBar::layOut() {
    const auto put = [this](QWidget& part, const QRect& frame) {
        part.setGeometry(mirrored(frame, width()));
    };
    int x = width() - margin - buttonSize;
    for (GlyphButton* button :
         {m_quitButton, m_closeButton, m_fullscreenBtn, m_ghostButton, m_muteButton}) {
        put(*button, {x, (height() - buttonSize) / 2, buttonSize, buttonSize});
        x -= buttonStep;
    }
    put(*m_liveIndicator, {margin, (height() - indicatorSize) / 2, indicatorSize, indicatorSize});
    int nameLeft = labelLeft;
    if (!m_goLiveButton->isHidden()) {
        const QSize size = m_goLiveButton->sizeHint();
        put(*m_goLiveButton, QRect({margin, (height() - size.height()) / 2}, size));
        nameLeft = margin + size.width();
    }
    const int lastButton = x + buttonStep;
    const int space = lastButton - nameLeft - labelGap;
    const int labelWidth = std::max(space, minimumLabelWidth);
    // In the smallest window there is no place for both.
    m_channelLabel->setHidden(nameLeft != labelLeft && space < minimumLabelWidth);
    // Arabic script needs more height.
    const int textHeight = std::max(labelHeight, m_channelLabel->sizeHint().height());
    put(*m_channelLabel, {nameLeft, (height() - textHeight) / 2, labelWidth, textHeight});
}

void ControlBar::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), SystemColors::bar);
}

void ControlBar::resizeEvent(QResizeEvent*) {
    layOut();
    fitChannelName();
}

} // namespace orvane
