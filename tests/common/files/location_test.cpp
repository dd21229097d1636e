// SPDX-License-Identifier: Apache-2.0

#include "common/files/location.hpp"

#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/forked_process.hpp"
#include "support/ordinary_user.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class FileLocation : public testing::Test {
  protected:
    void SetUp() override {
        directory_.write("films/ferry/run.json", "");
        directory_.write("program", "");
        fs::permissions(directory_ / "program", fs::perms::owner_all | fs::perms::others_exec);
        fs::create_directories(directory_ / "disk/a/b");
        fs::create_directory_symlink("../disk/a/b", directory_ / "films/link");
        fs::create_directory_symlink(directory_ / "disk/a", directory_ / "absolute");
        fs::create_symlink("program", directory_ / "toProgram");
        fs::create_symlink("nowhere", directory_ / "dangling");
        fs::create_symlink("circle", directory_ / "circle");
        EXPECT_EQ(::mkfifo((directory_ / "fifo").c_str(), 0777), 0);
    }

    TemporaryDirectory directory_;
};

struct Row {
    const char* sentence;
    std::string given;
    std::string expected;
};

TEST_F(FileLocation, StandardizedHasNoDots) {
    const std::string top = directory_.path().string();
    const Row rows[] = {
        {"nothing to do", top + "/films/ferry/run.json", top + "/films/ferry/run.json"},
        {"single dots", top + "/./films/././ferry/run.json", top + "/films/ferry/run.json"},
        {"double dots", top + "/films/other/../ferry/run.json", top + "/films/ferry/run.json"},
        {"several double dots", top + "/films/ferry/x/y/../../run.json", top + "/films/ferry/run.json"},
        {"double slashes", top + "//films///ferry//run.json", top + "/films/ferry/run.json"},
        {"a slash at the end", top + "/films/", top + "/films"},
        {"a dot at the end", top + "/films/.", top + "/films"},
        {"double dots at the end", top + "/films/ferry/..", top + "/films"},
        {"names that begin with dots", top + "/.films/..ferry/...", top + "/.films/..ferry/..."},
        {"above the root", "/../../x", "/x"},
        {"the root", "/", "/"},
        {"the root, the long way", "/x/..", "/"},
        {"a link stays when nothing goes back behind it", top + "/films/link/run.json",
         top + "/films/link/run.json"},
        {"back behind a link", top + "/films/link/../run.json", top + "/disk/a/run.json"},
        {"back behind a link twice", top + "/films/link/../../run.json", top + "/disk/run.json"},
        {"back behind an absolute link", top + "/absolute/../run.json", top + "/disk/run.json"},
        {"back to a link", top + "/films/link/b/../run.json", top + "/films/link/run.json"},
        {"back behind nothing", top + "/nothing/../run.json", top + "/run.json"},
        {"back behind a name with a NUL byte", top + "/absolute\0x/../run.json"s, top + "/run.json"},
        {"back behind a link to itself", top + "/circle/../run.json", top + "/run.json"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(standardized(row.given).string(), row.expected);
    }
}

TEST_F(FileLocation, StandardizedIsWhereTheFileSystemWouldGo) {
    directory_.write("disk/a/run.json", "found");
    const fs::path given = directory_ / "films/link/../run.json";
    EXPECT_EQ(contentOf(given), "found");
    EXPECT_TRUE(fs::equivalent(given, standardized(given)));
}

TEST_F(FileLocation, RelativeLocationsAreBelowTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::current_path(directory_ / "films");
    const std::string top = directory_.path().string();
    const Row rows[] = {
        {"a name", "run.json", top + "/films/run.json"},
        {"with a dot", "./run.json", top + "/films/run.json"},
        {"with double dots", "../disk/run.json", top + "/disk/run.json"},
        {"only a dot", ".", top + "/films"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(standardized(row.given).string(), row.expected);
    }
    fs::current_path(before);
}

TEST_F(FileLocation, AbsoluteLocationsAreMadeInOneManner) {
    const fs::path before = fs::current_path();
    fs::current_path(directory_ / "films");
    const WorkingDirectory films;
    const std::string here = (directory_ / "films").string();
    const Row rows[] = {
        {"an absolute one stays as it is", "/./films//../run.json/", "/./films//../run.json/"},
        {"a name", "run.json", here + "/run.json"},
        {"what looks like an option", "--run.json", here + "/--run.json"},
        {"a tilde is a letter", "~/run.json", here + "/~/run.json"},
        {"a dot in front is dropped", "./run.json", here + "/run.json"},
        {"with all slashes behind it", ".//run.json", here + "/run.json"},
        {"several dots in front are dropped", "././/./run.json", here + "/run.json"},
        {"a dot inside stays", "a/./run.json", here + "/a/./run.json"},
        {"double dots stay", "../run.json", here + "/../run.json"},
        {"double dots behind a dot stay", "./../run.json", here + "/../run.json"},
        {"a hidden file is no dot", ".run.json", here + "/.run.json"},
        {"a slash at the end stays", "a/", here + "/a/"},
        {"the directory itself", ".", here},
        {"the directory itself with a slash", "./", here},
        {"the directory itself with two slashes", ".//", here},
        {"the directory itself twice", "./.", here},
        {"an empty one stays empty", "", ""},
        {"a NUL byte is passed over", "a\0b"s, here + "/a\0b"s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(absoluteLocation(row.given).native(), row.expected);
        EXPECT_EQ(pathText(row.given), row.expected);
    }
    fs::current_path(before);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(films.absolute(row.given).native(), row.expected);
    }
}

// In a process of its own, because its working directory is removed.
TEST_F(FileLocation, WithoutAWorkingDirectoryOnlyAbsoluteLocationsAreKnown) {
    EXPECT_EQ(inForkedProcess([&] {
                  fs::create_directory(directory_ / "gone");
                  fs::current_path(directory_ / "gone");
                  fs::remove(directory_ / "gone");
                  std::string told = absoluteLocation("/a").string() + absoluteLocation("").string() +
                                     pathText("./b") + standardized("").string();
                  try {
                      told += absoluteLocation("b").string();
                  } catch (const fs::filesystem_error& error) {
                      told += " " + error.code().message() + " " + error.path1().string();
                  }
                  return told;
              }),
              "/a./b No such file or directory b");
}

struct AnswerRow {
    const char* sentence;
    fs::path location;
    bool exists;
    bool executable;
};

TEST_F(FileLocation, TellsWhatExistsAndWhatCanBeStarted) {
    directory_.write("document", "");
    const AnswerRow rows[] = {
        {"a program", directory_ / "program", true, true},
        {"a link to a program", directory_ / "toProgram", true, true},
        {"a file that is no program", directory_ / "document", true, false},
        {"a directory", directory_ / "films", true, false},
        {"a FIFO that may be executed", directory_ / "fifo", true, false},
        {"a device", "/dev/null", true, false},
        {"nothing", directory_ / "nothing", false, false},
        {"no name", "", false, false},
        {"below nothing", directory_ / "no/thing", false, false},
        {"below a file", directory_ / "program/thing", false, false},
        {"a link that leads nowhere", directory_ / "dangling", false, false},
        {"a link to itself", directory_ / "circle", false, false},
        {"a name that is too long", directory_ / std::string(300, 'n'), false, false},
        {"a NUL byte behind a program's name", directory_ / "program\0x"s, false, false},
    };
    for (const AnswerRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(somethingExistsAt(row.location), row.exists);
        EXPECT_EQ(isKnownToExist(row.location), row.exists);
        EXPECT_EQ(isExecutableFile(row.location), row.executable);
    }
}

TEST_F(FileLocation, AnOrdinaryUserIsToldWhatThatUserMayDo) {
    fs::permissions(directory_.path(), fs::perms::all);
    fs::permissions(directory_ / "films", fs::perms::none);
    directory_.write("mine", "");
    fs::permissions(directory_ / "mine", fs::perms::owner_all);
    const auto ask = [](const fs::path& location) {
        return asOrdinaryUser([&] {
            return std::string(somethingExistsAt(location) ? "exists" : "missing") +
                   (isKnownToExist(location) ? ", known" : "") +
                   (isExecutableFile(location) ? ", executable" : "");
        });
    };
    EXPECT_EQ(ask(directory_ / "program"), "exists, known, executable");
    // Whether it exists is kept secret, so that the attempt to read it is what reports the reason.
    EXPECT_EQ(ask(directory_ / "films/ferry/run.json"), "exists");
    EXPECT_EQ(ask(directory_ / "films/nothing"), "exists");
    EXPECT_EQ(ask(directory_ / "mine"), ::geteuid() == 0 ? "exists, known" : "exists, known, executable");
}

} // namespace
} // namespace kinovane::test
