// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

namespace kinovane::tool {

struct InspectRequest {
    std::filesystem::path runManifest;
    bool json = false;
};

/// Prints a summary of a workspace. Throws FilmProjectError.
void inspect(const InspectRequest& request);

} // namespace kinovane::tool
