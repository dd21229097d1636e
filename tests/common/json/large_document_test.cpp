// SPDX-License-Identifier: Apache-2.0

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/json/example_record.hpp"

namespace kinovane::test {
namespace {

TEST(JSONDecoder, ReportsAWrongElementAnywhereInALongList) {
    struct Row {
        std::size_t wrong; ///< The index of the wrong element.
        ErrorTexts texts;
    };
    const Row rows[] = {
        {0, {"[0]", "[0]: expected an integer, found a string"}},
        {63, {"[63]", "[63]: expected an integer, found a string"}},
        {64, {"[64]", "[64]: expected an integer, found a string"}},
        {65, {"[65]", "[65]: expected an integer, found a string"}},
        {1000, {"[1000]", "[1000]: expected an integer, found a string"}},
    };
    for (const Row& row : rows) {
        std::string list = "[";
        for (std::size_t index = 0; index <= 1000; ++index) {
            list += index == 0 ? "" : ",";
            list += index == row.wrong ? "\"x\"" : "1";
        }
        EXPECT_EQ(decodingErrorOf<std::vector<std::int64_t>>(list + "]"), row.texts);
    }
}

/// `count` members, whose keys are the numbers from `first` on.
std::string entries(int first, int count, const char* value) {
    std::string text;
    for (int key = first; key < first + count; ++key)
        text += '"' + std::to_string(key) + "\":" + value + ',';
    return text;
}

// More wrong values than are remembered in one pass, so that it takes several to find the one to report.
TEST(JSONDecoder, ReportsTheWrongValueWithTheLeastKeyOfAMap) {
    using Map = std::map<std::string, std::int64_t>;
    struct Row {
        const char* sentence;
        std::string entries;
        std::optional<ErrorTexts> texts;
    };
    const std::string wrong = entries(100, 900, "true");
    const Row rows[] = {
        {"all are wrong", wrong, ErrorTexts{"100", "100: expected an integer, found true"}},
        {"the first is replaced", wrong + entries(100, 1, "1"),
         ErrorTexts{"101", "101: expected an integer, found true"}},
        {"all but the last are replaced", wrong + entries(100, 899, "1"),
         ErrorTexts{"999", "999: expected an integer, found true"}},
        {"all but the first are replaced", wrong + entries(101, 899, "1"),
         ErrorTexts{"100", "100: expected an integer, found true"}},
        {"all but one in the middle", wrong + entries(100, 500, "1") + entries(601, 399, "1"),
         ErrorTexts{"600", "600: expected an integer, found true"}},
        {"all are replaced", wrong + entries(100, 900, "1"), std::nullopt},
        {"all are replaced, and one is wrong again", wrong + entries(100, 900, "1") + entries(700, 1, "null"),
         ErrorTexts{"700", "700: expected an integer, found null"}},
        {"all are wrong twice", wrong + entries(100, 900, "null"),
         ErrorTexts{"100", "100: expected an integer, found null"}},
        {"the second half comes first, and is replaced",
         entries(500, 500, "true") + entries(100, 400, "true") + entries(100, 899, "1"),
         ErrorTexts{"999", "999: expected an integer, found true"}},
        {"the keys after them are right", wrong + entries(100, 900, "1") + entries(1000, 900, "1"),
         std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const std::string text = "{" + row.entries + R"("0":0})";
        EXPECT_EQ(decodingErrorOf<Map>(text), row.texts);
    }
    const std::string text = "{" + wrong + entries(100, 900, "1") + R"("0":0})";
    const Map map = json::decode<Map>(text);
    EXPECT_EQ(map.size(), 901U);
    EXPECT_EQ(map, decodeInTwoPasses<Map>(text));
}

TEST(JSONDecoder, ReportsAWrongValueOfOneMapAmongSeveral) {
    using Maps = std::vector<std::map<std::string, std::int64_t>>;
    const std::string replaced = entries(100, 900, "true") + entries(100, 900, "1") + R"("0":0)";
    const std::string wrong = entries(100, 900, "true") + entries(100, 899, "1") + R"("0":0)";
    const std::string all = "{" + replaced + "},{" + replaced + "},{";
    EXPECT_EQ(decodingErrorOf<Maps>("[" + all + wrong + "}]"),
              (ErrorTexts{"[2].999", "[2].999: expected an integer, found true"}));
    EXPECT_EQ(decodingErrorOf<Maps>("[" + all + replaced + "}]"), std::nullopt);
}

// Each element takes many times its text, so the values are stored only after a pass that checks them.
TEST(JSONDecoder, ReservesExactlyWhatLongListsNeed) {
    using Texts = std::vector<std::vector<std::string>>;
    constexpr std::size_t outer = 100;
    constexpr std::size_t inner = 500;
    std::string text = "[";
    for (std::size_t list = 0; list < outer; ++list) {
        text += list == 0 ? "[" : ",[";
        for (std::size_t element = 0; element < inner + list; ++element)
            text += element == 0 ? R"("")" : R"(,"")";
        text += "]";
    }
    const Texts texts = json::decode<Texts>(text + "]");
    ASSERT_EQ(texts.size(), outer);
    for (std::size_t list = 0; list < outer; ++list) {
        EXPECT_EQ(texts[list].size(), inner + list);
        EXPECT_EQ(texts[list].capacity(), inner + list);
    }
    EXPECT_EQ(decodingErrorOf<Texts>(text + ",[0]]"),
              (ErrorTexts{"[100][0]", "[100][0]: expected a string, found a number"}));
    EXPECT_EQ(decodingErrorOf<Texts>(text),
              (ErrorTexts{"", "line 1, column 165051: the document ends too early"}));
}

} // namespace
} // namespace kinovane::test
