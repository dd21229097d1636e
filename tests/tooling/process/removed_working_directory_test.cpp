// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/forked_process.hpp"
#include "support/recorder.hpp"
#include "support/task_failure.hpp"
#include "support/temporary_directory.hpp"
#include "tooling/film_tool/replies.hpp"
#include "tooling/process/test_program.hpp"

namespace kinovane::test {
namespace {

/// Runs `job` in a process of its own whose working directory was removed, and returns its text.
std::string withoutWorkingDirectory(const std::function<std::string()>& job) {
    return inForkedProcess([&] {
        const TemporaryDirectory directory;
        std::filesystem::create_directory(directory / "gone");
        std::filesystem::current_path(directory / "gone");
        std::filesystem::remove(directory / "gone");
        return job();
    });
}

TEST(RemovedWorkingDirectory, HoldsNoProgram) {
    EXPECT_EQ(withoutWorkingDirectory([] {
                  try {
                      return FilmToolClient::resolveExecutable("tools/film").string();
                  } catch (const FilmToolError& error) {
                      return error.errorDescription();
                  }
              }),
              "Required executable not found: tools/film");
}

TEST(RemovedWorkingDirectory, DoesNotMatterForAnAbsolutePath) {
    EXPECT_EQ(withoutWorkingDirectory([] { return outputOfTestProgram({"out", "found"}); }), "found");
}

// If it were passed unchanged, the program could take it for an option or for another file.
TEST(RemovedWorkingDirectory, MakesARelativeLocationAnError) {
    EXPECT_EQ(
        withoutWorkingDirectory(
            [] { return failureOf(FilmToolClient(testProgramPath()).recover("--output")); }),
        "Could not launch film command: the location of the run manifest cannot be made absolute: getcwd: "
        "No such file or directory");
}

TEST(RemovedWorkingDirectory, MakesARelativeReplyAnError) {
    const Recorder recorder(planReply("film/run.json"));
    EXPECT_EQ(
        withoutWorkingDirectory(
            [] { return failureOf(FilmToolClient(Recorder::path()).plan("i", "t", 1, "/films")); }),
        "Film command returned invalid JSON: status.runManifest cannot be made absolute: getcwd: No such "
        "file or directory");
}

} // namespace
} // namespace kinovane::test
