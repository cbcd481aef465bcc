// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace orvane {

/// The stored form of a channel added by the user. A value; any thread.
struct CustomChannelEntry {
    /// As entered or resolved, without "@"; its case is preserved.
    QString handle;
    QString name;

    friend bool operator==(const CustomChannelEntry&, const CustomChannelEntry&) = default;
};

/// Returns a compact JSON array of objects with the members "handle" and "name".
[[nodiscard]] QString encodeCustomChannels(const QList<CustomChannelEntry>& entries);

/// Returns nullopt if `text` is not such an array or if any element lacks one of the two strings.
[[nodiscard]] std::optional<QList<CustomChannelEntry>> decodeCustomChannels(const QString& text);

} // namespace orvane
