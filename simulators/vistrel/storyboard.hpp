// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

#include "manifest.hpp"

namespace vistrel {

/// Where a project keeps an asset, relative to the project's folder.
std::filesystem::path storedPath(const Asset& asset);

/// The film as a timed storyboard: a JSON document for people, all times in whole milliseconds.
std::string storyboardOf(const Manifest& manifest);

} // namespace vistrel
