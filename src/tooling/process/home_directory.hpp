// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>

namespace kinovane {

/// The current user's home directory in the user database; the environment's HOME is ignored. Absent if the
/// database does not hold the user, or holds no absolute home directory for the user. Throws
/// std::system_error, whose text begins with the name of the call that failed, if the database cannot be
/// read.
std::optional<std::string> homeDirectory();

/// The same for another user.
std::optional<std::string> homeDirectoryOf(const std::string& user);

} // namespace kinovane
