// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "common/json_text.hpp"

namespace simulator::vistrel {

/// The text of a manifest file of at most 256 MiB.
std::string readManifestFile(const std::filesystem::path& file);

/// The manifest in the text. Refused are text that is not JSON, another contract version, a missing key and a
/// value of the wrong type. Optional keys that are null are removed.
json::object parseManifest(std::string_view text);

/// Checks a value against a schema: an object with the schema of each member, a list with the schema of its
/// elements, or the name of a type, which ends with "?" when the key may be missing or null. The first fault
/// in the order of the schema is a Refusal that says where it is, such as `shots[2].take: expected a whole
/// number, found text`. `path` is empty for the manifest itself.
void expectSchema(const json::value& value, const json::value& schema, const std::string& path);

/// Refuses a manifest whose parts contradict each other: shots that do not follow on each other, key frames
/// and clips that are not among the assets, wrong ids and paths. Opens no media file.
void checkManifest(const json::object& manifest);

} // namespace simulator::vistrel
