// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane {

/// A visitor for std::visit, made of one lambda for each alternative of the variant.
template <class... Lambdas>
struct Overloaded : Lambdas... {
    using Lambdas::operator()...;
};
template <class... Lambdas>
Overloaded(Lambdas...) -> Overloaded<Lambdas...>;

} // namespace kinovane
