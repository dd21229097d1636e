// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

#include "session/session.hpp"

namespace kinovane::tool {

struct TimelineRequest {
    std::filesystem::path film = ".";
    std::string format;                  ///< "otio", "edl" or "fcpxml".
    std::filesystem::path output;        ///< "-" is standard output.
    std::string references = "absolute"; ///< Or "relative".
    std::string frameRate;               ///< That of the film's plan when empty.
    bool force = false;                  ///< Replace a file of another kind.
};

/// Writes the film as a timeline for an editing program.
ExitStatus timeline(const TimelineRequest& request, const Session& session);

} // namespace kinovane::tool
