// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include "session/exit_status.hpp"

namespace kinovane::tool {

struct VerifyRequest {
    std::filesystem::path runManifest;
    unsigned workers = 1;
    bool json = false;
};

/// Examines every file that is handed over and prints the damaged ones in the project's order. They are the
/// result, not an exception: the status is `handoff` when a file is missing, changed or outside the project,
/// and `fileSystem` when the only problem is files that could not be read.
///
/// Throws FilmProjectError and std::filesystem::filesystem_error.
ExitStatus verify(const VerifyRequest& request);

} // namespace kinovane::tool
