// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "common/files/location.hpp"

namespace kinovane {

/// A search for a program, as FilmToolClient::resolveExecutable does it. PATH and the working directory are
/// those of the moment at which it was made; user database and files are asked by `find`.
class ExecutableLookup {
  public:
    explicit ExecutableLookup(std::string name);

    /// The program's absolute location. Throws FilmToolError: executableNotFound, or launchFailed when the
    /// user database or the working directory could not be read.
    std::filesystem::path find() const;

  private:
    std::optional<std::filesystem::path> executableAt(const std::filesystem::path& location) const;

    std::string name_;
    std::string searchPath_;
    WorkingDirectory workingDirectory_;
};

} // namespace kinovane
