// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include "session/session.hpp"

namespace kinovane::tool {

struct CopyRequest {
    std::filesystem::path film;
    std::filesystem::path target; ///< A folder; made when it does not exist.
};

/// Copies a workspace. Every file is verified while it is read, and read again in the copy; only then does it
/// get its name there. Files that are already there and sound are not copied again.
ExitStatus copy(const CopyRequest& request, const Session& session);

} // namespace kinovane::tool
