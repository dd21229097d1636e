// SPDX-License-Identifier: Apache-2.0

#include "film/next_step_text.hpp"

#include <algorithm>
#include <system_error>

#include <kinovane/workspace.hpp>

#include "terminal/display_width.hpp"
#include "terminal/shell_word.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

constexpr std::size_t mostReasonLines = 8;

/// A folder with its run manifest is named by the folder.
fs::path folderOf(const fs::path& film) {
    if (film.filename() != FilmWorkspaceDocument::runManifest)
        return film;
    return film.has_parent_path() ? film.parent_path() : fs::path(".");
}

} // namespace

std::vector<std::string> filmArgument(const fs::path& film) {
    const fs::path folder = folderOf(film);
    std::error_code notFound;
    if (fs::equivalent(folder, ".", notFound))
        return {};
    const std::string path = folder.string();
    return {path.starts_with("-") ? "./" + path : path};
}

std::vector<std::string> commandLine(const FilmCommand& command, const fs::path& film) {
    std::vector<std::string> words{"kinovane", std::string(command.name)};
    const auto append = [&](const std::vector<std::string>& more) {
        words.insert(words.end(), more.begin(), more.end());
    };
    const bool looksLikeOption =
        std::ranges::any_of(command.arguments, [](const std::string& word) { return word.starts_with("-"); });
    if (looksLikeOption) {
        append(command.options);
        words.emplace_back("--");
    }
    append(command.arguments);
    append(filmArgument(film));
    if (!looksLikeOption)
        append(command.options);
    return words;
}

std::string shellLine(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words)
        line += (line.empty() ? "" : " ") + shellWord(word);
    return line;
}

std::string nextStepText(const NextStep& step, const fs::path& film, std::size_t columns) {
    std::string text;
    const std::vector<std::string> lines =
        wrapped(fitted(shown(step.reason), columns * mostReasonLines), columns);
    for (const std::string& line : lines)
        text += line + "\n";
    for (const FilmCommand& command : step.commands)
        text += std::string(command.label) + ": " +
                styled(Style::heading, shellLine(commandLine(command, film))) + "\n";
    return text;
}

json::object nextStepJSON(const NextStep& step, const fs::path& film) {
    json::array commands;
    for (const FilmCommand& command : step.commands) {
        const std::vector<std::string> words = commandLine(command, film);
        commands.emplace_back(json::array(words.begin(), words.end()));
    }
    return {{"reason", step.reason}, {"commands", commands}};
}

} // namespace kinovane::tool
