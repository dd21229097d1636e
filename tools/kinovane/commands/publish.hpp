// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "session/session.hpp"

namespace kinovane::tool {

struct PublishRequest {
    std::filesystem::path film = ".";
    std::string vistrel = "vistrel";               ///< The name or path of the importer.
    std::optional<std::filesystem::path> manifest; ///< "-" is standard output.
    std::optional<std::string> exportedAt;
    bool force = false;        ///< Replace a file that is no handoff manifest.
    bool dryRun = false;       ///< Import nothing, and store no manifest in the workspace.
    bool manifestOnly = false; ///< Store the manifest, and do not run the importer.
    bool strict = false;       ///< Refuse a film with warnings.
    unsigned workers = 1;
};

/// Checks the documents and the target, verifies the film's files, writes the handoff manifest, validates it
/// with Vistrel and, unless it is a dry run, imports it.
ExitStatus publish(const PublishRequest& request, const Session& session);

} // namespace kinovane::tool
