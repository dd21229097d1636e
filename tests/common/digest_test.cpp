// SPDX-License-Identifier: Apache-2.0

#include "common/digest.hpp"

#include <span>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kinovane {
namespace {

std::span<const std::byte> bytesOf(std::string_view text) { return std::as_bytes(std::span(text)); }

struct Row {
    const char* sentence;
    std::string text;
    const char* digest;
};

TEST(Digest, MatchesTheKnownDigestOfEachText) {
    const Row rows[] = {
        {"an empty text", "", "sha256:e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"three letters", "abc", "sha256:ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"more than one block", "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "sha256:248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {"a million letters", std::string(1'000'000, 'a'),
         "sha256:cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(digestText(bytesOf(row.text)), row.digest);
    }
}

TEST(Digest, DoesNotDependOnHowTheTextIsDivided) {
    std::string text;
    for (int number = 0; number < 400; ++number)
        text += static_cast<char>(number * 7);
    const std::string whole = digestText(bytesOf(text));
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        Digest digest;
        digest.update(bytesOf(std::string_view(text).substr(0, cut)));
        digest.update({});
        digest.update(bytesOf(std::string_view(text).substr(cut)));
        ASSERT_EQ(digest.finish(), whole) << cut;
    }
}

TEST(Digest, ComputesSeveralDigestsWithOneObject) {
    Digest digest;
    digest.update(bytesOf("abc"));
    const std::string first = digest.finish();
    EXPECT_EQ(first, digestText(bytesOf("abc")));
    EXPECT_EQ(digest.finish(), digestText({}));
    digest.update(bytesOf("discarded"));
    digest.restart();
    digest.update(bytesOf("abc"));
    EXPECT_EQ(digest.finish(), first);
    EXPECT_EQ(first.substr(0, Digest::prefixLength), "sha256:");
}

} // namespace
} // namespace kinovane
