// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/ordinary_user.hpp"
#include "support/temporary_directory.hpp"
#include "tooling/film_tool/pi_copies.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

/// The versions of the candidates below a root. Checks the path of each.
std::vector<std::string> versionsIn(const fs::path& root) {
    std::vector<std::string> versions;
    for (const fs::path& candidate : PiExecutableResolver::bundledCandidates(root)) {
        const std::string version = candidate.parent_path().parent_path().filename().string();
        EXPECT_EQ(candidate.string(), (root / version / "pi/pi").string());
        versions.push_back(version);
    }
    return versions;
}

using Versions = std::vector<std::string>;

TEST(PiCandidates, AreSortedNewestFirst) {
    struct Row {
        const char* sentence;
        Versions installed;
        Versions expected;
    };
    const std::vector<Row> rows{
        {"no version", {}, {}},
        {"one version", {"1.4.2"}, {"1.4.2"}},
        {"numbers are compared as numbers", {"1.9.3", "1.10.0"}, {"1.10.0", "1.9.3"}},
        {"with a v", {"1.10.0", "1.9.3", "v2.0"}, {"v2.0", "1.10.0", "1.9.3"}},
        {"a word comes last",
         {"latest", "0.0.1", "1.9.3", "v2.0", "1.10.0"},
         {"v2.0", "1.10.0", "1.9.3", "0.0.1", "latest"}},
        {"the longer one first", {"1.2", "1.2.0", "1.2.0.0"}, {"1.2.0.0", "1.2.0", "1.2"}},
        {"odd names",
         {"3-beta", "0.5", "1..3", "2", "1.2", "vv9.1"},
         {"2", "1..3", "1.2", "0.5", "vv9.1", "3-beta"}},
        {"numbers beyond 64 bits", {"99999999999999999999", "1"}, {"1", "99999999999999999999"}},
        {"hidden entries are ignored", {".9.9", "1", ".hidden"}, {"1"}},
        {"spaces are part of the name", {"my pi", "2 beta.1", "1.0"}, {"1.0", "2 beta.1", "my pi"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const TemporaryDirectory root;
        for (const std::string& version : row.installed)
            installPi(root.path(), version);
        EXPECT_EQ(versionsIn(root.path()), row.expected);
    }
}

TEST(PiCandidates, KeepTheOrderOfTheDirectoryForEqualVersions) {
    const TemporaryDirectory root;
    for (const char* version : {"1.2", "v1.2", "01.2", "1.02", "1..2", "1.2.", "v01.2", "+1.2", "001.2",
                                "1.002", "v1..2", "..hidden", "1.+2", "0001.2"})
        installPi(root.path(), version);
    Versions expected;
    for (const fs::directory_entry& entry : fs::directory_iterator(root.path()))
        if (const std::string name = entry.path().filename().string(); !name.starts_with('.'))
            expected.push_back(name);
    ASSERT_EQ(expected.size(), 13U);
    EXPECT_EQ(versionsIn(root.path()), expected);

    installPi(root.path(), "1.1");
    installPi(root.path(), "1.3");
    const Versions more = versionsIn(root.path());
    ASSERT_EQ(more.size(), 15U);
    EXPECT_EQ(more.front(), "1.3");
    EXPECT_EQ(more.back(), "1.1");
}

TEST(PiCandidates, SkipWhatIsNotAnInstalledCopy) {
    const TemporaryDirectory root;
    installPi(root.path(), "1.0");
    root.write("2.0", "a file in place of a version");
    fs::create_directories(root / "3.0");
    fs::create_directories(root / "4.0/pi");
    root.write("5.0/pi/pi", "not to be executed");
    fs::create_directories(root / "6.0/pi/pi");
    installPi(root.path(), "7.0/bin");
    root.write("8.0/pi", "a file in place of a directory");
    fs::create_directories(root / "9.0/pi");
    fs::create_symlink("nowhere", root / "9.0/pi/pi");
    fs::create_symlink("nowhere", root / "10.0");
    root.write(".DS_Store", "hidden");
    EXPECT_EQ(versionsIn(root.path()), Versions{"1.0"});
}

TEST(PiCandidates, IncludeLinkedCopies) {
    const TemporaryDirectory root;
    const TemporaryDirectory elsewhere;
    installPi(elsewhere.path(), "somewhere");
    fs::create_directory_symlink(elsewhere / "somewhere", root / "1.0");
    fs::create_directories(root / "2.0/pi");
    fs::create_symlink(elsewhere / "somewhere/pi/pi", root / "2.0/pi/pi");
    EXPECT_EQ(versionsIn(root.path()), (Versions{"2.0", "1.0"}));
    fs::create_directory_symlink(root.path(), elsewhere / "root");
    EXPECT_EQ(versionsIn(elsewhere / "root"), (Versions{"2.0", "1.0"}));
}

TEST(PiCandidates, AreAbsoluteForARelativeRoot) {
    const TemporaryDirectory directory;
    const std::string copy = installPi(directory / "agents", "1.0").string();
    const fs::path former = fs::current_path();
    fs::current_path(directory.path());
    for (const char* root : {"agents", "./agents", ".//agents"})
        EXPECT_EQ(PiExecutableResolver::bundledCandidates(root), std::vector<fs::path>{copy}) << root;
    fs::current_path(directory / "agents");
    for (const char* root : {".", "./"})
        EXPECT_EQ(PiExecutableResolver::bundledCandidates(root), std::vector<fs::path>{copy}) << root;
    EXPECT_EQ(PiExecutableResolver::bundledCandidates(""), std::vector<fs::path>());
    fs::current_path(former);
}

TEST(PiCandidates, AreEmptyForARootThatCannotBeListed) {
    const TemporaryDirectory directory;
    directory.write("file", "");
    fs::create_symlink("loop", directory / "loop");
    for (const fs::path& root : {directory / "nothing", directory / "file", directory / "loop", fs::path(),
                                 fs::path(directory.path().string() + std::string("\0x", 2))})
        EXPECT_EQ(PiExecutableResolver::bundledCandidates(root), std::vector<fs::path>()) << root;
}

TEST(PiCandidates, IncludeOnlyWhatTheUserMayListAndExecute) {
    const TemporaryDirectory directory;
    installPi(directory.path(), "root/1.0");
    installPi(directory.path(), "root/2.0");
    const auto shared = fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec;
    fs::permissions(directory.path(), shared);
    for (const auto& entry : fs::recursive_directory_iterator(directory.path()))
        fs::permissions(entry.path(), shared);
    const auto versions = [&] {
        std::string text;
        for (const std::string& version : versionsIn(directory / "root"))
            text += version + " ";
        return text;
    };
    EXPECT_EQ(asOrdinaryUser(versions), "2.0 1.0 ");
    // The permissions of others apply if root runs the tests, and those of the owner otherwise.
    const bool root = ::geteuid() == 0;
    fs::permissions(directory / "root/2.0/pi/pi", root ? fs::perms::owner_all : fs::perms::others_all);
    EXPECT_EQ(asOrdinaryUser(versions), "1.0 ");
    fs::permissions(directory / "root", fs::perms::owner_exec | fs::perms::others_exec);
    EXPECT_EQ(asOrdinaryUser(versions), "");
    fs::permissions(directory / "root", shared);
}

} // namespace

} // namespace kinovane::test
