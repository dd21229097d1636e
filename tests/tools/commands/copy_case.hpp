// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <kinovane/handoff.hpp>

#include "tools/film_copy.hpp"

namespace kinovane::test {

/// The digests of all files below a folder, and the texts of its links.
inline std::map<std::string, std::string> contentsOf(const std::filesystem::path& folder) {
    std::map<std::string, std::string> contents;
    for (const std::filesystem::directory_entry& entry :
         std::filesystem::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().lexically_relative(folder).string();
        if (entry.is_symlink())
            contents[name] = "-> " + std::filesystem::read_symlink(entry.path()).string();
        else if (entry.is_regular_file())
            contents[name] = VistrelHandoffBuilder::sha256(entry.path());
    }
    return contents;
}

/// A film with a folder to copy it to.
struct Case {
    FilmCopy film;
    TemporaryDirectory directory;

    std::filesystem::path target() const { return directory / "copy"; }

    Outcome copy(const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments{"copy", film.root().string(), target().string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        Outcome outcome = withoutTimes(runCommandLineTool(std::move(arguments)));
        outcome.out = replaced(outcome.out, command(), "{COMMAND}");
        return outcome;
    }

    std::string command() const { return "kinovane copy " + film.root().string() + " " + target().string(); }

    std::string complete() const { return "The copy is complete: " + target().string() + "\n"; }
};

} // namespace kinovane::test
