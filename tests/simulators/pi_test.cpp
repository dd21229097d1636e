// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include "simulators/simulator_call.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

TEST(Pi, PrintsOnlyItsVersion) {
    const std::string pi = programPath("pi");
    EXPECT_EQ(call(pi, {"--version"}), (ProcessResult{pi, {"--version"}, 0, "pi 0.0.0-simulator\n", ""}));
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {""},
                                               {"version"},
                                               {"-v"},
                                               {"--Version"},
                                               {"--version="},
                                               {"--version", ""},
                                               {"--version", "--version"},
                                               {"--help"}}) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        EXPECT_EQ(call(pi, arguments), (ProcessResult{pi, arguments, 2, "", "usage: pi --version\n"}));
    }
}

TEST(Pi, ReadsTheVersionFileBesideTheProgram) {
    const TemporaryDirectory directory;
    struct Row {
        const char* sentence;
        const char* file;
        const char* expected;
    };
    const std::vector<Row> rows{
        {"a version", "1.10.0\n", "pi 1.10.0\n"},
        {"without a line break", "1.9.3", "pi 1.9.3\n"},
        {"among blanks", " \t2.0.0-beta \r\nand more\n", "pi 2.0.0-beta\n"},
        {"an empty file", "", "pi 0.0.0-simulator\n"},
        {"an empty line", "\n1.0.0\n", "pi 0.0.0-simulator\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const fs::path folder = directory / row.sentence;
        fs::create_directory(folder);
        fs::copy_file(programPath("pi"), folder / "pi");
        EXPECT_EQ(call(folder / "pi", {"--version"}).stdout, "pi 0.0.0-simulator\n");
        directory.write(std::string(row.sentence) + "/VERSION", row.file);
        EXPECT_EQ(call(folder / "pi", {"--version"}).stdout, row.expected);
        // Links are resolved first.
        const fs::path link = directory / (std::string("link to ") + row.sentence);
        fs::create_symlink(folder / "pi", link);
        EXPECT_EQ(call(link, {"--version"}).stdout, row.expected);
    }
}

TEST(Pi, IsFoundNewestFirst) {
    const TemporaryDirectory directory;
    for (const char* version : {"1.9.3", "1.10.0", "0.12.7"}) {
        const std::string folder = std::string(version) + "/pi";
        directory.write(folder + "/VERSION", version);
        fs::copy_file(programPath("pi"), directory / (folder + "/pi"));
    }
    std::vector<std::string> versions;
    for (const fs::path& copy : PiExecutableResolver::bundledCandidates(directory.path()))
        versions.push_back(call(copy, {"--version"}).stdout);
    EXPECT_EQ(versions, (std::vector<std::string>{"pi 1.10.0\n", "pi 1.9.3\n", "pi 0.12.7\n"}));
}

} // namespace
} // namespace kinovane::test
