// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <boost/json/array.hpp>

#include <kinovane/handoff.hpp>
#include <kinovane/preflight.hpp>
#include <kinovane/workspace.hpp>

#include "commands/publish_progress.hpp"
#include "session/console.hpp"
#include "session/failure.hpp"

namespace kinovane::tool {

/// Findings as JSON: a list of objects with code and text.
boost::json::array findingsJSON(const std::vector<PreflightFinding>& findings);

/// The documents prevent the handoff, or there are warnings that the user wants to be refused.
CommandError findingsFailure(const std::vector<PreflightFinding>& findings);

/// Files are not sound. `handoff` when any of them is missing, changed or misplaced, `fileSystem` when the
/// only problem is files that could not be read. `location` is the path of the film as the user gave it.
CommandError damageFailure(const std::vector<ArtifactOutcome>& damaged, const FilmWorkspaceSnapshot& film,
                           const std::filesystem::path& location, const PublishProgress& progress,
                           const Console& console);

/// What the exception that is being handled means, when it ended a publish that came as far as `progress`
/// tells, and what was done until then. `importer` is the name or path of the importer.
CommandError publishFailure(const PublishProgress& progress, const PublishTarget& target,
                            const FilmWorkspaceSnapshot& film, const std::filesystem::path& location,
                            const std::string& importer, const Console& console);

} // namespace kinovane::tool
