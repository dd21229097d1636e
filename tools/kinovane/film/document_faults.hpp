// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include <kinovane/preflight.hpp>
#include <kinovane/workspace.hpp>

namespace kinovane::tool {

/// What in the documents prevents a handoff of the film, whenever it is finished. That there is no plan yet
/// is not among it.
std::vector<PreflightFinding> documentFaults(const FilmWorkspaceSnapshot& film);

} // namespace kinovane::tool
