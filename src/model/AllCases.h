// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <optional>

namespace orvane {

/// Every case of an enumeration in declaration order, which is also the order in which people see
/// them. Each enumeration specialises it as a std::array beside its own declaration, together with
/// a free function `rawValue` that gives the text under which a case is stored.
template <typename Enum>
inline constexpr auto allCases = nullptr;

/// The case whose raw value equals `text` exactly (no case folding, no trimming), or nothing.
template <typename Enum>
[[nodiscard]] std::optional<Enum> fromRawValue(QStringView text) {
    for (const Enum value : allCases<Enum>) {
        if (rawValue(value) == text)
            return value;
    }
    return std::nullopt;
}

} // namespace orvane
