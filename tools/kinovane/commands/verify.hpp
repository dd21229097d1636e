// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "session/session.hpp"

namespace kinovane::tool {

struct VerifyRequest {
    std::vector<std::filesystem::path> films;
    unsigned workers = 1;
    bool all = false;        ///< Every recorded file, not only those that are handed over.
    bool unrecorded = false; ///< List the files that the project does not record.
    std::optional<std::filesystem::path> checksums;      ///< Compare with this list as well.
    std::optional<std::filesystem::path> writeChecksums; ///< Store the verified digests here; "-" is stdout.
};

/// Examines the files of each film and prints the damaged ones as they are found. They are the result, not an
/// exception: the status is `handoff` when a file is missing, changed or outside the project, and
/// `fileSystem` when the only problem is files that could not be read.
ExitStatus verify(const VerifyRequest& request, const Session& session);

} // namespace kinovane::tool
