// SPDX-License-Identifier: Apache-2.0

#include "arguments/suggestion.hpp"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

TEST(Suggestion, IsTheKnownWordThatNeedsTheFewestChanges) {
    const std::vector<std::string> known{"verify", "review", "reroll", "publish", "status", "-0"};
    struct Row {
        std::string sentence, word;
        std::optional<std::string> expected;
    };
    const std::vector<Row> rows{
        {"the word itself", "verify", "verify"},
        {"a missing letter", "verfy", "verify"},
        {"a letter too many", "verifyy", "verify"},
        {"another letter", "publich", "publish"},
        {"two letters exchanged", "verfiy", "verify"},
        {"two exchanges", "stauts", "status"},
        {"nearer to one of two", "revie", "review"},
        {"a third of the letters", "pblis", "publish"},
        {"more than a third", "pish", std::nullopt},
        {"another word", "import", std::nullopt},
        {"nothing", "", std::nullopt},
        {"a very long word", std::string(100000, 'v'), std::nullopt},
    };
    for (const Row& row : rows)
        EXPECT_EQ(similarWord(row.word, known), row.expected) << row.sentence;
}

TEST(Suggestion, IsMissingWithoutKnownWords) { EXPECT_EQ(similarWord("verify", {}), std::nullopt); }

} // namespace

} // namespace kinovane::tool
