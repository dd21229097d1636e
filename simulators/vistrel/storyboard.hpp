// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include "common/record.hpp"

namespace simulator::vistrel {

/// The path of an asset in its project, relative to the project's folder.
std::filesystem::path storedPath(const json::object& asset);

/// The film as a timed storyboard for people, all times in whole milliseconds.
json::object storyboardOf(const json::object& manifest);

} // namespace simulator::vistrel
