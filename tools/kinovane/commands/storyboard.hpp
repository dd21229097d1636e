// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>

#include "session/session.hpp"

namespace kinovane::tool {

struct StoryboardRequest {
    std::filesystem::path film = "."; ///< A film or a handoff manifest.
    std::filesystem::path output;
    std::uint64_t embedLimit = 16'000'000; ///< Bytes.
    bool verify = false;
    bool open = false;
    bool force = false; ///< Replace a file of another kind.
    unsigned workers = 1;
};

/// Writes a page that shows the film in a browser. With `verify` the status is that of a verification; the
/// page is written all the same.
ExitStatus storyboard(const StoryboardRequest& request, const Session& session);

} // namespace kinovane::tool
