// SPDX-License-Identifier: Apache-2.0

#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include <kinovane/testing/environment_variable.hpp>
#include <kinovane/testing/temporary_directory.hpp>

namespace kinovane::testing {
namespace {

namespace fs = std::filesystem;

TEST(TemporaryDirectory, IsNewEmptyAndCanonical) {
    const TemporaryDirectory first;
    const TemporaryDirectory second;

    EXPECT_NE(first.path(), second.path());
    EXPECT_TRUE(fs::is_empty(first.path()));
    EXPECT_EQ(first.path(), fs::canonical(first.path()));
    EXPECT_EQ(first / "a/b", first.path() / "a" / "b");
}

TEST(TemporaryDirectory, IsRemovedWithWhatATestMadeUnreadable) {
    fs::path path;
    {
        const TemporaryDirectory directory;
        path = directory.path();
        fs::create_directories(directory / "outer/inner");
        std::ofstream(directory / "outer/inner/file") << "text";
        fs::permissions(directory / "outer/inner", fs::perms::none);
        fs::permissions(directory / "outer", fs::perms::none);
    }
    EXPECT_FALSE(fs::exists(path));
}

TEST(TemporaryDirectory, IsRemovedWithoutFollowingALink) {
    const TemporaryDirectory kept;
    {
        const TemporaryDirectory directory;
        fs::create_directory_symlink(kept.path(), directory / "link");
        std::ofstream(kept / "file") << "text";
    }
    EXPECT_TRUE(fs::exists(kept / "file"));
}

TEST(TemporaryDirectory, ReportsThatItCannotBeCreated) {
    const TemporaryDirectory directory;
    const EnvironmentVariable elsewhere("TMPDIR", (directory / "missing").string());
    EXPECT_THROW(TemporaryDirectory{}, fs::filesystem_error);
}

TEST(EnvironmentVariable, RestoresTheFormerState) {
    constexpr const char* name = "KINOVANE_TESTKIT_VARIABLE";
    {
        const EnvironmentVariable outer(name, "outer");
        EXPECT_STREQ(std::getenv(name), "outer");
        {
            const EnvironmentVariable inner(name, std::nullopt);
            EXPECT_EQ(std::getenv(name), nullptr);
        }
        EXPECT_STREQ(std::getenv(name), "outer");
    }
    EXPECT_EQ(std::getenv(name), nullptr);
}

} // namespace
} // namespace kinovane::testing
