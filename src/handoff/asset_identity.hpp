// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include <kinovane/workspace.hpp>

#include "common/digest.hpp"

namespace kinovane {

/// The identifier of an artifact's asset: "film_asset_" and 20 hexadecimal digits. It depends on path and
/// recorded digest alone, so it stays the same from build to build and wherever the project lies. Throws
/// JSONEncodingError when one of the two is not UTF-8.
std::string stableAssetID(const FilmArtifact& artifact, Digest& digest);

} // namespace kinovane
