// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/executable_lookup.hpp"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/ordinary_user.hpp"
#include "support/temporary_directory.hpp"
#include "support/variable.hpp"
#include "tooling/process/executable_search.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

/// The path of a program in the fixed directories, or the error if none of them has it.
std::string inFixedDirectories(const std::string& name) {
    for (const char* directory : {"/opt/homebrew/bin", "/usr/local/bin", "/usr/bin", "/bin"}) {
        const fs::path candidate = fs::path(directory) / name;
        if (fs::is_regular_file(candidate) && ::access(candidate.c_str(), X_OK) == 0)
            return candidate.string();
    }
    return notFound(name);
}

TEST_F(ExecutableSearch, FindsAProgramByName) {
    const std::string both = at("first") + ":" + at("second");
    struct Row {
        const char* sentence;
        std::optional<std::string> path;
        std::string name;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"the first directory that holds the program is used", both, "tool", at("first/tool")},
        {"the order is that of PATH", at("second") + ":" + at("first"), "tool", at("second/tool")},
        {"a directory without the program is skipped", both, "other", at("second/other")},
        {"a link to a program is found", both, "link", at("first/link")},
        {"a file that may not be executed is skipped", both, "plain", at("second/plain")},
        {"a directory of the name is skipped", both, "directory", at("second/directory")},
        {"a link to nothing is skipped", both, "dangling", at("second/dangling")},
        {"a link to itself is skipped", both, "loop", at("second/loop")},
        {"empty components are ignored", ":" + at("second") + "::", "tool", at("second/tool")},
        {"an empty component is not the working directory", "::", "kinovane-test-tool",
         notFound("kinovane-test-tool")},
        {"a directory that does not exist is skipped", at("third") + ":" + at("second"), "tool",
         at("second/tool")},
        {"a file in place of a directory is skipped", at("first/plain") + ":" + at("second"), "tool",
         at("second/tool")},
        {"a relative directory is below the working directory", "second", "tool", at("second/tool")},
        {"a dot and several slashes", ".//second", "tool", at("second/tool")},
        {"a dot and several slashes do not make it absolute", ".//bin:second", "tool", at("second/tool")},
        {"the working directory itself", "./", "tool-here", at("tool-here")},
        {"the working directory with two slashes", ".//", "tool-here", at("tool-here")},
        {"a trailing slash is dropped", at("second") + "/", "tool", at("second/tool")},
        {"PATH comes before the fixed directories", at("second") + ":/usr/bin", "other", at("second/other")},
        {"PATH is :/usr/bin::", ":/usr/bin::", "env", "/usr/bin/env"},
        {"without PATH the fixed directories are searched", std::nullopt, "sh", inFixedDirectories("sh")},
        {"with an empty PATH the fixed directories are searched", "", "sh", inFixedDirectories("sh")},
        {"the fixed directories come after PATH", at("second"), "sh", inFixedDirectories("sh")},
    };
    addProgram("kinovane-test-tool");
    addProgram("tool-here");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        setPath(row.path);
        EXPECT_EQ(found(row.name), row.expected);
    }
}

// A program exists at the absolute path that is left when the dot is dropped.
TEST_F(ExecutableSearch, TreatsARelativePathAsRelative) {
    const std::string inRoot = "./" + at("first/tool");
    EXPECT_EQ(found(inRoot), notFound(inRoot));
    setPath("./" + at("first") + ":" + at("second"));
    EXPECT_EQ(found("tool"), at("second/tool"));
}

TEST_F(ExecutableSearch, ReportsANameThatIsNotFound) {
    struct Row {
        const char* sentence;
        std::optional<std::string> path;
        std::string name;
    };
    const std::string nul("tool\0", 5);
    const std::vector<Row> rows{
        {"no directory holds it", at("first"), "kinovane-no-such-tool"},
        {"without PATH only the fixed directories are searched", std::nullopt, "kinovane-no-such-tool"},
        {"the name is empty", at("first"), ""},
        {"the name is that of the directory itself", at("first"), "."},
        {"the name is that of the parent directory", at("first"), ".."},
        {"the name holds a NUL byte", at("first"), nul},
        {"only a plain file has the name", at("first"), "plain"},
        {"only a directory has the name", at("first"), "directory"},
        {"white space is part of the name", at("first"), "tool "},
        {"the name is longer than a file name may be", at("first"), std::string(300, 't')},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        setPath(row.path);
        EXPECT_EQ(found(row.name), notFound(row.name));
    }
}

TEST_F(ExecutableSearch, FindsAProgramByPath) {
    setPath(at("second"));
    struct Row {
        const char* sentence;
        std::string name;
        std::string expected;
    };
    const std::string nul(at("first/tool") + '\0');
    const std::vector<Row> rows{
        {"an absolute path", at("first/tool"), at("first/tool")},
        {"a relative path becomes absolute", "first/tool", at("first/tool")},
        {"a relative path with a dot in front", "./first/tool", at("first/tool")},
        {"a dot and several slashes", ".//first/tool", at("first/tool")},
        {"several dots and slashes", ".///.//./first/tool", at("first/tool")},
        {"a dot and several slashes do not make it absolute", ".//bin/sh", notFound(".//bin/sh")},
        {"a link", "first/link", at("first/link")},
        {"a path is not searched in PATH", "./tool", notFound("./tool")},
        {"a path with a directory is not searched in PATH", "sub/tool", notFound("sub/tool")},
        {"an absolute path is not searched in PATH", "/tool", notFound("/tool")},
        {"no file", at("first/nothing"), notFound(at("first/nothing"))},
        {"a plain file", "first/plain", notFound("first/plain")},
        {"a directory", "first/directory", notFound("first/directory")},
        {"the root", "/", notFound("/")},
        {"a link to nothing", "first/dangling", notFound("first/dangling")},
        {"a device", "/dev/null", notFound("/dev/null")},
        {"a program with a slash at the end", "first/tool/", notFound("first/tool/")},
        {"a path with a NUL byte", nul, notFound(nul)},
        {"a tilde in the middle is not expanded", "first/~", notFound("first/~")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(found(row.name), row.expected);
    }
}

TEST_F(ExecutableSearch, ReadsTheFileSystemForEachCall) {
    setPath(at("first") + ":" + at("second"));
    EXPECT_EQ(found("late"), notFound("late"));
    addProgram("second/late");
    EXPECT_EQ(found("late"), at("second/late"));
    addProgram("first/late");
    EXPECT_EQ(found("late"), at("first/late"));
    fs::permissions(directory / "first/late", fs::perms::owner_read);
    EXPECT_EQ(found("late"), at("second/late"));
}

// A file that only another user may execute is skipped.
TEST_F(ExecutableSearch, FindsOnlyWhatTheUserMayExecute) {
    for (const char* name : {"", "first", "second"})
        fs::permissions(directory / name, fs::perms::all);
    const auto lacking = ::geteuid() == 0 ? fs::perms::owner_all : fs::perms::others_all;
    fs::permissions(directory / "first/tool", lacking, fs::perm_options::replace);
    fs::permissions(directory / "second/tool", fs::perms::all);
    setPath(at("first") + ":" + at("second"));
    EXPECT_EQ(asOrdinaryUser([&] { return found("tool") + "\n" + found("first/tool"); }),
              at("second/tool") + "\n" + notFound("first/tool"));
}

TEST(ExecutableLookup, UsesPATHAndWorkingDirectoryOfItsConstruction) {
    const TemporaryDirectory directory;
    for (const char* name : {"here/bin/film", "there/bin/film", "there/other/film"})
        fs::permissions(directory.write(name, "never run"), fs::perms::owner_all);
    const fs::path former = fs::current_path();
    fs::current_path(directory / "here");
    const Variable path("PATH", "bin");
    const ExecutableLookup name("film");
    const ExecutableLookup relative("bin/film");
    fs::current_path(directory / "there");
    const Variable other("PATH", "other");
    EXPECT_EQ(name.find(), directory / "here/bin/film");
    EXPECT_EQ(relative.find(), directory / "here/bin/film");
    fs::current_path(former);
}

} // namespace

} // namespace kinovane::test
