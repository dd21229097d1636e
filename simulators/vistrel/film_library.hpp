// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string_view>

#include "asset_files.hpp"

namespace simulator::vistrel {

/// The folder that contains a folder for each imported film, named by its project id.
class FilmLibrary {
  public:
    /// The library that the environment variable VISTREL_LIBRARY names.
    static FilmLibrary fromEnvironment();

    /// Imports the film, or replaces an earlier import of it. The project is built in a temporary folder and
    /// renamed when it is complete: an import that is stopped never leaves half a project. Concurrent
    /// imports of one film wait for each other.
    void import(const json::object& manifest, std::string_view manifestText, AssetFiles& files) const;

  private:
    explicit FilmLibrary(std::filesystem::path folder) : folder_(std::move(folder)) {}

    std::filesystem::path folder_;
};

} // namespace simulator::vistrel
