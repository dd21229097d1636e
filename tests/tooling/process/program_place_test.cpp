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
#include "support/variable.hpp"
#include "tooling/film_tool/replies.hpp"
#include "tooling/process/child_process.hpp"
#include "tooling/process/executable_lookup.hpp"
#include "tooling/process/test_program.hpp"

namespace kinovane::test {
namespace {

/// What `job` says in a process of its own, whose working directory is removed.
std::string withoutWorkingDirectory(const std::function<std::string()>& job) {
    return inForkedProcess([&] {
        const TemporaryDirectory directory;
        std::filesystem::create_directory(directory / "gone");
        std::filesystem::current_path(directory / "gone");
        std::filesystem::remove(directory / "gone");
        return job();
    });
}

TEST(ProgramPlace, ARelativePathIsNotFoundWhenTheWorkingDirectoryIsGone) {
    EXPECT_EQ(withoutWorkingDirectory([] {
                  try {
                      return FilmToolClient::resolveExecutable("tools/film").string();
                  } catch (const FilmToolError& error) {
                      return error.errorDescription();
                  }
              }),
              "Required executable not found: tools/film");
}

TEST(ProgramPlace, AnAbsolutePathIsFoundWhenTheWorkingDirectoryIsGone) {
    EXPECT_EQ(withoutWorkingDirectory([] { return outputOfTestProgram({"out", "found"}); }), "found");
}

// Passed on as it is, it could be taken for an option, and it would mean another place to another program.
TEST(ProgramPlace, ARelativeLocationIsRefusedWhenTheWorkingDirectoryIsGone) {
    EXPECT_EQ(
        withoutWorkingDirectory(
            [] { return failureOf(FilmToolClient(testProgramPath()).recover("--output")); }),
        "Could not launch film command: the location of the run manifest cannot be made absolute: getcwd: "
        "No such file or directory");
}

TEST(ProgramPlace, ARelativeReplyIsRefusedWhenTheWorkingDirectoryIsGone) {
    const Recorder recorder(planReply("film/run.json"));
    EXPECT_EQ(
        withoutWorkingDirectory(
            [] { return failureOf(FilmToolClient(Recorder::path()).plan("i", "t", 1, "/films")); }),
        "Film command returned invalid JSON: status.runManifest cannot be made absolute: getcwd: No such "
        "file or directory");
}

TEST(ProgramPlace, PathAndWorkingDirectoryAreThoseOfTheMomentWhenTheLookupWasMade) {
    const TemporaryDirectory place;
    for (const char* name : {"here/bin/film", "there/bin/film", "there/other/film"})
        std::filesystem::permissions(place.write(name, "never run"), std::filesystem::perms::owner_all);
    const std::filesystem::path former = std::filesystem::current_path();
    std::filesystem::current_path(place / "here");
    const Variable path("PATH", "bin");
    const ExecutableLookup name("film");
    const ExecutableLookup relative("bin/film");
    std::filesystem::current_path(place / "there");
    const Variable other("PATH", "other");
    EXPECT_EQ(name.find(), place / "here/bin/film");
    EXPECT_EQ(relative.find(), place / "here/bin/film");
    std::filesystem::current_path(former);
}

// The search for a program refuses such a name first; whoever starts one without a search is refused as well.
TEST(ProgramPlace, APathWithANULByteIsNeverCut) {
    try {
        const ChildProcess child(std::string("/bin/true\0x", 11), {}, {});
        ADD_FAILURE() << "it was started";
    } catch (const FilmToolError& error) {
        EXPECT_EQ(error.errorDescription(),
                  "Could not launch film command: the program's path holds a NUL byte");
    }
}

} // namespace
} // namespace kinovane::test
