// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

namespace kinovane::tool {

struct InspectRequest {
    std::filesystem::path runManifest;
    bool json = false;
};

/// Prints what a person wants to know about a workspace. Throws FilmProjectError.
void inspect(const InspectRequest& request);

} // namespace kinovane::tool
