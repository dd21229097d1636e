// SPDX-License-Identifier: Apache-2.0

#include "arguments/storyboard_description.hpp"

#include <cstdint>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

TEST(Size, IsANumberAndAUnit) {
    const struct {
        std::string text;
        std::optional<std::uint64_t> bytes;
    } rows[]{
        {"0", 0},
        {"1500", 1500},
        {"1500 B", 1500},
        {"1500kB", 1'500'000},
        {"16 MB", 16'000'000},
        {"2 GB", 2'000'000'000},
        {"18446744073709551615", UINT64_MAX},
        {"18446744073709551616", std::nullopt},
        {"18446744073709552 kB", std::nullopt},
        {"", std::nullopt},
        {"MB", std::nullopt},
        {"-1", std::nullopt},
        {"1.5 MB", std::nullopt},
        {"1 mb", std::nullopt},
        {"1  MB", std::nullopt},
        {"1 MB ", std::nullopt},
    };
    for (const auto& [text, bytes] : rows)
        EXPECT_EQ(bytesOf(text), bytes) << text;
}

} // namespace

} // namespace kinovane::tool
