// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "session/session.hpp"

namespace kinovane::tool {

struct OpenRequest {
    std::optional<std::string> what; ///< The id of a shot, or "poster"; the best cut when absent.
    std::filesystem::path film = ".";
    bool print = false; ///< Print the path instead.
};

/// Opens a clip, the poster or the best cut with the program that the system has for it.
ExitStatus open(const OpenRequest& request, const Session& session);

} // namespace kinovane::tool
