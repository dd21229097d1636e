// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include "session/session.hpp"

namespace kinovane::tool {

struct StatusRequest {
    std::filesystem::path film = ".";
};

/// Prints where the film stands, and what to do next: the command to type.
ExitStatus status(const StatusRequest& request, const Session& session);

} // namespace kinovane::tool
