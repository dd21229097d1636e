// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "session/session.hpp"

namespace kinovane::tool {

struct ArtifactsRequest {
    std::filesystem::path film = ".";
    std::optional<std::string> shot; ///< Only the key frame and the clip of this shot.
    std::optional<std::string> kind;
    bool paths = false; ///< Only the paths of the files, a line each.
    bool nul = false;   ///< Ends each path with a NUL byte instead of a line break; implies `paths`.
};

/// Prints the recorded files.
ExitStatus artifacts(const ArtifactsRequest& request, const Session& session);

} // namespace kinovane::tool
