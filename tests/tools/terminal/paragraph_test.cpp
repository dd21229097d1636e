// SPDX-License-Identifier: Apache-2.0

#include "terminal/paragraph.hpp"

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

TEST(Paragraphs, AreWrappedEach) {
    EXPECT_EQ(paragraphs("", 10), "");
    EXPECT_EQ(paragraphs("short\nas short\n", 10), "short\nas short\n");
    EXPECT_EQ(paragraphs("one two three\nfour", 10), "one two\nthree\nfour\n");
}

TEST(NextCommandText, DoesNotBreakTheCommand) {
    EXPECT_EQ(nextCommandText("", "kinovane verify --all my-film", 10),
              "Next: kinovane verify --all my-film\n");
    EXPECT_EQ(nextCommandText("fix it, then", "kinovane verify", 34), "Next: fix it, then kinovane verify\n");
    EXPECT_EQ(nextCommandText("fix it, then", "kinovane verify", 33),
              "Next: fix it, then\n      kinovane verify\n");
    EXPECT_EQ(nextCommandText("fix it, then", "kinovane verify", 13),
              "Next: fix it,\nthen\n      kinovane verify\n");
}

} // namespace

} // namespace kinovane::tool
