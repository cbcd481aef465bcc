// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <optional>

namespace orvane {

/// All cases of an enumeration in declaration order, which is also the order in the user interface.
/// Each enumeration specialises it as a std::array next to its declaration, together with a free
/// function `rawValue` that returns the text under which a case is stored.
template <typename Enum>
inline constexpr auto allCases = nullptr;

/// Returns the case whose raw value equals `text` exactly (no case folding, no trimming), or
/// nullopt.
template <typename Enum>
[[nodiscard]] std::optional<Enum> fromRawValue(QStringView text) {
    for (const Enum value : allCases<Enum>) {
        if (rawValue(value) == text)
            return value;
    }
    return std::nullopt;
}

} // namespace orvane
