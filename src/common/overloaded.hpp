// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane {

/// One visitor out of a lambda for each alternative.
template <class... Lambdas>
struct Overloaded : Lambdas... {
    using Lambdas::operator()...;
};
template <class... Lambdas>
Overloaded(Lambdas...) -> Overloaded<Lambdas...>;

} // namespace kinovane
