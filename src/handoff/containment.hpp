// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>
#include <system_error>

#include "handoff/path_resolution.hpp"

/// Whether an artifact's path stays inside the project's directory.
namespace kinovane {

/// Whether the text of a path alone makes it unsafe: it is absolute, has a component "..", names the
/// project's directory itself, or holds a NUL byte, where the system would cut it.
bool isUnsafeText(std::string_view path);

/// Whether a path leaves the project's directory, from which it was resolved. `error` is the result of
/// PathResolution::resolve.
bool leavesDirectory(const PathResolution& resolution, std::error_code error);

} // namespace kinovane
