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

#include "support/ordinary_user.hpp"
#include "support/temporary_directory.hpp"
#include "tooling/process/test_program.hpp"
#include "tooling/process/user_database.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

/// The path that was found, or the description of the error.
std::string found(const std::string& name) {
    try {
        return FilmToolClient::resolveExecutable(name).string();
    } catch (const FilmToolError& error) {
        return error.errorDescription();
    }
}

std::string notFound(const std::string& name) { return "Required executable not found: " + name; }

/// A place with programs "first/tool", "second/tool" and "second/other", and whatever is not a program. The
/// tests stand in it, and PATH and HOME are put back afterwards.
class ExecutableLookup : public testing::Test {
  protected:
    ExecutableLookup() {
        for (const char* name : {"PATH", "HOME"})
            if (const char* value = std::getenv(name))
                former_.emplace_back(name, value);
        addProgram("first/tool");
        addProgram("second/tool");
        addProgram("second/other");
        place.write("first/plain", "no program");
        fs::create_directories(place / "first/directory");
        fs::create_symlink("nowhere", place / "first/dangling");
        fs::create_symlink("loop", place / "first/loop");
        fs::create_symlink("../second/other", place / "first/link");
        for (const char* name : {"plain", "directory", "dangling", "loop"})
            addProgram("second/" + std::string(name));
        fs::current_path(place.path());
    }

    ~ExecutableLookup() override {
        fs::current_path("/");
        ::unsetenv("PATH");
        ::unsetenv("HOME");
        for (const auto& [name, value] : former_)
            ::setenv(name.c_str(), value.c_str(), 1);
    }

    void addProgram(const std::string& name) const {
        fs::permissions(place.write(name, "never run"), fs::perms::owner_all);
    }

    std::string at(const std::string& name) const { return (place / name).string(); }

    TemporaryDirectory place;

  private:
    std::vector<std::pair<std::string, std::string>> former_;
};

void setPath(const std::optional<std::string>& path) {
    if (path)
        ::setenv("PATH", path->c_str(), 1);
    else
        ::unsetenv("PATH");
}

/// Where the fixed directories, and no others, have a program.
std::string inFixedDirectories(const std::string& name) {
    for (const char* directory : {"/opt/homebrew/bin", "/usr/local/bin", "/usr/bin", "/bin"}) {
        const fs::path candidate = fs::path(directory) / name;
        if (fs::is_regular_file(candidate) && ::access(candidate.c_str(), X_OK) == 0)
            return candidate.string();
    }
    return notFound(name);
}

TEST_F(ExecutableLookup, ByName) {
    const std::string both = at("first") + ":" + at("second");
    struct Row {
        const char* sentence;
        std::optional<std::string> path;
        std::string name;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"the first directory that has it wins", both, "tool", at("first/tool")},
        {"the order is that of PATH", at("second") + ":" + at("first"), "tool", at("second/tool")},
        {"a directory without it is passed over", both, "other", at("second/other")},
        {"a link to a program is a program", both, "link", at("first/link")},
        {"a file that may not be executed is passed over", both, "plain", at("second/plain")},
        {"a directory of the name is passed over", both, "directory", at("second/directory")},
        {"a link to nothing is passed over", both, "dangling", at("second/dangling")},
        {"a link to itself is passed over", both, "loop", at("second/loop")},
        {"empty pieces are no directories", ":" + at("second") + "::", "tool", at("second/tool")},
        {"an empty piece is not the current directory", "::", "kinovane-test-tool",
         notFound("kinovane-test-tool")},
        {"a directory that does not exist is passed over", at("third") + ":" + at("second"), "tool",
         at("second/tool")},
        {"a file in place of a directory is passed over", at("first/plain") + ":" + at("second"), "tool",
         at("second/tool")},
        {"a relative directory is one of the current directory", "second", "tool", at("second/tool")},
        {"several slashes behind a dot", ".//second", "tool", at("second/tool")},
        {"several slashes behind a dot do not make it absolute", ".//bin:second", "tool", at("second/tool")},
        {"the working directory itself", "./", "tool-here", at("tool-here")},
        {"the working directory with two slashes", ".//", "tool-here", at("tool-here")},
        {"a trailing slash does not show", at("second") + "/", "tool", at("second/tool")},
        {"PATH comes before the fixed directories", at("second") + ":/usr/bin", "other", at("second/other")},
        {"PATH is :/usr/bin::", ":/usr/bin::", "env", "/usr/bin/env"},
        {"without PATH there are the fixed directories", std::nullopt, "sh", inFixedDirectories("sh")},
        {"an empty PATH is no PATH", "", "sh", inFixedDirectories("sh")},
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

// Another program of the name stands where the path would lead if it were taken for an absolute one.
TEST_F(ExecutableLookup, AProgramBelowTheWorkingDirectoryIsNoOther) {
    const std::string inRoot = "./" + at("first/tool");
    EXPECT_EQ(found(inRoot), notFound(inRoot));
    setPath("./" + at("first") + ":" + at("second"));
    EXPECT_EQ(found("tool"), at("second/tool"));
}

TEST_F(ExecutableLookup, ByNameInVain) {
    struct Row {
        const char* sentence;
        std::optional<std::string> path;
        std::string name;
    };
    const std::string nul("tool\0", 5);
    const std::vector<Row> rows{
        {"nobody has it", at("first"), "kinovane-no-such-tool"},
        {"without PATH only the fixed directories are searched", std::nullopt, "kinovane-no-such-tool"},
        {"the name is empty", at("first"), ""},
        {"the name is that of every directory", at("first"), "."},
        {"the name is that of every parent", at("first"), ".."},
        {"the name holds a NUL byte", at("first"), nul},
        {"only a plain file has the name", at("first"), "plain"},
        {"only a directory has the name", at("first"), "directory"},
        {"white space belongs to the name", at("first"), "tool "},
        {"the name is longer than a file name may be", at("first"), std::string(300, 't')},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        setPath(row.path);
        EXPECT_EQ(found(row.name), notFound(row.name));
    }
}

TEST_F(ExecutableLookup, ByPath) {
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
        {"several slashes behind the dot", ".//first/tool", at("first/tool")},
        {"several dots and slashes", ".///.//./first/tool", at("first/tool")},
        {"several slashes behind the dot do not make it absolute", ".//bin/sh", notFound(".//bin/sh")},
        {"a link", "first/link", at("first/link")},
        {"a path is not searched in PATH", "./tool", notFound("./tool")},
        {"nor is one with a directory", "sub/tool", notFound("sub/tool")},
        {"nor an absolute one", "/tool", notFound("/tool")},
        {"nothing is there", at("first/nothing"), notFound(at("first/nothing"))},
        {"a plain file", "first/plain", notFound("first/plain")},
        {"a directory", "first/directory", notFound("first/directory")},
        {"the root", "/", notFound("/")},
        {"a link to nothing", "first/dangling", notFound("first/dangling")},
        {"a device", "/dev/null", notFound("/dev/null")},
        {"a program is no directory", "first/tool/", notFound("first/tool/")},
        {"a path with a NUL byte", nul, notFound(nul)},
        {"a tilde in the middle is only a letter", "first/~", notFound("first/~")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(found(row.name), row.expected);
    }
}

TEST_F(ExecutableLookup, InHomeDirectories) {
    const passwd* const self = ::getpwuid(::geteuid());
    ASSERT_NE(self, nullptr);
    const std::string user = self->pw_name;
    const std::string home = self->pw_dir;
    ASSERT_TRUE(fs::is_directory(home));
    const std::string way = "/" + fs::path(at("first/tool")).lexically_relative(home).string();
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
        {"the user database says where home is, not HOME", "~" + way, home + way},
        {"a user's home by name", "~" + user + way, home + way},
        {"the error shows the name as it was given", "~/bin/film", notFound("~/bin/film")},
        {"the home directory itself is no program, and is not searched", "~", notFound("~")},
        {"an unknown user's tilde stays, and is a path", "~kinovane-nobody/tool",
         notFound("~kinovane-nobody/tool")},
        {"an unknown user's tilde alone stays, and is a name", "~kinovane-nobody",
         at("second/~kinovane-nobody")},
        {"a tilde at the end is only a letter", "tool~", notFound("tool~")},
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

// Below the working directory stands what an unknown user's name would lead to.
TEST_F(ExecutableLookup, AUserDatabaseThatCannotBeAsked) {
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
        {"the current user's name for a program", "~", "getpwuid_r"},
        {"another user", "~film/tool", "getpwnam_r"},
        {"another user's name alone", "~film", "getpwnam_r"},
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

// A user without a home directory is like one who does not exist.
TEST_F(ExecutableLookup, ACurrentUserWithoutAHomeDirectory) {
    addProgram("~/tool");
    ::setenv("HOME", at("first").c_str(), 1);
    for (const std::optional<std::string>& home :
         {std::optional<std::string>(), std::optional<std::string>("")}) {
        const UserDatabase users(home);
        EXPECT_EQ(found("~/tool"), at("~/tool"));
        EXPECT_EQ(found("~/other"), notFound("~/other"));
    }
}

// A tilde in PATH is a letter: only the name that the caller gave is expanded.
TEST_F(ExecutableLookup, TildeInPath) {
    addProgram("~/kinovane-test-tool");
    setPath("~");
    EXPECT_EQ(found("kinovane-test-tool"), at("~/kinovane-test-tool"));
}

TEST_F(ExecutableLookup, LooksAnewEachTime) {
    setPath(at("first") + ":" + at("second"));
    EXPECT_EQ(found("late"), notFound("late"));
    addProgram("second/late");
    EXPECT_EQ(found("late"), at("second/late"));
    addProgram("first/late");
    EXPECT_EQ(found("late"), at("first/late"));
    fs::permissions(place / "first/late", fs::perms::owner_read);
    EXPECT_EQ(found("late"), at("second/late"));
}

// The right of somebody else to execute a file does not help this user.
TEST_F(ExecutableLookup, OnlyWhatThisUserMayExecute) {
    for (const char* directory : {"", "first", "second"})
        fs::permissions(place / directory, fs::perms::all);
    const auto lacking = ::geteuid() == 0 ? fs::perms::owner_all : fs::perms::others_all;
    fs::permissions(place / "first/tool", lacking, fs::perm_options::replace);
    fs::permissions(place / "second/tool", fs::perms::all);
    setPath(at("first") + ":" + at("second"));
    EXPECT_EQ(asOrdinaryUser([&] { return found("tool") + "\n" + found("first/tool"); }),
              at("second/tool") + "\n" + notFound("first/tool"));
}

} // namespace

} // namespace kinovane::test
