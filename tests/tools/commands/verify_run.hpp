// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "tools/film_copy.hpp"

namespace kinovane::test {

/// Verifies a film. In the result, "{TIME}" and "{FILM}" stand for what differs from run to run.
inline Outcome verify(const std::filesystem::path& location, const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments{"verify", location.string()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    Outcome outcome = withoutTimes(runCommandLineTool(std::move(arguments)));
    // At the end of a line, the next step names the film.
    const std::filesystem::path folder =
        location.filename() == "run.json" ? location.parent_path() : location;
    outcome.out = replaced(outcome.out, " " + folder.string() + "\n", " {FILM}\n");
    return outcome;
}

inline const std::string allSound =
    "All 61 files are sound: 2.2 MB in {TIME}.\n61 of 64 recorded files examined.\n";
inline const std::string restore =
    "Next: restore the files from a copy of the film, then kinovane verify {FILM}\n";

inline std::string allButOne(const std::string& size) {
    return "60 files are sound: " + size + " in {TIME}.\n61 of 64 recorded files examined.\n";
}

} // namespace kinovane::test
