// SPDX-License-Identifier: Apache-2.0

#include <functional>

#include <gtest/gtest.h>

#include "support/recorder.hpp"
#include "support/sample_film.hpp"
#include "support/task_failure.hpp"
#include "tooling/film_tool/command_rows.hpp"

namespace kinovane::test {

namespace {

TEST(FilmToolCommand, RefusesATextWithANULByte) {
    const std::string cut("cut\0short", 9);
    const std::string prefix = "Could not launch film command: " + Recorder::path();
    const std::string argument = prefix + ": an argument holds a NUL byte";
    const std::string variable = prefix + ": an environment variable holds a NUL byte";
    struct Row {
        const char* sentence;
        std::function<std::string(const FilmToolClient&)> failure;
        std::string expected;
    };
    using Client = FilmToolClient;
    const std::vector<Row> rows{
        {"an idea", [&](const Client& tool) { return failureOf(tool.plan(cut, "t", 1, "/f")); }, argument},
        {"a title", [&](const Client& tool) { return failureOf(tool.plan("i", cut, 1, "/f")); }, argument},
        {"pi for a plan", [&](const Client& tool) { return failureOf(tool.plan("i", "t", 1, "/f", cut)); },
         argument},
        {"a gate", [&](const Client& tool) { return failureOf(tool.approve("/r", cut, "n", "b")); },
         argument},
        {"a note", [&](const Client& tool) { return failureOf(tool.approve("/r", "g", cut, "b")); },
         argument},
        {"a person", [&](const Client& tool) { return failureOf(tool.approve("/r", "g", "n", cut)); },
         argument},
        {"a shot", [&](const Client& tool) { return failureOf(tool.reroll("/r", cut, "n")); }, argument},
        {"a note for a shot", [&](const Client& tool) { return failureOf(tool.reroll("/r", "s", cut)); },
         argument},
        {"pi for a run", [&](const Client& tool) { return failureOf(tool.advance("/r", cut)); }, argument},
        {"a provider for a run", [&](const Client& tool) { return failureOf(tool.advance("/r", {}, cut)); },
         variable},
        {"a model for a run", [&](const Client& tool) { return failureOf(tool.advance("/r", {}, {}, cut)); },
         variable},
        {"pi for a review", [&](const Client& tool) { return failureOf(tool.review("/r", cut)); }, argument},
        {"a provider for a review", [&](const Client& tool) { return failureOf(tool.review("/r", {}, cut)); },
         variable},
        {"a model for a review",
         [&](const Client& tool) { return failureOf(tool.review("/r", {}, {}, cut)); }, variable},
        {"pi for an agent", [&](const Client& tool) { return failureOf(tool.agentLaunchSpec("/r", cut)); },
         argument},
        {"a byte at the end",
         [&](const Client& tool) { return failureOf(tool.reroll("/r", "s", std::string("n\0", 2))); },
         argument},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Recorder recorder;
        EXPECT_EQ(row.failure(FilmToolClient(Recorder::path())), row.expected);
        EXPECT_FALSE(recorder.ran());
    }
}

TEST(FilmToolCommand, ReportsAMissingTool) {
    const TemporaryDirectory directory;
    const std::string plain = directory.write("film", "not to be executed").string();
    const std::string cut(Recorder::path() + std::string("\0x", 2));
    for (const std::string& name :
         {std::string("kinovane-no-such-tool"), std::string("~/no-such-directory/film"), std::string(), plain,
          directory.path().string(), cut})
        for (const CommandRow& row : commandRows()) {
            SCOPED_TRACE(row.sentence + " with " + name);
            const Recorder recorder(row.reply);
            EXPECT_EQ(row.failure(FilmToolClient(name)), "Required executable not found: " + name);
            EXPECT_FALSE(recorder.ran());
        }
}

TEST(FilmToolCommand, ReportsAToolThatCannotBeStarted) {
    const TemporaryDirectory directory;
    const std::string program = brokenProgram(directory).string();
    const FilmToolClient client(program);
    for (const CommandRow& row : commandRows()) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(row.failure(client),
                  "Could not launch film command: " + program + ": posix_spawn: Exec format error");
    }
}

TEST(FilmToolCommand, ReportsAFailedTool) {
    struct End {
        const char* status;
        const char* errors;
        const char* expected;
    };
    const std::vector<End> ends{
        {"3", "", "Film command exited 3."},
        {"1", "", "Film command exited 1."},
        {"255", "", "Film command exited 255."},
        {"3", "boom\n", "boom\n"},
        {"3", " \n", " \n"},
        {"2", "The film has no plan.\n\nPlan it first.", "The film has no plan.\n\nPlan it first."},
        {"1", "\xFF!", "\xEF\xBF\xBD!"},
    };
    for (const CommandRow& row : commandRows())
        for (const End& end : ends) {
            SCOPED_TRACE(row.sentence + ": " + end.expected);
            // The reply is valid, but is not decoded if the command fails.
            const Recorder recorder(row.reply);
            const Variable status("RECORDER_STATUS", end.status);
            const Variable errors("RECORDER_ERRORS", end.errors);
            EXPECT_EQ(row.failure(FilmToolClient(Recorder::path())), end.expected);
            EXPECT_TRUE(recorder.ran());
        }
}

TEST(FilmToolCommand, ReportsTheWholeResultOfAFailedTool) {
    const Recorder recorder("half a reply");
    const Variable status("RECORDER_STATUS", "3");
    const Variable errors("RECORDER_ERRORS", "boom\n");
    const FilmToolClient client(Recorder::path());
    const auto failed = [](std::vector<std::string> arguments) {
        return FilmToolError(FilmToolError::commandFailed{
            {Recorder::path(), std::move(arguments), 3, "half a reply", "boom\n"}});
    };
    EXPECT_EQ(errorOf(client.status("/r.json")), failed({"status", "/r.json"}));
    EXPECT_EQ(errorOf(client.approve("/r.json", "g", "n", "b")),
              failed({"approve", "/r.json", "--gate", "g", "--note", "n", "--approved-by", "b"}));
    EXPECT_EQ(errorOf(client.advance("/r.json")), failed({"run", "/r.json"}));
    EXPECT_EQ(errorOf(client.agentLaunchSpec("/r.json", "pi")),
              failed({"agent", "--run-manifest", "/r.json", "--pi-command", "pi", "--plugin-command",
                      Recorder::path(), "--print-command"}));
}

TEST(FilmToolCommand, RefusesAReplyThatCannotBeDecoded) {
    struct Reply {
        const char* output;
        const char* expected;
    };
    const std::vector<Reply> replies{
        {"", "line 1, column 1: the document ends too early"},
        {"done", "line 1, column 1: this is not valid JSON"},
        {"{\"status\":\n", "line 2, column 1: the document ends too early"},
        {"{}\n{}", "line 2, column 1: something follows the end of the document"},
        {"Planning …\n{}", "line 1, column 1: this is not valid JSON"},
        {"[]", "expected an object, found a list"},
        {"null", "expected an object, found null"},
    };
    for (const CommandRow& row : commandRows())
        for (const Reply& reply : replies) {
            SCOPED_TRACE(row.sentence + ": " + reply.output);
            const Recorder recorder(reply.output);
            const Variable errors("RECORDER_ERRORS", "Nothing to worry about.\n");
            const std::string message = std::string("Film command returned invalid JSON: ") + reply.expected;
            EXPECT_EQ(row.failure(FilmToolClient(Recorder::path())), row.decodes ? message : "");
        }
}

} // namespace

} // namespace kinovane::test
