// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/sample_film.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

/// A command in the README, and the text below it.
struct Example {
    std::string command;
    std::string output;
};

/// The commands in blocks of the language "console": lines that begin with "$ ".
std::vector<Example> examplesOf(const fs::path& document) {
    std::vector<Example> examples;
    std::istringstream text(contentOf(document));
    bool inBlock = false;
    for (std::string line; std::getline(text, line);)
        if (line.starts_with("```"))
            inBlock = line == "```console";
        else if (inBlock && line.starts_with("$ "))
            examples.push_back({line.substr(2), ""});
        else if (inBlock)
            examples.back().output += line + "\n";
    return examples;
}

/// Times and rates differ from run to run, and each run has a folder of its own.
std::string withoutMeasurements(const std::string& text, const fs::path& folder) {
    static const std::regex duration(R"(\b[0-9.:]+ m?s\b)");
    static const std::regex rate(R"(\b[0-9.]+ [kMG]?B/s)");
    return replaced(std::regex_replace(std::regex_replace(text, rate, "RATE"), duration, "TIME"),
                    folder.string(), "/films");
}

/// Damaged files are told in the order in which several workers find them.
std::vector<std::string> sortedLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    std::ranges::sort(lines);
    return lines;
}

TEST(Readme, ShowsTheOutputOfTheCommands) {
    const TemporaryDirectory folder;
    const fs::path folderPath = fs::canonical(folder / ".");
    fs::copy(sampleFilm(), folder / "ferry", fs::copy_options::recursive);
    fs::copy(sampleFilm(), folder / "damaged", fs::copy_options::recursive);
    fs::resize_file(folder / "damaged" / "clips" / "shot-03.mp4", 1000);
    fs::remove(folder / "damaged" / "poster.png");
    const std::vector<Example> examples = examplesOf(fs::path(KINOVANE_TOOL_SOURCES) / "README.md");
    ASSERT_GE(examples.size(), 4U);
    RunOptions options;
    options.workingDirectory = folderPath;
    const fs::path programs = fs::path(programPath("kinovane")).parent_path();
    for (const Example& example : examples) {
        std::string shown;
        try {
            const ProcessResult result = FilmToolClient("sh")
                                             .run({"-c", example.command + " 2>&1"},
                                                  {{"PATH", programs.string() + ":/usr/bin:/bin"}}, options)
                                             .get();
            shown = result.stdout;
        } catch (const FilmToolError& error) {
            if (const auto* failed = std::get_if<FilmToolError::commandFailed>(&error.value()))
                shown = failed->result.stdout;
        }
        const std::string actual = withoutMeasurements(shown, folderPath);
        const std::string expected = withoutMeasurements(example.output, "/films");
        if (example.command.starts_with("kinovane verify "))
            EXPECT_EQ(sortedLines(actual), sortedLines(expected)) << example.command;
        else
            EXPECT_EQ(actual, expected) << example.command;
    }
}

} // namespace

} // namespace kinovane::test
