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

TEST_F(FileLocation, HasNoDotComponentsWhenStandardized) {
    const std::string top = directory_.path().string();
    const Row rows[] = {
        {"no dots", top + "/films/ferry/run.json", top + "/films/ferry/run.json"},
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
        {"the root, from below", "/x/..", "/"},
        {"a link that no double dots follow stays", top + "/films/link/run.json",
         top + "/films/link/run.json"},
        {"double dots after a link", top + "/films/link/../run.json", top + "/disk/a/run.json"},
        {"double dots twice after a link", top + "/films/link/../../run.json", top + "/disk/run.json"},
        {"double dots after an absolute link", top + "/absolute/../run.json", top + "/disk/run.json"},
        {"double dots that lead back to a link", top + "/films/link/b/../run.json",
         top + "/films/link/run.json"},
        {"double dots after a missing directory", top + "/nothing/../run.json", top + "/run.json"},
        {"double dots after a name with a NUL byte", top + "/absolute\0x/../run.json"s, top + "/run.json"},
        {"double dots after a link to itself", top + "/circle/../run.json", top + "/run.json"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(standardized(row.given).string(), row.expected);
    }
}

TEST_F(FileLocation, NamesTheSameFileWhenStandardized) {
    directory_.write("disk/a/run.json", "found");
    const fs::path given = directory_ / "films/link/../run.json";
    EXPECT_EQ(contentOf(given), "found");
    EXPECT_TRUE(fs::equivalent(given, standardized(given)));
}

TEST_F(FileLocation, IsBelowTheWorkingDirectoryWhenRelative) {
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

TEST_F(FileLocation, LosesOnlyLeadingDotsWhenMadeAbsolute) {
    const fs::path before = fs::current_path();
    fs::current_path(directory_ / "films");
    const WorkingDirectory films;
    const std::string here = (directory_ / "films").string();
    const Row rows[] = {
        {"an absolute one stays as it is", "/./films//../run.json/", "/./films//../run.json/"},
        {"a name", "run.json", here + "/run.json"},
        {"what looks like an option", "--run.json", here + "/--run.json"},
        {"a tilde has no meaning", "~/run.json", here + "/~/run.json"},
        {"a dot in front is dropped", "./run.json", here + "/run.json"},
        {"a dot in front is dropped with all its slashes", ".//run.json", here + "/run.json"},
        {"several dots in front are dropped", "././/./run.json", here + "/run.json"},
        {"a dot inside stays", "a/./run.json", here + "/a/./run.json"},
        {"double dots stay", "../run.json", here + "/../run.json"},
        {"double dots after a dot stay", "./../run.json", here + "/../run.json"},
        {"a hidden file keeps its dot", ".run.json", here + "/.run.json"},
        {"a slash at the end stays", "a/", here + "/a/"},
        {"the directory itself", ".", here},
        {"the directory itself with a slash", "./", here},
        {"the directory itself with two slashes", ".//", here},
        {"the directory itself twice", "./.", here},
        {"an empty location stays empty", "", ""},
        {"a NUL byte stays", "a\0b"s, here + "/a\0b"s},
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
TEST_F(FileLocation, StaysRelativeWithoutAWorkingDirectory) {
    EXPECT_EQ(inForkedProcess([&] {
                  fs::create_directory(directory_ / "gone");
                  fs::current_path(directory_ / "gone");
                  fs::remove(directory_ / "gone");
                  std::string result = absoluteLocation("/a").string() + absoluteLocation("").string() +
                                       pathText("./b") + standardized("").string();
                  try {
                      result += absoluteLocation("b").string();
                  } catch (const fs::filesystem_error& error) {
                      result += " " + error.code().message() + " " + error.path1().string();
                  }
                  return result;
              }),
              "/a./b No such file or directory b");
}

struct ExistenceRow {
    const char* sentence;
    fs::path location;
    bool exists;
    bool executable;
};

TEST_F(FileLocation, IsExaminedForExistenceAndExecutability) {
    directory_.write("document", "");
    const ExistenceRow rows[] = {
        {"a program", directory_ / "program", true, true},
        {"a link to a program", directory_ / "toProgram", true, true},
        {"a file that is no program", directory_ / "document", true, false},
        {"a directory", directory_ / "films", true, false},
        {"a FIFO that may be executed", directory_ / "fifo", true, false},
        {"a device", "/dev/null", true, false},
        {"a missing file", directory_ / "nothing", false, false},
        {"an empty location", "", false, false},
        {"a file in a missing directory", directory_ / "no/thing", false, false},
        {"a file as a directory", directory_ / "program/thing", false, false},
        {"a broken link", directory_ / "dangling", false, false},
        {"a link to itself", directory_ / "circle", false, false},
        {"a name that is too long", directory_ / std::string(300, 'n'), false, false},
        {"a NUL byte after the name of a program", directory_ / "program\0x"s, false, false},
    };
    for (const ExistenceRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(mayExist(row.location), row.exists);
        EXPECT_EQ(isKnownToExist(row.location), row.exists);
        EXPECT_EQ(isExecutableFile(row.location), row.executable);
    }
}

TEST_F(FileLocation, IsExaminedWithThePermissionsOfAnOrdinaryUser) {
    fs::permissions(directory_.path(), fs::perms::all);
    fs::permissions(directory_ / "films", fs::perms::none);
    directory_.write("mine", "");
    fs::permissions(directory_ / "mine", fs::perms::owner_all);
    const auto ask = [](const fs::path& location) {
        return asOrdinaryUser([&] {
            return std::string(mayExist(location) ? "exists" : "missing") +
                   (isKnownToExist(location) ? ", known" : "") +
                   (isExecutableFile(location) ? ", executable" : "");
        });
    };
    EXPECT_EQ(ask(directory_ / "program"), "exists, known, executable");
    // The file system does not tell whether it exists; the attempt to read it then reports the reason.
    EXPECT_EQ(ask(directory_ / "films/ferry/run.json"), "exists");
    EXPECT_EQ(ask(directory_ / "films/nothing"), "exists");
    EXPECT_EQ(ask(directory_ / "mine"), ::geteuid() == 0 ? "exists, known" : "exists, known, executable");
}

} // namespace
} // namespace kinovane::test
