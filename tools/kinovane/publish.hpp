// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace kinovane::tool {

struct PublishRequest {
    std::filesystem::path runManifest;
    std::string vistrel; ///< Name or path of Vistrel's program.
    std::optional<std::filesystem::path> manifest;
    bool dryRun = false;
    unsigned workers = 1;
    bool json = false;
};

/// Vistrel's answer was a refusal.
class ImportRefused : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Verifies the film's files, writes the handoff manifest, lets Vistrel check it and, unless it is a dry run,
/// import it. Each step is told as soon as it is done.
///
/// Throws FilmProjectError, VistrelHandoffError, JSONEncodingError, FilmToolError, ImportRefused and
/// std::filesystem::filesystem_error.
void publish(const PublishRequest& request);

} // namespace kinovane::tool
