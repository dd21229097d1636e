// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

/// A film of two files that are handed over and one that is not, and a library to import it into.
class PublishFilm {
  public:
    PublishFilm();

    /// Runs "publish" on the film, with the simulator of Vistrel unless the options name another importer.
    Outcome publish(std::vector<std::string> options = {},
                    std::map<std::string, std::string> environment = {}) const;

    /// The steps that are shown until then.
    std::string loaded() const; ///< With the warnings.
    std::string verified() const;
    std::string written(const std::filesystem::path& manifest) const;
    std::string written() const { return written(manifest()); }
    std::string writtenInDryRun() const;

    std::filesystem::path root() const { return workspace.directory.path(); }
    std::filesystem::path manifest() const { return root() / "vistrel-handoff.json"; }
    std::filesystem::path library() const { return home / "library"; }
    std::filesystem::path project() const { return library() / "vistrel_p_148de9c5a7a4"; }

    TemporaryDirectory home;
    WorkspaceMaker workspace;
};

inline constexpr const char* checkedStep = "Checked   Vistrel accepts 1 scene, 1 shot, 2 files\n";
inline constexpr const char* importedStep = "Imported  1 scene, 1 shot, 2 files\n";
inline constexpr const char* importResult = "vistrel://projects/vistrel_p_148de9c5a7a4\n";
inline constexpr const char* dryRunResult =
    "Vistrel accepts the film. Nothing was imported: this was a dry run.\n";
inline constexpr const char* nothingChanged =
    "          Since the last manifest: no file and no shot changed\n";
inline constexpr const char* nothingWritten = "No manifest was written, and nothing was imported.\n";

} // namespace kinovane::test
