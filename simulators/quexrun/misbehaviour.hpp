// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

namespace quexrun {

/// Does what the environment variable QUEXRUN_MISBEHAVE asks for and gives the exit status to end with;
/// nothing when the variable is not set or empty.
std::optional<int> misbehave();

} // namespace quexrun
