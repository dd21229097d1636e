// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "commands/timeline.hpp"

namespace CLI {
class App;
}

namespace kinovane::tool {

/// Adds the arguments of `timeline` to its description, except the film.
void describeTimeline(CLI::App& command, TimelineRequest& request);

} // namespace kinovane::tool
