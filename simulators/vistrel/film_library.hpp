// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string_view>

#include "asset_files.hpp"
#include "manifest.hpp"

namespace vistrel {

/// The folder in which every imported film has a folder of its own, named by its project id.
class FilmLibrary {
  public:
    /// The library that the environment variable VISTREL_LIBRARY names.
    static FilmLibrary fromEnvironment();

    /// Takes the film in, or puts it in the place of an earlier import of it. The project is built in a
    /// folder beside its place and moved there when it is complete: a program that is stopped half-way leaves
    /// the earlier import as it was. Imports of one film at the same time wait for each other.
    void import(const Manifest& manifest, std::string_view manifestText, AssetFiles& files) const;

  private:
    explicit FilmLibrary(std::filesystem::path folder) : folder_(std::move(folder)) {}

    std::filesystem::path folder_;
};

} // namespace vistrel
