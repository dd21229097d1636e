// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include "common/misbehaviour.hpp"
#include "common/program.hpp"

namespace simulator::film {

/// The values of FILM_MISBEHAVE for a command, which must outlive them. `cutOff` is set when the command is
/// to die in the middle of its first step.
std::vector<Misbehaviour> misbehaviours(const Command& command, bool& cutOff);

} // namespace simulator::film
