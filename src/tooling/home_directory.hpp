#pragma once

#include <optional>
#include <string>

namespace kinovane {

/// The current user's home directory as the user database has it, whatever the environment says. Only a user
/// whom the database does not know is believed the environment's HOME.
std::optional<std::string> homeDirectory();

/// Another user's home directory; absent when there is no such user.
std::optional<std::string> homeDirectoryOf(const std::string& user);

} // namespace kinovane
