// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"
#include "ui/FormPage.h"

class QScrollArea;

namespace orvane {

class ChannelRegistry;
class Preferences;
class StarButton;

/// Lists all channels by category, each with a check box that shows it in the menus and a star that
/// makes it a favourite. Owned by its window; main thread.
class ChannelsPage final : public FormPage {
    Q_OBJECT

public:
    /// Both outlive the page.
    ChannelsPage(Preferences& preferences, const ChannelRegistry& registry);

protected:
    void refresh() override { rebuildChannelsContent(); }
    void fontChanged() override { rebuildChannelsContent(); }

private:
    struct Star {
        QString id;
        StarButton* button;
    };

    void rebuildChannelsContent();
    [[nodiscard]] FormPage* channelList();
    double addCategory(FormPage& list, ChannelCategory category, const QList<Channel>& channels,
                       double y);
    void addChannel(FormPage& list, const Channel& channel, bool isEnabled, double y);
    void channelToggled(const QString& id, bool isOn);
    void favoriteToggled(const QString& id, bool isOn);
    void updateStars();

    Preferences& m_preferences;
    const ChannelRegistry& m_registry;
    QScrollArea* m_scroll;
    QList<Star> m_stars;
};

} // namespace orvane
