#pragma once

#include <vector>

#include <kinovane/handoff.hpp>

namespace kinovane {

/// Examines all these artifacts of a project and gives their assets, in the same order. Throws what examining
/// the first bad one, in list order, throws; what the progress callback throws; or std::system_error
/// (operation_canceled) when a stop was requested.
std::vector<VistrelHandoffAsset> verifiedAssets(const std::filesystem::path& root,
                                                const std::vector<const FilmArtifact*>& artifacts,
                                                const HandoffBuildOptions& options);

} // namespace kinovane
