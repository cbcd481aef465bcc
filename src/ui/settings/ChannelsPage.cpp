// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/ChannelsPage.h"

#include "language/Translation.h"

#include "settings/Preferences.h"
#include "state/ChannelRegistry.h"
#include "ui/DisplayText.h"
#include "ui/FavoriteKeys.h"
#include "ui/settings/RoundedBox.h"
#include "ui/settings/StarButton.h"
#include "ui/theme/SystemColors.h"
#include "ui/theme/TextColor.h"

#include <QCheckBox>
#include <QScrollArea>
#include <QStyle>
#include <QtMath>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QRectF scrollFrame(0, 0, 510, 390);
constexpr double listWidth = 490;
constexpr double bandStep = 24;
constexpr double rowStep = 22;
constexpr double categoryGap = 6;
constexpr double channelWidth = 426;
/// Pixels that keep a long name apart from its star.
constexpr int textMargin = 4;

QColor bandColor(ChannelCategory category) {
    switch (category) {
    case ChannelCategory::featured:
        return SystemColors::blue;
    case ChannelCategory::saudiGulf:
        return SystemColors::green;
    case ChannelCategory::religious:
        return SystemColors::purple;
    case ChannelCategory::international:
        return SystemColors::orange;
    case ChannelCategory::custom:
        return SystemColors::teal;
    }
    return {};
}

/// Returns the height in points. The built-in rows count with a margin; custom rows do not, as the
/// margin would grow with their number.
double listHeight(const QList<Channel>& channels) {
    const auto added = std::ranges::count(channels, ChannelCategory::custom, &Channel::category);
    const auto builtIn = channels.size() - added;
    const auto rows = static_cast<double>(builtIn + std::ssize(allCases<ChannelCategory>));
    return std::max(scrollFrame.height(), rows * 26 + 20 + static_cast<double>(added) * rowStep);
}

} // namespace

ChannelsPage::ChannelsPage(Preferences& preferences, const ChannelRegistry& registry)
    : m_preferences(preferences),
      m_registry(registry),
      m_scroll(makeListScroll(u"channelsScroll"_s)) {
    setObjectName(u"channelsWrapper"_s);
    place(m_scroll, scrollFrame);
}

void ChannelsPage::rebuildChannelsContent() {
    showListPage(*m_scroll, channelList());
}

FormPage* ChannelsPage::channelList() {
    m_stars.clear();
    const QList<Channel> all = m_registry.all();
    auto* list = new FormPage;
    list->resize(scaled({listWidth, listHeight(all)}));
    double y = listHeight(all) - 26;
    for (const ChannelCategory category : allCases<ChannelCategory>) {
        QList<Channel> channels = all;
        channels.removeIf([&](const Channel& c) { return c.category() != category; });
        if (!channels.isEmpty())
            y = addCategory(*list, category, channels, y);
    }
    updateStars();
    return list;
}

double ChannelsPage::addCategory(FormPage& list, ChannelCategory category,
                                 const QList<Channel>& channels, double y) {
    const QColor color = bandColor(category);
    const QColor band = SystemColors::withAlpha(color, 0.15);
    list.place(new RoundedBox({.background = band, .radius = 4 * scale()}), {8, y - 22, 474, 22});
    QLabel* title = list.addLabel(displayName(category), {16, y - 20, 460, 18},
                                  {.size = 12, .weight = QFont::Bold});
    setTextColor(*title, color, band);
    y -= bandStep;
    const QSet<QString> enabled = m_preferences.enabledChannelIDs();
    for (const Channel& channel : channels) {
        addChannel(list, channel, enabled.contains(channel.id()), y);
        y -= rowStep;
    }
    return y - categoryGap;
}

void ChannelsPage::addChannel(FormPage& list, const Channel& channel, bool isEnabled, double y) {
    const QString name = singleLineName(channel.displayName());
    auto* box = new QCheckBox;
    // The rest of the width is the indicator's.
    const int indicatorWidth = box->style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                               box->style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
    const int textWidth = qFloor(channelWidth * scale()) - indicatorWidth - textMargin;
    const QString fitted = box->fontMetrics().elidedText(name, Qt::ElideRight, textWidth);
    box->setText(escapedMnemonics(fitted));
    if (fitted != name)
        box->setToolTip(name.toHtmlEscaped());
    box->setObjectName(channel.id());
    box->setChecked(isEnabled);
    connect(box, &QCheckBox::clicked, this,
            [this, id = channel.id()](bool isOn) { channelToggled(id, isOn); });
    // The box ends where the star begins.
    list.place(box, {28, y - 20, channelWidth, 18});

    auto* star = new StarButton;
    star->setObjectName(u"favourite "_s + channel.id());
    star->setAccessibleName(translated("Settings", "Favourite: %1").arg(name));
    connect(star, &StarButton::clicked, this,
            [this, id = channel.id()](bool isOn) { favoriteToggled(id, isOn); });
    list.place(star, {456, y - 21, 20, 20});
    m_stars.append({channel.id(), star});
}

void ChannelsPage::channelToggled(const QString& id, bool isOn) {
    QSet<QString> enabled = m_preferences.enabledChannelIDs();
    if (isOn)
        enabled.insert(id);
    else
        enabled.remove(id);
    m_preferences.setEnabledChannelIDs(enabled);
}

void ChannelsPage::favoriteToggled(const QString& id, bool isOn) {
    QStringList favorites = m_preferences.favoriteChannelIDs();
    favorites.removeAll(id);
    if (isOn)
        favorites.append(id);
    m_preferences.setFavoriteChannelIDs(favorites);
    updateStars();
}

void ChannelsPage::updateStars() {
    const QStringList favorites = m_preferences.favoriteChannelIDs();
    for (const Star& star : std::as_const(m_stars)) {
        const qsizetype index = favorites.indexOf(star.id);
        star.button->setChecked(index >= 0);
        star.button->setToolTip(index >= 0 ? favoriteToolTip(index)
                                           : translated("Settings", "Make it a favourite"));
    }
}

} // namespace orvane
