// SPDX-License-Identifier: Apache-2.0

#include "terminal/narrow_table.hpp"

#include <gtest/gtest.h>

#include "terminal/style.hpp"

namespace kinovane::tool {

namespace {

TEST(NarrowTable, LeavesColumnsOutByTheirRank) {
    using enum TextTable::Alignment;
    NarrowTable table({{"id", left, 4, 6, 0}, {"n", right, 3, 3, 2}, {"text", left, 6, 99, 1}});
    table.add({"s1", "12", "some words here"});
    table.add({"a-long-id", "3", "more"});
    const struct {
        std::size_t columns;
        const char* expected;
    } rows[]{
        {80, "  id       n  text\n  s1      12  some words here\n  a-lon…   3  more\n"},
        {20, "  id       n  text\n  s1      12  some …\n  a-lon…   3  more\n"},
        {16, "  id      text\n  s1      some …\n  a-lon…  more\n"},
        {13, "  id\n  s1\n  a-lon…\n"},
        {2, "  id\n  s1\n  a-l…\n"},
    };
    for (const auto& [columns, expected] : rows)
        EXPECT_EQ(rendered(table.text(columns), false), expected) << columns;
}

} // namespace

} // namespace kinovane::tool
