// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/Fuzz.h"

#include "base/PlainText.h"
#include "updates/Appcast.h"
#include "updates/VersionOrder.h"

using namespace orvane;

/// The feed of updates, from whoever has the server.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr QStringView installed = u"2.2.0";
    const auto items = parseAppcast(fuzz::bytes(data, size));
    if (!items)
        return 0;
    for (const AppcastItem& item : *items) {
        fuzz::require(!item.archive.isEmpty(), "an archive has an address");
        fuzz::require(!item.signature.isEmpty(), "an archive has a signature");
        fuzz::require(item.length > 0, "an archive has a length");
        const QString notes = plainText(item.description);
        fuzz::require(!notes.contains(QChar(0x202E)), "notes do not change the direction");
    }
    if (const std::optional<AppcastItem> newest = newestUpdate(*items, installed))
        fuzz::require(compareVersions(newest->version, installed) > 0, "an update is newer");
    return 0;
}
