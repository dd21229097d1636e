// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "common/record.hpp"

namespace simulator::vistrel {

/// The text of a manifest file of at most 256 MiB.
std::string readManifestFile(const std::filesystem::path& file);

/// The manifest in the text. Refused are text that is not JSON, another contract version, a missing key and a
/// value of the wrong type; the meaning of the values is left to checkManifest. Optional keys that are null
/// are removed.
json::object parseManifest(std::string_view text);

} // namespace simulator::vistrel
