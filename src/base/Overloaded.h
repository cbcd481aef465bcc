// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane {

/// Combines several lambdas into one visitor for `std::visit`.
template <class... F>
struct Overloaded : F... {
    using F::operator()...;
};

} // namespace orvane
