// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace simulator {

/// The version of the manifest that the film tool hands over to the importer.
inline constexpr std::string_view handoffContract = "quexrun/film-vistrel-handoff.v1";

/// Whether artifacts of this kind are handed over.
bool isHandedOver(std::string_view kind);

/// The id of an asset: it is determined by the file's path and digest alone.
std::string assetId(std::string_view path, std::string_view sha256);

} // namespace simulator
