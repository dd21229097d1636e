// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include <kinovane/workspace.hpp>

#include "common/digest.hpp"

namespace kinovane {

/// The identifier of an artifact's asset: "film_asset_" and 20 hexadecimal digits. It depends on the path and
/// the recorded digest only, so it stays the same from build to build and when the project is moved. Throws
/// JSONEncodingError when one of the two is not UTF-8. `digest` is used for the computation.
std::string stableAssetID(const FilmArtifact& artifact, Digest& digest);

/// Throws what stableAssetID would throw for the text of this artifact.
void requireAssetID(const FilmArtifact& artifact);

} // namespace kinovane
