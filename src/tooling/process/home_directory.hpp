// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>

namespace kinovane {

/// The current user's home directory as the user database has it, whatever the environment says. Absent when
/// the database does not know the user, or no absolute home directory of the user. Throws std::system_error,
/// whose text begins with the name of the call that failed, when the database cannot be asked.
std::optional<std::string> homeDirectory();

/// Another user's home directory, likewise.
std::optional<std::string> homeDirectoryOf(const std::string& user);

} // namespace kinovane
