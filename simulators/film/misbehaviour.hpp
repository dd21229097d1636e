// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "command_line.hpp"

namespace film {

/// How the environment variable FILM_MISBEHAVE makes a call go.
struct Misbehaviour {
    /// The exit status to end with at once; none when the command is carried out all the same.
    std::optional<int> exitStatus;
    /// The command dies in the middle of its first step.
    bool cutOff = false;
};

Misbehaviour misbehave(const Command& command);

} // namespace film
