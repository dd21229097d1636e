// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <boost/json.hpp>

#include "film/next_step.hpp"

namespace kinovane::tool {

/// The path of a film as the last argument of a command, absent when the film is in the current folder. A
/// path that begins with "-" gets "./" in front.
std::vector<std::string> filmArgument(const std::filesystem::path& film);

/// The words of a command line, from "kinovane" on. `film` is the path as the user gave it.
std::vector<std::string> commandLine(const FilmCommand& command, const std::filesystem::path& film);

/// The words as a line for a shell.
std::string shellLine(const std::vector<std::string>& words);

/// The reason, wrapped, and a line for each command, such as "Next: kinovane approve final-cut my-film".
std::string nextStepText(const NextStep& step, const std::filesystem::path& film, std::size_t columns);

/// {"reason", "commands"}: each command is a list of words.
boost::json::object nextStepJSON(const NextStep& step, const std::filesystem::path& film);

} // namespace kinovane::tool
