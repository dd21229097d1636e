// SPDX-License-Identifier: Apache-2.0

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "tooling/process/executable_search.hpp"
#include "tooling/process/test_program.hpp"
#include "tooling/process/user_database.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

class TildeExpansion : public ExecutableSearch {};

TEST_F(TildeExpansion, UsesTheUserDatabase) {
    const passwd* const self = ::getpwuid(::geteuid());
    ASSERT_NE(self, nullptr);
    const std::string user = self->pw_name;
    const std::string home = self->pw_dir;
    ASSERT_TRUE(fs::is_directory(home));
    const std::string rest = "/" + fs::path(at("first/tool")).lexically_relative(home).string();
    setPath(at("second"));
    ::setenv("HOME", at("second").c_str(), 1);
    addProgram("second/bin/film");
    addProgram("second/~");
    addProgram("second/~kinovane-nobody");
    struct Row {
        const char* sentence;
        std::string name;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"the home directory of the user database is used, not HOME", "~" + rest, home + rest},
        {"the home directory of a named user", "~" + user + rest, home + rest},
        {"the error holds the name as it was passed", "~/bin/film", notFound("~/bin/film")},
        {"the home directory itself is not a program, and PATH is not searched", "~", notFound("~")},
        {"an unknown user's tilde with a slash is a path", "~kinovane-nobody/tool",
         notFound("~kinovane-nobody/tool")},
        {"an unknown user's tilde alone is a name", "~kinovane-nobody", at("second/~kinovane-nobody")},
        {"a tilde at the end is not expanded", "tool~", notFound("tool~")},
        {"a NUL byte after a user's name", "~" + user + std::string("\0/x", 3),
         notFound("~" + user + std::string("\0/x", 3))},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(found(row.name), row.expected);
    }
    addProgram("~kinovane-nobody/tool");
    EXPECT_EQ(found("~kinovane-nobody/tool"), at("~kinovane-nobody/tool"));
}

// The programs that an unexpanded name would find exist below the working directory.
TEST_F(TildeExpansion, ReportsAnUnreadableUserDatabase) {
    addProgram("~/tool");
    addProgram("~film/tool");
    ::setenv("HOME", at("first").c_str(), 1);
    UserDatabase users(at("second"));
    EXPECT_EQ(found("~/tool"), at("second/tool"));
    struct Row {
        const char* sentence;
        std::string name;
        std::string call;
    };
    const std::vector<Row> rows{
        {"the current user", "~/tool", "getpwuid_r"},
        {"the current user alone", "~", "getpwuid_r"},
        {"another user", "~film/tool", "getpwnam_r"},
        {"another user alone", "~film", "getpwnam_r"},
    };
    for (const int error : {EMFILE, ENFILE, EIO, ENOMEM})
        for (const Row& row : rows) {
            SCOPED_TRACE(row.sentence);
            users.error = error;
            const std::string expected = "Could not launch film command: " + row.name + ": " + row.call +
                                         ": " + std::generic_category().message(error);
            EXPECT_EQ(found(row.name), expected);
            EXPECT_EQ(outcomeOf(FilmToolClient(row.name).run({})), expected);
        }
    EXPECT_EQ(found("tool"), notFound("tool"));
    setPath(at("first"));
    EXPECT_EQ(found("tool"), at("first/tool"));
}

// A user without a home directory is treated like an unknown one.
TEST_F(TildeExpansion, LeavesTheTextOfAUserWithoutAHomeDirectory) {
    addProgram("~/tool");
    ::setenv("HOME", at("first").c_str(), 1);
    for (const std::optional<std::string>& home :
         {std::optional<std::string>(), std::optional<std::string>("")}) {
        const UserDatabase users(home);
        EXPECT_EQ(found("~/tool"), at("~/tool"));
        EXPECT_EQ(found("~/other"), notFound("~/other"));
    }
}

// Only the name that the caller passed is expanded.
TEST_F(TildeExpansion, DoesNotApplyToPATH) {
    addProgram("~/kinovane-test-tool");
    setPath("~");
    EXPECT_EQ(found("kinovane-test-tool"), at("~/kinovane-test-tool"));
}

} // namespace

} // namespace kinovane::test
