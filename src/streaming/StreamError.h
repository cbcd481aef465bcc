// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <variant>

namespace orvane {

/// Why a channel has no stream address. A value; any thread.
namespace StreamError {
struct ResolveFailed {
    QString reason;

    friend bool operator==(const ResolveFailed&, const ResolveFailed&) = default;
};
struct NoOutput {
    friend bool operator==(const NoOutput&, const NoOutput&) = default;
};
using Value = std::variant<ResolveFailed, NoOutput>;
} // namespace StreamError

/// Returns the text for the user.
[[nodiscard]] QString errorDescription(const StreamError::Value& error);

} // namespace orvane
