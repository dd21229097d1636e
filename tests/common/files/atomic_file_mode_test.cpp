// SPDX-License-Identifier: Apache-2.0

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "common/files/write_atomically.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

mode_t modeOf(const fs::path& location) {
    struct stat status{};
    EXPECT_EQ(::stat(location.c_str(), &status), 0);
    return status.st_mode & 07777;
}

/// Sets the umask of this process, and restores it.
class Umask {
  public:
    explicit Umask(mode_t mask) : before_(::umask(mask)) {}
    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;
    ~Umask() { ::umask(before_); }

  private:
    mode_t before_;
};

TEST(AtomicFile, AppliesTheUmaskToANewFile) {
    const TemporaryDirectory directory;
    for (const mode_t mask : {0022U, 0077U, 0000U, 0002U}) {
        SCOPED_TRACE(mask);
        const Umask umask(mask);
        const fs::path location = directory / "new.json";
        writeAtomically(location, "{}");
        EXPECT_EQ(modeOf(location), 0666 & ~mask);
        fs::remove(location);
    }
}

TEST(AtomicFile, KeepsThePermissionBitsOfAnOldFile) {
    const TemporaryDirectory directory;
    const Umask umask(0077);
    const fs::path location = directory.write("old.json", "old");
    for (const mode_t mode : {0644U, 0600U, 0666U, 0400U, 0755U, 0000U}) {
        SCOPED_TRACE(mode);
        ASSERT_EQ(::chmod(location.c_str(), mode), 0);
        writeAtomically(location, "new");
        EXPECT_EQ(modeOf(location), mode);
    }
}

TEST(AtomicFile, DropsTheOtherModeBitsOfAnOldFile) {
    const TemporaryDirectory directory;
    struct Row {
        const char* sentence;
        mode_t old;
        mode_t expected;
    };
    const Row rows[] = {
        {"the set-user-ID bit", 04755, 0755},
        {"the set-group-ID bit", 02755, 0755},
        {"the set-group-ID bit of a file that is not executed", 02644, 0644},
        {"the restricted deletion bit", 01644, 0644},
        {"all of them", 07777, 0777},
    };
    const Umask umask(0022);
    const fs::path location = directory.write("old.json", "old");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        ASSERT_EQ(::chmod(location.c_str(), row.old), 0);
        ASSERT_EQ(modeOf(location), row.old);
        writeAtomically(location, "new");
        EXPECT_EQ(modeOf(location), row.expected);
    }
}

// The owner of the old file must not be able to write to the new file, which another user owns.
TEST(AtomicFile, DropsWritePermissionOfOthersWhenTheOwnerChanges) {
    const TemporaryDirectory directory;
    struct Row {
        const char* sentence;
        uid_t owner;
        gid_t group;
        mode_t old;
        mode_t expected; ///< When the owner or the group was changed.
    };
    constexpr unsigned other = 65534;
    const uid_t own = ::geteuid();
    const gid_t ownGroup = ::getegid();
    const Row rows[] = {
        {"another owner", other, ownGroup, 0666, 0644},
        {"another group", own, other, 0666, 0644},
        {"both", other, other, 0777, 0755},
        {"both, with the set-user-ID and set-group-ID bits", other, other, 06775, 0755},
        {"only the owner may write", other, other, 0640, 0640},
        {"not even the owner may write", other, other, 0466, 0444},
    };
    const Umask umask(0);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const fs::path location = directory.write("old.json", "old");
        // Only root can change the owner. For other users the owner stays, and so do the permissions.
        const bool changed = ::chown(location.c_str(), row.owner, row.group) == 0;
        ASSERT_EQ(::chmod(location.c_str(), row.old), 0);
        writeAtomically(location, "new");
        EXPECT_EQ(modeOf(location), changed ? row.expected : row.old & 0777);
        fs::remove(location);
    }
}

} // namespace
} // namespace kinovane::test
