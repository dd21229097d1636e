// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>

#include "common/files/location.hpp"

namespace kinovane {

/// The directories in which programs are looked up after those of PATH.
inline constexpr std::array fixedSearchDirectories{"/opt/homebrew/bin", "/usr/local/bin", "/usr/bin", "/bin"};

/// A search for a program, with the rules of FilmToolClient::resolveExecutable. PATH and the working
/// directory are those at the time of construction. The user database and the file system are read by `find`.
class ExecutableLookup {
  public:
    explicit ExecutableLookup(std::string name);

    /// Returns the program's absolute path. Throws FilmToolError: executableNotFound, or launchFailed if the
    /// user database or the working directory cannot be read.
    std::filesystem::path find() const;

  private:
    std::optional<std::filesystem::path> executableAt(const std::filesystem::path& location) const;

    std::string name_;
    std::string searchPath_;
    WorkingDirectory workingDirectory_;
};

} // namespace kinovane
