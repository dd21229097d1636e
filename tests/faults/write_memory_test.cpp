// SPDX-License-Identifier: Apache-2.0

// What is left of a manifest when there is no memory for the writing of it.

#include <cstddef>
#include <filesystem>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/child_counts.hpp"
#include "support/failing_allocation.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

struct MemoryRow {
    const char* sentence;
    const char* name; ///< Of the manifest, in a directory where old.json and a link to it lie.
    std::size_t times;
};

class WriteMemory : public testing::TestWithParam<MemoryRow> {
  protected:
    const TemporaryDirectory directory;
    const VistrelHandoff handoff;
    const fs::path target = directory / "place" / GetParam().name;
    const std::string content = encodeJSON(handoff, JSONFormat::pretty);

    void prepare() const {
        fs::remove_all(directory / "place");
        directory.write("place/old.json", "old");
        fs::create_symlink("old.json", directory / "place/link.json");
    }

    /// Writes with one failure; whether it came to that.
    bool attempt(std::size_t index) const {
        const FailingAllocation failure(index, GetParam().times);
        try {
            VistrelHandoffBuilder::write(handoff, target);
            succeeded = true;
        } catch (const std::bad_alloc&) {
            succeeded = false;
        }
        return failure.struck();
    }

    mutable bool succeeded = false;
};

TEST_P(WriteMemory, AFailedAllocationLeavesTheOldFileAndNothingElse) {
    prepare();
    attempt(FailingAllocation::forever); // Whatever is only made once is there from now on.
    ASSERT_TRUE(succeeded);
    const std::size_t descriptors = countProcess().descriptors;
    std::size_t index = 0;
    for (bool struck = true; struck; ++index) {
        SCOPED_TRACE("allocation " + std::to_string(index));
        prepare();
        const bool existed = fs::exists(target);
        struck = attempt(index);
        EXPECT_TRUE(succeeded || struck);
        ASSERT_EQ(fs::exists(target), succeeded || existed);
        if (succeeded || existed)
            EXPECT_EQ(contentOf(target), succeeded ? content : "old");
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory / "place"))
            EXPECT_NE(entry.path().extension(), ".tmp") << "left behind";
        EXPECT_EQ(countProcess().descriptors, descriptors);
    }
    EXPECT_GT(index, 10U) << "the allocations were not seen";
}

INSTANTIATE_TEST_SUITE_P(
    , WriteMemory,
    testing::Values(MemoryRow{"one over an old manifest", "old.json", 1},
                    MemoryRow{"all over an old manifest", "old.json", FailingAllocation::forever},
                    MemoryRow{"one through a link", "link.json", 1},
                    MemoryRow{"one in place of none", "new.json", 1},
                    MemoryRow{"all in place of none", "new.json", FailingAllocation::forever},
                    MemoryRow{"one into a new directory", "new/new.json", 1}),
    [](const auto& row) { return std::to_string(row.index); });

} // namespace

} // namespace kinovane::test
