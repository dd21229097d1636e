// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>
#include <vector>

#include <kinovane/workspace.hpp>

namespace kinovane {

/// Whether artifacts of this kind go into the handoff. Kinds are compared exactly.
bool isExportedKind(std::string_view kind);

/// The artifacts of a project that go into a handoff.
std::vector<const FilmArtifact*> exportedArtifacts(const FilmProject& project);

} // namespace kinovane
