// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/Fuzz.h"

#include "base/Origin.h"
#include "model/BuiltInChannels.h"
#include "model/ChannelLookup.h"
#include "settings/CustomChannelEntry.h"
#include "streaming/ChannelResolver.h"
#include "ui/DisplayText.h"

using namespace orvane;

/// A handle that was pasted, and below it the name that the site gives the channel.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Origin site = *Origin::parse(QStringLiteral("https://site.example"));
    QByteArray rest = fuzz::bytes(data, size);
    const QString handle = ChannelResolver::extractHandle(QString::fromUtf8(fuzz::takeLine(rest)));
    const QString name = QString::fromUtf8(rest);

    const QString page = site.address(QString(QStringLiteral("/@") + handle));
    fuzz::require(page.startsWith(QStringLiteral("https://site.example/@")),
                  "yt-dlp takes no handle for an option");
    const Channel channel = Channel::custom(handle, name);
    const QUrl live = channel.youtubeURL(site);
    fuzz::require(!live.isValid() || live.host() == QStringLiteral("site.example"),
                  "no handle leads to another site");

    const QString shown = singleLineName(name);
    fuzz::require(!shown.contains(QChar(u'\n')) && !shown.contains(QChar(0x202E)),
                  "a name is one line and keeps the direction");
    const QList<CustomChannelEntry> entries{{.handle = handle, .name = name}};
    fuzz::require(decodeCustomChannels(encodeCustomChannels(entries)) == entries,
                  "a channel is stored as it is");
    (void)decodeCustomChannels(name);

    const ChannelLookup::Result found = ChannelLookup::find({channel}, handle);
    if (const auto* one = std::get_if<Channel>(&found))
        fuzz::require(*one == channel, "only listed channels are found");
    return 0;
}
