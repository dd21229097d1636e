// SPDX-License-Identifier: Apache-2.0

#include "common/json/table.hpp"

#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "common/json/example_record.hpp"

namespace kinovane::test {
namespace {

template <class... Keys>
consteval bool arePlainAndDistinct(Keys... keys) {
    const std::string_view list[] = {keys...};
    return json::hasPlainDistinctKeys(list);
}

static_assert(arePlainAndDistinct("title"));
static_assert(arePlainAndDistinct("title", "take", "titles"));
static_assert(arePlainAndDistinct("sha256", "audio_url", "a b", "$ref", "~", "'"));
static_assert(arePlainAndDistinct("Title", "title"));

static_assert(!arePlainAndDistinct("title", "take", "title"));
static_assert(!arePlainAndDistinct("say \"cut\""));
static_assert(!arePlainAndDistinct("take\\2"));
static_assert(!arePlainAndDistinct("title", "a\nb"));
static_assert(!arePlainAndDistinct(std::string_view("a\0b", 3)));
static_assert(!arePlainAndDistinct("a\x7F"));
static_assert(!arePlainAndDistinct("sc\u00e8ne"));

static_assert(json::memberCount<Prop> == 2);
static_assert(json::memberCount<Scene> == 8);

TEST(JSONTable, ListsItsKeysInDeclaredOrder) {
    const auto& keys = json::keys<Scene>;
    EXPECT_EQ(std::vector<std::string_view>(keys.begin(), keys.end()),
              (std::vector<std::string_view>{"title", "take", "length", "night", "props", "extras", "star",
                                             "note"}));
}

} // namespace
} // namespace kinovane::test
