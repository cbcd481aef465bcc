// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/Fuzz.h"

#include "streaming/ChannelResolver.h"
#include "streaming/ladder/LadderMemory.h"
#include "streaming/ladder/StreamFailure.h"
#include "streaming/ladder/StreamQuery.h"
#include "streaming/tool/YtDlpVersion.h"
#include "updates/VersionOrder.h"

using namespace orvane;

namespace {

void readAddress(const QString& printed) {
    for (const Rung rung : {Rung::usual, Rung::defaultClients}) {
        const StreamQuery query{.rung = rung, .resolution = {}, .page = {}, .runtimes = {}};
        const std::optional<StreamAddress> address = query.read(printed);
        fuzz::require(!address || address->picture.isValid(), "an address is valid");
        fuzz::require(!address || !address->sound || rung != Rung::usual,
                      "the usual call has one address");
    }
}

void readVersions(const QString& one, const QString& other) {
    (void)releaseDay(one);
    fuzz::require(!(isNewerVersion(one, other) && isNewerVersion(other, one)),
                  "of two versions one is newer");
    fuzz::require((compareVersions(one, other) < 0) == (compareVersions(other, one) > 0),
                  "versions have one order");
}

void readMemory(const QByteArray& json) {
    const std::optional<LadderMemory::Entry> entry = LadderMemory::fromJson(json);
    fuzz::require(!entry || LadderMemory::fromJson(LadderMemory::toJson(*entry)) == entry,
                  "the ladder is remembered as it was");
}

} // namespace

/// What yt-dlp prints: addresses, failures, versions and descriptions of videos; and what the
/// program has remembered of it.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray printed = fuzz::bytes(data, size);
    const QString text = QString::fromUtf8(printed);
    readAddress(text);
    fuzz::require(text.trimmed().isEmpty() || !messageFor(text).isEmpty(),
                  "a failure has a message");
    (void)streamFailureOf(text);
    (void)ChannelResolver::channelName(printed);
    QByteArray rest = printed;
    const QString first = QString::fromUtf8(fuzz::takeLine(rest));
    readVersions(first, QString::fromUtf8(rest));
    readMemory(printed);
    return 0;
}
