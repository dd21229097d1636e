// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include <kinovane/workspace.hpp>

#include "commands/verification_report.hpp"
#include "commands/verify.hpp"
#include "film/checksum_list.hpp"
#include "session/session.hpp"

namespace kinovane::tool {

/// Whether the path stands for standard output.
bool isStandardOutput(const std::optional<std::filesystem::path>& path);

/// Verifies one film, which the user named by `location`, and prints what is wrong as it is found, then a
/// summary; prints nothing for JSON output. `list` is the content of VerifyRequest::checksums. A stop that a
/// signal requested ends it with a report that is interrupted.
VerificationReport verifyFilm(const FilmWorkspaceSnapshot& film, const std::filesystem::path& location,
                              const VerifyRequest& request, const std::vector<Checksum>& list,
                              const Session& session);

} // namespace kinovane::tool
