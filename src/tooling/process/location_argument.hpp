// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kinovane {

/// A file location as an argument of a program: its absolute path. `what` names the location in messages.
/// Throws FilmToolError (launchFailed) if the location is empty, because it would otherwise become the
/// working directory, or if it is relative and the working directory cannot be read.
std::string locationArgument(std::string_view what, const std::filesystem::path& location);

} // namespace kinovane
