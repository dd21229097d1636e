// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "common/files/descriptor.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

std::vector<std::vector<std::string>> everyCommand(const std::filesystem::path& run,
                                                   const std::string& manifest) {
    return {{"--help"},
            {"--version"},
            {"publish", "--help"},
            {"doctor", "--quexrun", programPath("quexrun")},
            {"doctor", "--quexrun", programPath("quexrun"), "--json"},
            {"inspect", run.string()},
            {"inspect", run.string(), "--json"},
            {"verify", run.string()},
            {"verify", run.string(), "--json"},
            {"publish", run.string(), "--vistrel", programPath("vistrel"), "--dry-run", "--quiet", "--output",
             manifest},
            {"publish", run.string(), "--vistrel", programPath("vistrel"), "--dry-run", "--json", "--output",
             manifest}};
}

TEST(StandardOutput, CausesAFileSystemFailureWhenItCannotBeWritten) {
    struct Row {
        std::string sentence;
        int descriptor;
        std::string message;
    };
    const Descriptor full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
    ASSERT_TRUE(full);
    const std::vector<Row> rows{
        {"a full disk", full.get(), "standard output: No space left on device"},
        {"a closed output", -1, "standard output: Bad file descriptor"},
    };
    const TemporaryDirectory directory;
    for (const Row& row : rows)
        for (const auto& command :
             everyCommand(sampleFilm() / "run.json", (directory / "manifest.json").string())) {
            SCOPED_TRACE(row.sentence + ": " + testing::PrintToString(command));
            const std::filesystem::path messages = directory / "messages";
            const Descriptor err(::open(messages.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
            ASSERT_TRUE(err);
            EXPECT_EQ(exitStatusOf(startCommandLineTool(command, row.descriptor, err.get())), 6);
            const bool json = std::ranges::find(command, "--json") != command.end();
            EXPECT_EQ(contentOf(messages),
                      json ? R"({"version":1,"error":{"kind":"fileSystem","status":6,"message":")" +
                                 row.message + "\"}}\n"
                           : "kinovane: " + row.message + "\n");
        }
}

} // namespace

} // namespace kinovane::test
