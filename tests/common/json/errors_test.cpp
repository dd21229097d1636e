// SPDX-License-Identifier: Apache-2.0

#include <type_traits>

#include <gtest/gtest.h>

#include <kinovane/json.hpp>

namespace kinovane::test {
namespace {

static_assert(std::is_nothrow_copy_constructible_v<JSONDecodingError>);
static_assert(std::is_nothrow_copy_assignable_v<JSONDecodingError>);
static_assert(std::is_nothrow_copy_constructible_v<JSONEncodingError>);
static_assert(std::is_nothrow_copy_assignable_v<JSONEncodingError>);

TEST(JSONError, HoldsAPathAndAMessage) {
    const JSONEncodingError error("shots[2].seconds", "shots[2].seconds: the number is not finite");
    EXPECT_EQ(error.path(), "shots[2].seconds");
    EXPECT_STREQ(error.what(), "shots[2].seconds: the number is not finite");
}

TEST(JSONError, KeepsItsTextsWhenItIsCopied) {
    JSONDecodingError assigned("", "");
    {
        const JSONDecodingError original("artifacts[3].bytes", "artifacts[3].bytes is missing");
        const JSONDecodingError copy(original); // NOLINT(performance-unnecessary-copy-initialization)
        assigned = copy;
    }
    EXPECT_EQ(assigned.path(), "artifacts[3].bytes");
    EXPECT_STREQ(assigned.what(), "artifacts[3].bytes is missing");
}

} // namespace
} // namespace kinovane::test
