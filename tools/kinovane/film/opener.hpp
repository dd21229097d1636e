// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include <kinovane/stop.hpp>

namespace kinovane::tool {

/// The program that opens a file as the user has chosen it for the whole system.
#ifdef __APPLE__
inline constexpr const char* systemOpener = "open";
#else
inline constexpr const char* systemOpener = "xdg-open";
#endif

/// Runs the opener with an absolute path and waits for it. The opener's input and output are /dev/null.
/// Throws CommandError (`program`) when it is missing or fails, and std::system_error (`operation_canceled`)
/// when it was stopped.
void openWithSystem(const std::filesystem::path& file, const StopToken& stop);

} // namespace kinovane::tool
