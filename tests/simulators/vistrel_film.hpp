// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <boost/json.hpp>

#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {

/// The sample film's manifest and a library to import it into.
class VistrelFilm {
  public:
    VistrelFilm();

    TemporaryDirectory directory;
    std::filesystem::path manifest = directory / "manifest.json";
    std::filesystem::path library = directory / "library";

    /// The manifest, to be changed.
    boost::json::value document;

    void save() const; ///< Writes the document where the manifest is.

    /// Runs the simulator; returns the result also when it refuses.
    ProcessResult run(std::vector<std::string> arguments) const;
    ProcessResult check() const;
    ProcessResult import() const;
};

/// Everything below a directory: names relative to it, each with its content.
std::map<std::string, std::string> treeOf(const std::filesystem::path& directory);

} // namespace kinovane::test
