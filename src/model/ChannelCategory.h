// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/AllCases.h"

#include <QString>

#include <array>

namespace orvane {

/// The group under which a channel is listed. A value; any thread. Shown in declaration order.
enum class ChannelCategory { featured, saudiGulf, religious, international, custom };

template <>
inline constexpr auto allCases<ChannelCategory> =
    std::array{ChannelCategory::featured, ChannelCategory::saudiGulf, ChannelCategory::religious,
               ChannelCategory::international, ChannelCategory::custom};

/// The Arabic title. It is also the raw value, as there is no other title.
[[nodiscard]] QString rawValue(ChannelCategory category);
[[nodiscard]] QString displayName(ChannelCategory category);
/// A stable English identifier for command lines and scripts.
[[nodiscard]] QString identifier(ChannelCategory category);

} // namespace orvane
