// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

namespace vistrel {

/// Does what the environment variable VISTREL_MISBEHAVE asks for and gives the exit status to end with;
/// nothing when the variable is not set or empty. Programs that start an importer use it to test themselves
/// against one that breaks its word.
std::optional<int> misbehave();

} // namespace vistrel
