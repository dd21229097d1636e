// SPDX-License-Identifier: Apache-2.0

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/forked_process.hpp"
#include "support/limits.hpp"
#include "support/temporary_directory.hpp"
#include "support/variable.hpp"
#include "tooling/film_tool/pi_copies.hpp"
#include "tooling/process/user_database.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

const char* const rootInHome = "Library/Application Support/QuexRun/agents/pi";

/// The path that was found, or the description of the error.
std::string found(const std::string& command) {
    try {
        return PiExecutableResolver::resolve(command).string();
    } catch (const FilmToolError& error) {
        return error.errorDescription();
    }
}

std::string notFound(const std::string& command) { return "Required executable not found: " + command; }

/// A user whose home directory in the user database is not that of HOME, which holds a newer copy of pi. PATH
/// is a directory "bin", which is empty at first.
class PiResolver : public testing::Test {
  protected:
    PiResolver() {
        fs::create_directories(directory / "bin");
        installPi(directory / "other home" / rootInHome, "99.0");
    }

    void SetUp() override {
        for (const char* searched : {"/opt/homebrew/bin", "/usr/local/bin", "/usr/bin", "/bin"})
            ASSERT_FALSE(fs::exists(fs::path(searched) / "pi"))
                << "this machine has a pi that would be found first";
    }

    std::string install(const std::string& version) const { return installPi(root, version).string(); }

    std::string addProgram(const std::string& name) const {
        fs::permissions(directory.write(name, "never run"), fs::perms::owner_all);
        return (directory / name).string();
    }

    const TemporaryDirectory directory;
    UserDatabase users{(directory / "home").string()};
    const fs::path root = directory / "home" / rootInHome;
    const Variable home{"HOME", (directory / "other home").string()};
    const Variable path{"PATH", (directory / "bin").string()};
};

TEST_F(PiResolver, FindsTheNewestInstalledCopy) {
    install("1.10.0");
    install("1.9.3");
    install("latest");
    install(".99");
    const std::string newest = install("v2.0");
    EXPECT_EQ(found("pi"), newest);
    fs::permissions(newest, fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(found("pi"), (root / "1.10.0/pi/pi").string());
    fs::remove_all(root / "1.10.0");
    EXPECT_EQ(found("pi"), (root / "1.9.3/pi/pi").string());
    fs::remove_all(root / "1.9.3");
    EXPECT_EQ(found("pi"), (root / "latest/pi/pi").string());
    fs::remove_all(root / "latest");
    EXPECT_EQ(found("pi"), notFound("pi"));
}

TEST_F(PiResolver, PrefersTheSearchPath) {
    install("99.9");
    const std::string onPath = addProgram("bin/pi");
    EXPECT_EQ(found("pi"), onPath);
    fs::permissions(onPath, fs::perms::owner_read);
    EXPECT_EQ(found("pi"), (root / "99.9/pi/pi").string());
}

TEST_F(PiResolver, FindsAnInstalledCopyWithoutPATH) {
    const Variable none("PATH", std::nullopt);
    const std::string copy = install("1.0");
    EXPECT_EQ(found("pi"), copy);
}

TEST_F(PiResolver, FindsInstalledCopiesOnlyForTheBareName) {
    install("1.0");
    const std::string nul("pi\0", 3);
    for (const std::string& command :
         {std::string("Pi"), std::string("PI"), std::string(" pi"), std::string("pi "), std::string("pi\n"),
          std::string("/x/pi"), std::string("./pi"), std::string("~/pi"), std::string("pi/pi"),
          std::string("pi/"), std::string("~pi"), std::string("p"), std::string("pi2"), std::string(), nul}) {
        SCOPED_TRACE(command);
        EXPECT_EQ(found(command), notFound(command));
        try {
            (void)PiExecutableResolver::resolve(command);
            ADD_FAILURE() << "it was found";
        } catch (const FilmToolError& error) {
            EXPECT_EQ(error, FilmToolError(FilmToolError::executableNotFound{command}));
        }
    }
}

TEST_F(PiResolver, FindsOtherCommandsLikeAnyProgram) {
    install("1.0");
    const std::string other = addProgram("bin/Pi");
    EXPECT_EQ(found("Pi"), other);
    const std::string elsewhere = addProgram("elsewhere/pi");
    EXPECT_EQ(found(elsewhere), elsewhere);
    const std::string atHome = addProgram("home/bin/pi");
    EXPECT_EQ(found("~/bin/pi"), atHome);
}

TEST_F(PiResolver, ReportsThatPiIsNotFound) {
    EXPECT_EQ(found("pi"), "Required executable not found: pi");
    fs::create_directories(root);
    EXPECT_EQ(found("pi"), "Required executable not found: pi");
    fs::remove(root);
    std::ofstream(root) << "a file in place of the directory";
    EXPECT_EQ(found("pi"), "Required executable not found: pi");
}

TEST_F(PiResolver, ListsTheCopiesInTheDefaultRoot) {
    EXPECT_EQ(PiExecutableResolver::defaultRoot(), root);
    EXPECT_EQ(PiExecutableResolver::bundledCandidates(), std::vector<fs::path>());
    const std::string older = install("1.9");
    const std::string newer = install("1.10");
    EXPECT_EQ(PiExecutableResolver::bundledCandidates(), (std::vector<fs::path>{newer, older}));
}

TEST_F(PiResolver, AcceptsALongEntryOfTheUserDatabase) {
    const std::string copy = install("1.0");
    users.bufferNeeded = 100'000;
    EXPECT_EQ(found("pi"), copy);
}

// The copy below the environment's HOME is not found.
TEST_F(PiResolver, FindsNoCopiesForAUserWithoutAHomeDirectory) {
    install("1.0");
    struct Row {
        const char* sentence;
        std::optional<std::string> home;
        int error;
    };
    for (const Row& row :
         {Row{"no entry", std::nullopt, 0}, Row{"an entry without a home", "", 0},
          Row{"an entry with a relative home", "home", 0}, Row{"no database", directory / "home", ENOENT},
          Row{"no such user", directory / "home", ESRCH}}) {
        SCOPED_TRACE(row.sentence);
        users.home = row.home;
        users.error = row.error;
        EXPECT_EQ(PiExecutableResolver::defaultRoot(), fs::path());
        EXPECT_EQ(PiExecutableResolver::bundledCandidates(), std::vector<fs::path>());
        EXPECT_EQ(found("pi"), notFound("pi"));
        EXPECT_EQ(found("~/pi"), notFound("~/pi"));
    }
}

/// The default root, or the reason why there is none.
std::string defaultRootOrError() {
    try {
        return PiExecutableResolver::defaultRoot().string();
    } catch (const std::system_error& error) {
        return error.what();
    }
}

// If the user database cannot be read, the user is not treated as an unknown one.
TEST_F(PiResolver, ReportsAnUnreadableUserDatabase) {
    install("1.0");
    struct Row {
        const char* sentence;
        int error;
        std::size_t bufferNeeded;
        std::string expected;
    };
    for (const Row& row : {Row{"no descriptors left", EMFILE, 0, "Too many open files"},
                           Row{"none left in the system", ENFILE, 0, "Too many open files in system"},
                           Row{"an input/output error", EIO, 0, "Input/output error"},
                           Row{"out of memory", ENOMEM, 0, "Cannot allocate memory"},
                           Row{"an entry that is too long", 0, std::numeric_limits<std::size_t>::max(),
                               "Numerical result out of range"}}) {
        SCOPED_TRACE(row.sentence);
        users.error = row.error;
        users.bufferNeeded = row.bufferNeeded;
        EXPECT_EQ(defaultRootOrError(), "getpwuid_r: " + row.expected);
        EXPECT_EQ(found("pi"), notFound("pi"));
        EXPECT_EQ(found("~/bin/pi"), notFound("~/bin/pi"));
        const std::string onPath = addProgram("bin/pi");
        EXPECT_EQ(found("pi"), onPath);
        fs::remove(onPath);
    }
}

// If one source of the database fails and the next does not hold the user, only errno shows the failure.
TEST_F(PiResolver, ReportsAUserDatabaseOfWhichOneSourceFails) {
    users.home.reset();
    for (const int error : {EMFILE, ENFILE, EIO, ENOMEM}) {
        users.silentError = error;
        EXPECT_EQ(defaultRootOrError(), "getpwuid_r: " + std::generic_category().message(error));
    }
    for (const int error : {0, ENOENT, ECONNREFUSED, ENOTTY}) {
        users.silentError = error;
        EXPECT_EQ(defaultRootOrError(), "");
    }
}

// Some sources of the system's user database can be read without a descriptor, others cannot.
TEST(PiResolverWithoutDescriptors, FindsTheDefaultRootOrReportsAnError) {
    const TemporaryDirectory directory;
    installPi(directory / rootInHome, "99.0");
    const Variable home("HOME", directory.path().string());
    const Variable path("PATH", directory.path().string());
    const std::string expected = defaultRootOrError();
    const std::string outcome = inForkedProcess([] {
        leaveDescriptors(0);
        return defaultRootOrError() + "\n" + found("pi");
    });
    EXPECT_THAT(outcome, testing::AnyOf("getpwuid_r: Too many open files\n" + notFound("pi"),
                                        expected + "\n" + notFound("pi")));
}

TEST_F(PiResolver, RepeatsAnInterruptedQuery) {
    const std::string copy = install("1.0");
    users.interruptions = 3;
    EXPECT_EQ(found("pi"), copy);
}

} // namespace

} // namespace kinovane::test
