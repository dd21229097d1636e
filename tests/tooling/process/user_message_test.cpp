// SPDX-License-Identifier: Apache-2.0

#include <chrono>
#include <filesystem>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include <kinovane/agent_runtime.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

std::string messageOf(const std::function<void()>& operation) {
    try {
        operation();
        return "no error";
    } catch (const std::exception& error) {
        return userMessage(error);
    }
}

// What the C++ library calls these operations.
#ifdef _LIBCPP_VERSION
const std::string fileSizeFailed = "file_size";
const std::string renameFailed = "rename";
#else
const std::string fileSizeFailed = "cannot get file size";
const std::string renameFailed = "cannot rename";
#endif

RunOptions atTimeLimit() {
    RunOptions options;
    options.timeLimit = std::chrono::milliseconds(0);
    return options;
}

RunOptions stopped() {
    StopSource source;
    source.requestStop();
    RunOptions options;
    options.stop = source.token();
    return options;
}

RunOptions withUnusedStop() {
    RunOptions options;
    options.stop = StopSource().token();
    return options;
}

TEST(UserMessage, IsOneTextForEveryFailure) {
    const auto noEntry = std::make_error_code(std::errc::no_such_file_or_directory);
    struct Row {
        std::string_view sentence;
        std::function<void()> operation;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"an error of the library", [] { FilmProjectLoader::load("/no/such/run.json"); },
         "No run.json exists at /no/such/run.json."},
        {"a file that is not there", [] { VistrelHandoffBuilder::sha256(fs::path("/no/such/file")); },
         "cannot open: /no/such/file: No such file or directory"},
        {"an error of the C++ library", [] { (void)fs::file_size("/no/such/file"); },
         fileSizeFailed + ": /no/such/file: No such file or directory"},
        {"two paths", [] { fs::rename("/no/such/a", "/no/such/b"); },
         renameFailed + ": /no/such/a and /no/such/b: No such file or directory"},
        {"no path", [&] { throw fs::filesystem_error("cannot read", noEntry); },
         "cannot read: No such file or directory"},
        {"no operation", [&] { throw fs::filesystem_error("", "/f", noEntry); },
         "/f: No such file or directory"},
        {"a system error", [&] { throw std::system_error(noEntry, "poll"); },
         "poll: No such file or directory"},
        {"a canceled operation",
         [] { throw std::system_error(std::make_error_code(std::errc::operation_canceled)); },
         "Stopped on request."},
        {"a canceled operation with words of its own",
         [] { throw std::system_error(std::make_error_code(std::errc::operation_canceled), "read"); },
         "read: Operation canceled"},
        {"a time limit that was reached",
         [] { (void)FilmToolClient("/bin/sleep").run({"60"}, {}, atTimeLimit()).get(); },
         "sleep: stopped because the time limit was reached"},
        {"the same for the importer", [] { (void)VistrelClient("/bin/sleep").import("/m", stopped()).get(); },
         "sleep: stopped at the user's request"},
        {"a stop", [] { (void)FilmToolClient("/bin/sleep").run({}, {}, stopped()).get(); },
         "sleep: stopped at the user's request"},
        {"a time limit of an unknown program", [] { throw RunStopped(std::errc::timed_out, {}); },
         "The program was stopped when its time limit was over."},
        {"a stop of an unknown program", [] { throw RunStopped(std::errc::operation_canceled, {}); },
         "The program was stopped on request."},
        {"out of memory", [] { throw std::bad_alloc(); }, "out of memory"},
        {"anything else", [] { throw std::runtime_error("reason"); }, "reason"},
        {"no text", [] { throw std::runtime_error(""); }, "unknown failure"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(messageOf(row.operation), row.expected);
    }
}

TEST(UserMessage, NamesTheProgramThatFailed) {
    struct Row {
        std::string_view sentence;
        std::function<void()> operation;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"the film tool is what the words speak of", [] { (void)FilmToolClient("/bin/false").run({}).get(); },
         "Film command exited 1."},
        {"Vistrel ended without words", [] { (void)VistrelClient("/bin/false").validate("/m").get(); },
         "false: Film command exited 1."},
        {"Vistrel sent no receipt", [] { (void)VistrelClient("/bin/true").import("/m").get(); },
         "true: Film command returned invalid JSON: line 1, column 1: the document ends too early"},
        {"Vistrel was not found", [] { (void)VistrelClient("no-such-vistrel").import("/m").get(); },
         "Required executable not found: no-such-vistrel"},
        {"the agent runtime ended without words",
         [] { (void)QuexRunAgentClient("/bin/false").status().get(); }, "false: Film command exited 1."},
        {"a signal ended the program",
         [] { (void)FilmToolClient("/bin/sh").run({"-c", "kill -KILL $$"}).get(); },
         "sh was ended by signal 9 (Killed)."},
        {"a signal ended the program after it wrote a reason",
         [] { (void)FilmToolClient("/bin/sh").run({"-c", "echo disk full >&2; kill -ABRT $$"}).get(); },
         "sh was ended by signal 6 (Aborted): disk full"},
        {"a signal ended a program that may be stopped",
         [] { (void)FilmToolClient("/bin/sh").run({"-c", "kill -KILL $$"}, {}, withUnusedStop()).get(); },
         "sh was ended by signal 9 (Killed)."},
        {"a status that is also the number of a signal",
         [] { (void)FilmToolClient("/bin/sh").run({"-c", "exit 9"}).get(); }, "Film command exited 9."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(messageOf(row.operation), row.expected);
    }
}

} // namespace
} // namespace kinovane::test
