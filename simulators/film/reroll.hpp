// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "workspace.hpp"

namespace simulator::film {

/// Puts the current take of a shot aside, with everything that was made from it, and orders a new one.
/// Answers a sentence about it.
std::string reroll(Workspace& workspace, const std::string& shotId, const std::string& note);

} // namespace simulator::film
