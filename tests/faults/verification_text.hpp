// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include <kinovane/handoff.hpp>

namespace kinovane::test {

/// The handoff that is built, as JSON.
inline std::string builtText(const FilmWorkspaceSnapshot& snapshot, unsigned workers) {
    HandoffBuildOptions options;
    options.workers = workers;
    return encodeJSON(VistrelHandoffBuilder::build(snapshot, "film", "now", options));
}

/// The descriptions of an audit, one line for each artifact.
inline std::string auditedText(const FilmWorkspaceSnapshot& snapshot, unsigned workers) {
    HandoffBuildOptions options;
    options.workers = workers;
    std::string lines;
    for (const ArtifactOutcome& outcome : VistrelHandoffBuilder::audit(snapshot, options))
        lines += outcome.description() + "\n";
    return lines;
}

} // namespace kinovane::test
