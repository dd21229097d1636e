// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <string>

namespace kinovane::test {

/// Runs the work in a child process that has no special rights, because nothing is refused to root, and gives
/// the text that it returned. The child must be able to reach the files that it works on.
std::string asOrdinaryUser(const std::function<std::string()>& work);

} // namespace kinovane::test
