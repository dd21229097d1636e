// SPDX-License-Identifier: Apache-2.0

#include "terminal/shell_word.hpp"

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

TEST(ShellWord, IsReadByAShellAsTheText) {
    const struct {
        const char* sentence;
        std::string text;
        const char* expected;
    } rows[]{
        {"plain text", "rough-cut_2.mp4", "rough-cut_2.mp4"},
        {"a path", "/films/my-film/run.json", "/films/my-film/run.json"},
        {"letters that are not ASCII", "Fähre", "Fähre"},
        {"no text", "", "''"},
        {"a blank", "my film", "'my film'"},
        {"a quotation mark", "it's", "'it'\\''s'"},
        {"an expansion", "$HOME", "'$HOME'"},
        {"a home directory", "~ana", "'~ana'"},
        {"a command", "a;b", "'a;b'"},
        {"a pattern", "a*", "'a*'"},
        {"a backslash", "a\\b", "'a\\b'"},
        {"a line break", "a\nb", "$'a\\nb'"},
        {"an escape and a quotation mark", "\x1b'", "$'\\x1b\\''"},
        {"a byte that is not UTF-8", "\xff", "$'\\xff'"},
    };
    for (const auto& [sentence, text, expected] : rows)
        EXPECT_EQ(shellWord(text), expected) << sentence;
}

} // namespace

} // namespace kinovane::tool
