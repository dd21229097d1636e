// SPDX-License-Identifier: Apache-2.0

// Writing a manifest when memory allocations fail.

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

struct Row {
    const char* sentence;
    const char* name;  ///< Of the manifest, in a directory with old.json and a link to it.
    std::size_t times; ///< How many allocations in a row fail.
};

const Row rows[] = {
    {"one allocation, an old manifest", "old.json", 1},
    {"all later allocations, an old manifest", "old.json", FailingAllocation::forever},
    {"one allocation, a link to an old manifest", "link.json", 1},
    {"one allocation, no old manifest", "new.json", 1},
    {"all later allocations, no old manifest", "new.json", FailingAllocation::forever},
    {"one allocation, a new directory", "new/new.json", 1},
};

struct Attempt {
    bool succeeded;
    bool failed; ///< Whether an allocation failed.
};

Attempt writeWithFailure(const fs::path& target, std::size_t index, std::size_t times) {
    const FailingAllocation failure(index, times);
    try {
        VistrelHandoffBuilder::write(VistrelHandoff(), target);
    } catch (const std::bad_alloc&) {
        return {false, failure.hasFailed()};
    }
    return {true, failure.hasFailed()};
}

TEST(FailedAllocation, LeavesTheOldManifestAndNothingElse) {
    const TemporaryDirectory directory;
    const fs::path output = directory / "output";
    const std::string content = encodeJSON(VistrelHandoff(), JSONFormat::pretty);
    const auto prepare = [&] {
        fs::remove_all(output);
        directory.write("output/old.json", "old");
        fs::create_symlink("old.json", output / "link.json");
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const fs::path target = output / row.name;
        prepare();
        VistrelHandoffBuilder::write(VistrelHandoff(), target); // Allocates what is only made once.
        const std::size_t descriptors = countProcess().descriptors;
        Attempt attempt{};
        std::size_t index = 0;
        do {
            SCOPED_TRACE("allocation " + std::to_string(index));
            prepare();
            const bool existed = fs::exists(target);
            attempt = writeWithFailure(target, index, row.times);
            EXPECT_TRUE(attempt.succeeded || attempt.failed);
            ASSERT_EQ(fs::exists(target), attempt.succeeded || existed);
            if (attempt.succeeded || existed)
                EXPECT_EQ(contentOf(target), attempt.succeeded ? content : "old");
            for (const fs::directory_entry& entry : fs::recursive_directory_iterator(output))
                EXPECT_NE(entry.path().extension(), ".tmp") << "temporary file left behind";
            EXPECT_EQ(countProcess().descriptors, descriptors);
            ++index;
        } while (attempt.failed);
        EXPECT_GT(index, 5U) << "too few allocations were counted";
    }
}

} // namespace

} // namespace kinovane::test
