// SPDX-License-Identifier: Apache-2.0

#include "handoff/milliseconds.hpp"

#include <cstdint>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kinovane::test {
namespace {

TEST(Milliseconds, AreRoundedFromSeconds) {
    struct Row {
        std::string_view sentence;
        double seconds;
        std::int64_t expected;
    };
    const std::vector<Row> rows{
        {"zero", 0, 0},
        {"negative zero", -0.0, 0},
        {"whole seconds", 3, 3000},
        {"a half is rounded up", 0.0625, 63},
        {"a half above an even number is rounded up", 2.0625, 2063},
        {"half a millisecond", 0.0005, 1},
        {"just less than half", 0.000499999, 0},
        {"a negative half is rounded down", -0.0625, -63},
        {"a negative half below an even number is rounded down", -2.0625, -2063},
        {"half a negative millisecond", -0.0005, -1},
        {"a third", 1.0 / 3, 333},
        {"two thirds", 2.0 / 3, 667},
        {"the smallest positive number", 5e-324, 0},
        {"the longest that fits", 9223372036854774.0, 9223372036854773760},
        {"the lowest that fits", -9223372036854775.808, INT64_MIN},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(roundedMilliseconds(row.seconds), row.expected);
    }
}

} // namespace
} // namespace kinovane::test
