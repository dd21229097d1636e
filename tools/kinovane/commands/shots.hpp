// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include "session/session.hpp"

namespace kinovane::tool {

struct ShotsRequest {
    std::filesystem::path film = ".";
};

/// Prints the planned shots in film order.
ExitStatus shots(const ShotsRequest& request, const Session& session);

} // namespace kinovane::tool
