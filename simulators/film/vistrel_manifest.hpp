// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>

#include "workspace.hpp"

namespace simulator::film {

/// The handoff manifest of a film, and the counts in its receipt.
struct VistrelManifest {
    json::object document;
    std::int64_t shots = 0, assets = 0, bytes = 0;
};

/// Refuses a film without a plan, and one with a file that is missing, lies outside the workspace, or is not
/// what the project says it is.
VistrelManifest vistrelManifestOf(const Workspace& workspace);

} // namespace simulator::film
