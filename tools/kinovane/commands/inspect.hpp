// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <vector>

#include "session/session.hpp"

namespace kinovane::tool {

struct InspectRequest {
    std::vector<std::filesystem::path> films;
};

/// Prints a summary of each workspace. Continues after a workspace that cannot be loaded; the status is that
/// of the first failure, or `handoff` when the documents prevent the handoff.
ExitStatus inspect(const InspectRequest& request, const Session& session);

} // namespace kinovane::tool
