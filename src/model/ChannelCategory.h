// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/AllCases.h"

#include <QString>

#include <array>

namespace orvane {

/// The group under which a channel is listed. A value; any thread. Menus and settings show the
/// groups in declaration order.
enum class ChannelCategory { featured, saudiGulf, religious, international, custom };

template <>
inline constexpr auto allCases<ChannelCategory> =
    std::array{ChannelCategory::featured, ChannelCategory::saudiGulf, ChannelCategory::religious,
               ChannelCategory::international, ChannelCategory::custom};

/// The Arabic title; there is no other one, so it serves as the raw value too.
[[nodiscard]] QString rawValue(ChannelCategory category);
[[nodiscard]] QString displayName(ChannelCategory category);
/// A word for command lines and scripts, which does not change.
[[nodiscard]] QString identifier(ChannelCategory category);

} // namespace orvane
