// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "common/json_text.hpp"

namespace simulator::vistrel {

/// The path of an asset in its project, relative to the project's folder.
std::filesystem::path storedPath(const json::object& asset);

/// The film as a timed storyboard for people, all times in whole milliseconds.
json::object storyboardOf(const json::object& manifest);

/// The importer's reply for an accepted film; the same for a dry run and for the import itself.
json::object receiptFor(const json::object& manifest);

/// The project id of a film and the name of its folder. It depends on the id of the film's own project only;
/// two such ids never get the same. It is safe as a file name.
std::string projectIdFor(const json::object& manifest);

/// The scene of each shot, counted from 1. Consecutive shots at one location are one scene.
std::vector<std::int64_t> sceneNumbers(const json::array& shots);

} // namespace simulator::vistrel
