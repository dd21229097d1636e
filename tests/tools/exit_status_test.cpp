// SPDX-License-Identifier: Apache-2.0

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/sanitizers.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

TEST(ExitStatus, Is2ForInvalidArguments) {
    struct Row {
        std::string sentence;
        Arguments arguments;
        std::string message, help;
    };
    const std::vector<Row> rows{
        {"no command", {}, "a command is needed, such as \"kinovane status\"", "kinovane --help"},
        {"an unknown command", {"frobnicate"}, "\"frobnicate\" is not a command", "kinovane --help"},
        {"a command with a wrong letter",
         {"verfy"},
         "\"verfy\" is not a command. Did you mean \"verify\"?",
         "kinovane --help"},
        {"two workspaces", {"shots", "a", "b"}, "\"b\" is one argument too many", "kinovane shots --help"},
        {"no target", {"copy", "a"}, "TARGET is required", "kinovane copy --help"},
        {"an unknown option",
         {"inspect", "a", "--frob"},
         "\"--frob\" is not an option of kinovane inspect",
         "kinovane inspect --help"},
        {"an option with a wrong letter",
         {"verify", "--wrokers", "3"},
         "\"--wrokers\" is not an option of kinovane verify. Did you mean \"--workers\"?",
         "kinovane verify --help"},
        {"a word that is no color",
         {"verify", "--color=red"},
         "--color: \"red\" is not one of always, auto, never",
         "kinovane verify --help"},
        {"an unknown topic of help",
         {"help", "verfy"},
         "\"verfy\" is not a command. Did you mean \"verify\"?",
         "kinovane --help"},
        {"an option without its value",
         {"publish", "a", "--vistrel"},
         "--vistrel: 1 required PROGRAM missing",
         "kinovane publish --help"},
        {"no workers",
         {"publish", "a", "--vistrel", "v", "--workers", "0"},
         "--workers: \"0\" is not a whole number from 1 to 64",
         "kinovane publish --help"},
        {"fewer than no workers",
         {"publish", "a", "--vistrel", "v", "--workers=-1"},
         "--workers: \"-1\" is not a whole number from 1 to 64",
         "kinovane publish --help"},
        {"too many workers",
         {"publish", "a", "--vistrel", "v", "--workers", "65"},
         "--workers: \"65\" is not a whole number from 1 to 64",
         "kinovane publish --help"},
        {"workers in words",
         {"publish", "a", "--vistrel", "v", "--workers", "two"},
         "--workers: \"two\" is not a whole number from 1 to 64",
         "kinovane publish --help"},
        {"no workers to verify",
         {"verify", "a", "--workers", "0"},
         "--workers: \"0\" is not a whole number from 1 to 64",
         "kinovane verify --help"},
        {"an option of another command",
         {"verify", "a", "--dry-run"},
         "\"--dry-run\" is not an option of kinovane verify",
         "kinovane verify --help"},
        {"a workspace for the doctor",
         {"doctor", "a"},
         "\"a\" is one argument too many",
         "kinovane doctor --help"},
        {"a program without its name",
         {"doctor", "--pi"},
         "--pi: 1 required PROGRAM missing",
         "kinovane doctor --help"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(runCommandLineTool(row.arguments),
                  (Outcome{2, "", "kinovane: " + row.message + "\nFor help: " + row.help + "\n"}))
            << row.sentence;
}

#if !defined(KINOVANE_ADDRESS_SANITIZER) &&                                                                  \
    !defined(KINOVANE_THREAD_SANITIZER) // They need much address space.
TEST(ExitStatus, Is1WhenThereIsNotEnoughMemory) {
    const TemporaryDirectory directory;
    const std::string list = directory.write("list", "").string();
    fs::resize_file(list, std::uintmax_t{1} << 28U); // Takes no space on the disk.
    const std::string command = "ulimit -v 300000; exec \"$0\" verify \"$1\" --checksums \"$2\"";
    try {
        FilmToolClient("sh").run({"-c", command, programPath("kinovane"), sampleFilm().string(), list}).get();
        FAIL() << "no error";
    } catch (const FilmToolError& error) {
        const auto* failed = std::get_if<FilmToolError::commandFailed>(&error.value());
        ASSERT_NE(failed, nullptr) << error.what();
        EXPECT_EQ(failed->result.exitCode, 1);
        EXPECT_EQ(failed->result.stdout, "");
        EXPECT_EQ(failed->result.stderr, "kinovane: there is not enough memory\n");
    }
}
#endif

TEST(ExitStatus, Is0ForHelpAndVersion) {
    struct Row {
        Arguments arguments;
        std::string prefix;
    };
    const std::vector<Row> rows{
        {{"--version"}, "kinovane 1.0\n"},
        {{"--help"},
         "Shows the workspace of a film, verifies its files, produces it with the film tool, and publishes "
         "it\n"
         "to Vistrel.\n"},
        {{"inspect", "--help"}, "Show everything that a film's documents tell.\n"},
        {{"verify", "--help"}, "Examine a film's files, and show all that are damaged.\n"},
        {{"publish", "-h"}, "Verify a film, write its handoff manifest, import it into Vistrel.\n"},
        {{"doctor", "--help"}, "Show which external programs and models are there.\n"},
    };
    for (const Row& row : rows) {
        const Outcome outcome = runCommandLineTool(row.arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.err, "");
        EXPECT_EQ(outcome.out.substr(0, row.prefix.size()), row.prefix);
    }
}

TEST(ExitStatus, Is4ForAPathThatTheManifestCannotCarry) {
    const TemporaryDirectory directory;
    const fs::path film = directory / "caf\xe9";
    fs::copy(sampleFilm(), film, fs::copy_options::recursive);
    const Outcome outcome =
        runCommandLineTool({"publish", film.string(), "--vistrel", programPath("vistrel"), "--dry-run"});
    EXPECT_EQ(outcome.status, 4) << outcome;
    EXPECT_EQ(outcome.err, "Loaded    A Lamp for the Late Ferry\nkinovane: The film cannot be handed over:\n"
                           "  The project cannot be written: projectRoot: the text is not UTF-8\n");
    EXPECT_EQ(runCommandLineTool({"inspect", film.string(), "--json"}).status, 4);
    EXPECT_EQ(runCommandLineTool({"inspect", film.string()}).status, 4);
}

} // namespace

} // namespace kinovane::test
