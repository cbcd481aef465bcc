// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane {

/// One function of several, for `std::visit`: one for each alternative of a variant.
template <class... F>
struct Overloaded : F... {
    using F::operator()...;
};

} // namespace orvane
