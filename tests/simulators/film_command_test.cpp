// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include "simulators/simulator_call.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

const std::string usage =
    "usage: film plan --idea <idea> --title <title> --duration <seconds> --output-dir <folder>\n"
    "       film plan --idea <idea> --title <title> --duration <seconds> --output-dir <folder> --pi-command "
    "<pi>\n"
    "       film status <run.json>\n"
    "       film approve <run.json> --gate <gate> --note <note> --approved-by <name>\n"
    "       film run <run.json>\n"
    "       film run <run.json> --pi-command <pi>\n"
    "       film recover <run.json>\n"
    "       film reroll <run.json> --shot <shot> --note <note>\n"
    "       film review <run.json>\n"
    "       film review <run.json> --pi-command <pi>\n"
    "       film export-vistrel <run.json>\n"
    "       film export-vistrel <run.json> --output <file>\n"
    "       film agent --run-manifest <run.json>\n"
    "       film agent --run-manifest <run.json> --pi-command <pi>\n"
    "       film agent --run-manifest <run.json> --pi-command <pi> --plugin-command <film> --print-command\n"
    "<seconds> is a whole number from 1 on. A file whose name begins with \"-\" is written as \"./-name\".\n";

/// Arguments that are not accepted have no effect.
void expectUsage(const std::vector<std::string>& arguments) {
    EXPECT_EQ(call(programPath("film"), arguments),
              (ProcessResult{programPath("film"), arguments, 2, "", usage}));
}

TEST(FilmCommand, AcceptsOnlyTheFormsOfItsUsage) {
    const TemporaryDirectory directory;
    const std::string run =
        FilmToolClient(programPath("film")).plan("i", "t", 3, directory / "film").get().string();
    const auto before = contentOf(directory / "film/film-tool-log.jsonl");
    struct Row {
        const char* sentence;
        std::vector<std::string> arguments;
    };
    const std::vector<Row> rows{
        {"nothing", {}},
        {"an empty word", {""}},
        {"help", {"--help"}},
        {"an unknown command", {"delete", run}},
        {"a command in capitals", {"Status", run}},
        {"no film", {"status"}},
        {"an empty film", {"status", ""}},
        {"two films", {"status", run, run}},
        {"a film that begins like an option", {"status", "-run.json"}},
        {"an extra argument", {"recover", run, ""}},
        {"an option of another command", {"status", run, "--pi-command", "pi"}},
        {"an option without its value", {"run", run, "--pi-command"}},
        {"an option in one word", {"run", run, "--pi-command=pi"}},
        {"an option twice", {"run", run, "--pi-command", "pi", "--pi-command", "pi"}},
        {"the option first", {"run", "--pi-command", "pi", run}},
        {"an approval without a name", {"approve", run, "--gate", "plan", "--note", "n"}},
        {"an approval in another order",
         {"approve", run, "--note", "n", "--gate", "plan", "--approved-by", "m"}},
        {"a shot without a note", {"reroll", run, "--shot", "shot-01"}},
        {"a note without a shot", {"reroll", run, "--note", "n"}},
        {"an output without a file", {"export-vistrel", run, "--output", ""}},
        {"an agent without its option", {"agent", run}},
        {"an agent's plugin without a command",
         {"agent", "--run-manifest", run, "--plugin-command", "film", "--print-command"}},
        {"an agent's plugin that is not printed",
         {"agent", "--run-manifest", run, "--pi-command", "pi", "--plugin-command", "film"}},
        {"an agent that is printed without a plugin",
         {"agent", "--run-manifest", run, "--pi-command", "pi", "--print-command"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        expectUsage(row.arguments);
    }
    EXPECT_EQ(contentOf(directory / "film/film-tool-log.jsonl"), before);
}

TEST(FilmCommand, AcceptsOnlyWholeSeconds) {
    const TemporaryDirectory directory;
    const std::string folder = (directory / "film").string();
    const auto plan = [&](const std::string& seconds) {
        return std::vector<std::string>{"plan",  "--idea",       "i",   "--title", "t", "--duration",
                                        seconds, "--output-dir", folder};
    };
    for (const char* seconds : {"", "0", "-3", "+3", "03", "3.0", "3s", " 3", "1e3", "1000000000"}) {
        SCOPED_TRACE(seconds);
        expectUsage(plan(seconds));
    }
    std::vector<std::string> elsewhere = plan("3");
    elsewhere.back() = "--pi-command";
    expectUsage(elsewhere);
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_TRUE(call(programPath("film"), plan("3")).succeeded());
}

TEST(FilmCommand, RefusesAMissingFilmWithStatusOne) {
    const TemporaryDirectory directory;
    const std::string run = (directory / "run.json").string();
    for (const char* command : {"status", "run", "recover", "review", "export-vistrel"}) {
        SCOPED_TRACE(command);
        EXPECT_EQ(call(programPath("film"), {command, run}),
                  (ProcessResult{
                      programPath("film"), {command, run}, 1, "", "there is no film at \"" + run + "\"\n"}));
    }
    EXPECT_EQ(namesIn(directory.path()), std::vector<std::string>{});
}

} // namespace
} // namespace kinovane::test
