// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace kinovane::tool {

struct PublishRequest {
    std::filesystem::path runManifest;
    std::string vistrel; ///< The name or path of the importer.
    std::optional<std::filesystem::path> manifest;
    bool dryRun = false;
    unsigned workers = 1;
    bool json = false;
};

/// Vistrel refused the manifest or the import.
class ImportRefused : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Checks the documents, verifies the film's files, writes the handoff manifest, validates it with Vistrel
/// and, unless it is a dry run, imports it. Each step is printed when it is done.
///
/// Throws FilmProjectError, PublishError (`blocked`, when the documents prevent the handoff),
/// VistrelHandoffError, JSONEncodingError, FilmToolError, ImportRefused and
/// std::filesystem::filesystem_error.
void publish(const PublishRequest& request);

} // namespace kinovane::tool
