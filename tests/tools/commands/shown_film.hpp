// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <kinovane/handoff.hpp>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/film_copy.hpp"

namespace kinovane::test {

/// A copy of the sample film, and a folder for its page.
struct ShownFilm {
    Outcome storyboard(std::vector<std::string> options = {}, std::string film = "",
                       std::map<std::string, std::string> environment = {}) const {
        options.insert(options.begin(), {"storyboard", film.empty() ? copy.root().string() : film});
        if (std::ranges::find(options, "--output") == options.end())
            options.insert(options.end(), {"--output", page.string()});
        return runCommandLineTool(std::move(options), std::move(environment));
    }

    std::string text() const { return contentOf(page); }

    /// Writes the handoff manifest of the film, with other paths where wanted.
    std::filesystem::path writeManifest(const std::filesystem::path& to, const std::string& root = "") const {
        const VistrelHandoff handoff =
            VistrelHandoffBuilder::build(FilmProjectLoader::load(copy.root() / "run.json"),
                                         root.empty() ? copy.root().string() : root, "2026-03-01T14:05:09Z");
        VistrelHandoffBuilder::write(handoff, to);
        return to;
    }

    FilmCopy copy;
    TemporaryDirectory folder;
    std::filesystem::path page = folder / "page.html";
};

} // namespace kinovane::test
