// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1StringView>

#include <chrono>

/// Orvane's fixed identity and tuning values. Any thread.
namespace orvane::AppConstants {

inline constexpr QLatin1StringView bundleIdentifier{"lumenfold.orvane"};
inline constexpr QLatin1StringView appName{"Orvane"};
inline constexpr QLatin1StringView appVersion{"2.2.0"};
inline constexpr QLatin1StringView buildNumber{"6"};

/// Lifetime of a resolved stream address in the cache, by the wall clock.
inline constexpr std::chrono::seconds streamCacheTTL{900};
/// Attempts at resolving a channel before it counts as failed.
inline constexpr int streamResolveRetries = 3;

/// Points.
inline constexpr double defaultWindowWidth = 480;
inline constexpr double defaultWindowHeight = 270;
inline constexpr double controlBarHeight = 44;

inline constexpr double aspectRatio = 16.0 / 9.0;

} // namespace orvane::AppConstants
