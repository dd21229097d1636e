// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>

#include <gtest/gtest.h>

#include "support/recorder.hpp"
#include "support/task_failure.hpp"
#include "tooling/film_tool/command_rows.hpp"
#include "tooling/film_tool/replies.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

/// This process's environment with the additions merged over it, sorted as the recorder's.
Texts ownEnvironmentWith(const std::map<std::string, std::string>& additions) {
    Texts entries = ownEnvironment();
    std::erase_if(entries, [&](const std::string& entry) {
        return additions.contains(entry.substr(0, entry.find('=')));
    });
    for (const auto& [name, value] : additions)
        entries.push_back(std::string(name).append("=").append(value));
    std::sort(entries.begin(), entries.end());
    return entries;
}

TEST(FilmToolCommand, PassesItsArgumentsAndEnvironment) {
    for (const CommandRow& row : commandRows()) {
        SCOPED_TRACE(row.sentence);
        const Recorder recorder(row.reply);
        EXPECT_EQ(row.failure(FilmToolClient(Recorder::path())), "");
        EXPECT_EQ(recorder.arguments(), row.arguments);
        EXPECT_EQ(recorder.environment(), ownEnvironmentWith(row.environment));
    }
}

// The application may itself have been started with these variables.
TEST(FilmToolCommand, InheritsProviderAndModelUnlessTheCallSetsThem) {
    const Variable provider("QUEX_FILM_TOOLS_PI_PROVIDER", "inherited provider");
    const Variable model("QUEX_FILM_TOOLS_PI_MODEL", "inherited model");
    for (const CommandRow& row : commandRows()) {
        SCOPED_TRACE(row.sentence);
        const Recorder recorder(row.reply);
        EXPECT_EQ(row.failure(FilmToolClient(Recorder::path())), "");
        EXPECT_EQ(recorder.environment(), ownEnvironmentWith(row.environment));
    }
}

TEST(FilmToolCommand, PassesDurationsInDecimal) {
    struct Row {
        std::int64_t seconds;
        std::string expected;
    };
    const std::vector<Row> rows{{90, "90"},
                                {0, "0"},
                                {-5, "-5"},
                                {1000000, "1000000"},
                                {INT64_MAX, "9223372036854775807"},
                                {INT64_MIN, "-9223372036854775808"}};
    for (const Row& row : rows) {
        const Recorder recorder(planReply("/r.json"));
        EXPECT_EQ(failureOf(FilmToolClient(Recorder::path()).plan("i", "t", row.seconds, "/films")), "");
        EXPECT_EQ(recorder.arguments(), (Texts{"plan", "--idea", "i", "--title", "t", "--duration",
                                               row.expected, "--output-dir", "/films"}));
    }
}

TEST(FilmToolCommand, PassesTextsUnchanged) {
    struct Row {
        const char* sentence;
        std::string text;
    };
    const std::vector<Row> rows{
        {"spaces", "  a lamp  for the ferry "},
        {"quotes", R"("double" 'single' `back` \ )"},
        {"line breaks", "one\ntwo\r\nthree\n"},
        {"characters that a shell interprets", "$HOME $(id) ; rm * ? [a] {b,c} | & > < ~ # !"},
        {"leading dashes", "--output"},
        {"the end of the options", "--"},
        {"nothing", ""},
        {"letters of several scripts", "Brèmes – 灯 🎬"},
        {"bytes that are not UTF-8", "\xFF\xC0\x80"},
        {"a long story", longText()},
    };
    const FilmToolClient client(Recorder::path());
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const std::string& text = row.text;
        {
            const Recorder recorder(planReply("/r.json"));
            EXPECT_EQ(failureOf(client.plan(text, text, 1, "/films", text)), "");
            EXPECT_EQ(recorder.arguments(), (Texts{"plan", "--idea", text, "--title", text, "--duration", "1",
                                                   "--output-dir", "/films", "--pi-command", text}));
        }
        {
            const Recorder recorder;
            EXPECT_EQ(failureOf(client.approve("/r.json", text, text, text)), "");
            EXPECT_EQ(recorder.arguments(),
                      (Texts{"approve", "/r.json", "--gate", text, "--note", text, "--approved-by", text}));
        }
        {
            const Recorder recorder;
            EXPECT_EQ(failureOf(client.reroll("/r.json", text, text)), "");
            EXPECT_EQ(recorder.arguments(), (Texts{"reroll", "/r.json", "--shot", text, "--note", text}));
        }
        {
            const Recorder recorder;
            EXPECT_EQ(failureOf(client.review("/r.json", text, text, text)), "");
            EXPECT_EQ(recorder.arguments(), (Texts{"review", "/r.json", "--pi-command", text}));
            EXPECT_EQ(recorder.environment(), ownEnvironmentWith({{"QUEX_FILM_TOOLS_PI_PROVIDER", text},
                                                                  {"QUEX_FILM_TOOLS_PI_MODEL", text}}));
        }
    }
}

TEST(FilmToolCommand, RefusesATextThatIsTooLongForTheSystem) {
    const Recorder recorder;
    EXPECT_EQ(failureOf(FilmToolClient(Recorder::path()).reroll("/r.json", "s1", std::string(1 << 25, 'x'))),
              "Could not launch film command: " + Recorder::path() + ": posix_spawn: Argument list too long");
    EXPECT_FALSE(recorder.ran());
}

/// A call with a location.
struct LocationRow {
    const char* sentence;
    const char* what; ///< The name of the location in messages.
    std::string reply;
    std::function<std::string(const FilmToolClient&, const fs::path&)> failure;
    std::size_t position; ///< Of the location among the arguments.
};

std::vector<LocationRow> locationRows() {
    using Client = FilmToolClient;
    return {
        {"plan", "output directory", planReply("/r.json"),
         [](const Client& tool, const fs::path& path) { return failureOf(tool.plan("i", "t", 1, path)); }, 8},
        {"status", "run manifest", statusRow().fullDocument(),
         [](const Client& tool, const fs::path& path) { return failureOf(tool.status(path)); }, 1},
        {"approve", "run manifest", "",
         [](const Client& tool, const fs::path& path) {
             return failureOf(tool.approve(path, "g", "n", "b"));
         },
         1},
        {"advance", "run manifest", "",
         [](const Client& tool, const fs::path& path) { return failureOf(tool.advance(path)); }, 1},
        {"recover", "run manifest", "",
         [](const Client& tool, const fs::path& path) { return failureOf(tool.recover(path)); }, 1},
        {"reroll", "run manifest", "",
         [](const Client& tool, const fs::path& path) { return failureOf(tool.reroll(path, "s", "n")); }, 1},
        {"review", "run manifest", "",
         [](const Client& tool, const fs::path& path) { return failureOf(tool.review(path)); }, 1},
        {"exportVistrel", "run manifest", exportReceiptRow().fullDocument(),
         [](const Client& tool, const fs::path& path) { return failureOf(tool.exportVistrel(path)); }, 1},
        {"exportVistrel with an output", "output file", exportReceiptRow().fullDocument(),
         [](const Client& tool, const fs::path& path) {
             return failureOf(tool.exportVistrel("/r.json", path));
         },
         3},
        {"agentLaunchSpec", "run manifest", launchSpecRow().fullDocument(),
         [](const Client& tool, const fs::path& path) { return failureOf(tool.agentLaunchSpec(path, "pi")); },
         2},
    };
}

TEST(FilmToolCommand, PassesLocationsAsAbsolutePaths) {
    const auto here = [](const char* path) { return (fs::current_path() / path).string(); };
    struct Location {
        std::string given;
        std::string expected;
    };
    const std::vector<Location> locations{
        {"/films/a lamp/run.json", "/films/a lamp/run.json"},
        {"/films/100%20 #1?/\"Brèmes\"\n灯.json", "/films/100%20 #1?/\"Brèmes\"\n灯.json"},
        {"run.json", here("run.json")},
        {"./run.json", here("run.json")},
        {".//films/run.json", here("films/run.json")},
        {"../run.json", here("../run.json")},
        {"a lamp/run.json", here("a lamp/run.json")},
        {"--output", here("--output")},
        {"~/run.json", here("~/run.json")},
    };
    for (const LocationRow& row : locationRows())
        for (const Location& location : locations) {
            SCOPED_TRACE(std::string(row.sentence) + ": " + location.given);
            const Recorder recorder(row.reply);
            EXPECT_EQ(row.failure(FilmToolClient(Recorder::path()), location.given), "");
            const Texts arguments = recorder.arguments();
            ASSERT_GT(arguments.size(), row.position);
            EXPECT_EQ(arguments[row.position], location.expected);
        }
}

// Made absolute, an empty location would be the working directory.
TEST(FilmToolCommand, RefusesAnEmptyLocation) {
    for (const LocationRow& row : locationRows())
        for (const std::string& tool : {Recorder::path(), std::string("kinovane-no-such-tool")}) {
            SCOPED_TRACE(std::string(row.sentence) + " with " + tool);
            const Recorder recorder(row.reply);
            EXPECT_EQ(row.failure(FilmToolClient(tool), ""),
                      "Could not launch film command: the location of the " + std::string(row.what) +
                          " is empty");
            EXPECT_FALSE(recorder.ran());
        }
}

TEST(FilmToolCommand, RefusesALocationWithANULByte) {
    for (const LocationRow& row : locationRows()) {
        SCOPED_TRACE(row.sentence);
        const Recorder recorder(row.reply);
        EXPECT_EQ(row.failure(FilmToolClient(Recorder::path()), std::string("/films/run\0.json", 16)),
                  "Could not launch film command: " + Recorder::path() + ": an argument holds a NUL byte");
        EXPECT_FALSE(recorder.ran());
    }
}

} // namespace

} // namespace kinovane::test
