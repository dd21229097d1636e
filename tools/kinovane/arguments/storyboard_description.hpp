// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "commands/storyboard.hpp"

namespace CLI {
class App;
}

namespace kinovane::tool {

/// Adds the arguments of `storyboard` to its description, except --workers.
void describeStoryboard(CLI::App& command, StoryboardRequest& request);

/// The bytes that a size such as "0", "16 MB" or "1500kB" stands for; the units are powers of 1000. Absent
/// for any other text, and for a size beyond 64 bits.
std::optional<std::uint64_t> bytesOf(std::string_view size);

} // namespace kinovane::tool
