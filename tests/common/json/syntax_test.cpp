// SPDX-License-Identifier: Apache-2.0

#include <random>
#include <string>

#include <gtest/gtest.h>

#include "common/json/example_record.hpp"
#include "common/utf8.hpp"

namespace kinovane::test {
namespace {

using namespace std::string_literals;

std::string repeated(std::string_view text, std::size_t times) {
    std::string result;
    for (std::size_t time = 0; time < times; ++time)
        result += text;
    return result;
}

/// A prop with an unknown key that holds lists in lists, so that the whole is this many levels deep.
std::string propOfDepth(std::size_t levels) {
    return R"({"deep":)" + repeated("[", levels - 1) + repeated("]", levels - 1) +
           R"(,"name":"n","count":1})";
}

struct Row {
    const char* sentence;
    std::string document;
    std::string message;
};

TEST(JSONSyntax, AMistakeIsReportedWithItsLineAndColumn) {
    const std::string notJSON = "this is not valid JSON";
    const std::string endsEarly = "the document ends too early";
    const std::string follows = "something follows the end of the document";
    const std::string noCharacter = "an escape in a string stands for no character";
    const Row rows[] = {
        {"nothing at all", "", "line 1, column 1: " + endsEarly},
        {"only white space", "  \n ", "line 2, column 2: " + endsEarly},
        {"only a byte-order mark", "\xEF\xBB\xBF", "line 1, column 1: " + endsEarly},
        {"an object that is not closed", R"({"name":"n")", "line 1, column 12: " + endsEarly},
        {"a string that is not closed", R"({"name":"n)", "line 1, column 11: " + endsEarly},
        {"half an escape", R"({"name":"\u00)", "line 1, column 14: " + endsEarly},
        {"half a word", R"({"name":tru)", "line 1, column 12: " + endsEarly},
        {"a word that JSON does not have", R"({"name": yes})", "line 1, column 10: " + notJSON},
        {"single quotes", "{'name':1}", "line 1, column 2: " + notJSON},
        {"a comma too many in an object", R"({"name":"n",})", "line 1, column 13: " + notJSON},
        {"a comma too many in a list", "[1,]", "line 1, column 4: " + notJSON},
        {"a comma missing, on the third line", "{\"name\":\"n\"\n\n  \"count\":1}",
         "line 3, column 3: " + notJSON},
        {"lines that end as on other systems", "{\r\n  x}", "line 2, column 3: " + notJSON},
        {"characters beyond ASCII count as one column", R"({"name":"Brèmes — é" x})",
         "line 1, column 22: " + notJSON},
        {"a byte-order mark is no column", "\xEF\xBB\xBF{x", "line 1, column 2: " + notJSON},
        {"a byte-order mark in the middle", "{\xEF\xBB\xBF}", "line 1, column 2: " + notJSON},
        {"a second byte-order mark", "\xEF\xBB\xBF\xEF\xBB\xBF{}", "line 1, column 1: " + notJSON},
        {"a comment", "{/* none */}", "line 1, column 2: " + notJSON},
        {"a line break inside a string", "{\"name\":\"a\nb\"}", "line 1, column 11: " + notJSON},
        {"a NUL byte inside a string", "{\"name\":\"a\0b\"}"s, "line 1, column 11: " + notJSON},
        {"a NUL byte after the document", "{\"name\":\"n\",\"count\":1}\0"s, "line 1, column 23: " + follows},
        {"an escape that JSON does not have", R"({"name":"\x41"})", "line 1, column 11: " + notJSON},
        {"a number with a leading zero", R"({"count":01})", "line 1, column 11: " + notJSON},
        {"a number with a plus sign", R"({"count":+1})", "line 1, column 10: " + notJSON},
        {"a number that ends with a point", R"({"count":1.})", "line 1, column 12: " + notJSON},
        {"not a number", R"({"count":NaN})", "line 1, column 10: " + notJSON},
        {"a second value", R"({"name":"n","count":1} 5)", "line 1, column 24: " + follows},
        {"a bracket too many", R"({"name":"n","count":1}})", "line 1, column 23: " + follows},
        {"half a pair", R"({"name":"\ud83d"})", "line 1, column 16: " + notJSON},
        {"half a pair and a letter", R"({"name":"\ud83dx"})", "line 1, column 16: " + notJSON},
        {"half a pair twice", R"({"name":"\ud83d\ud83d"})", "line 1, column 18: " + noCharacter},
        {"the second half alone", R"({"name":"\ude00"})", "line 1, column 16: " + noCharacter},
        {"513 levels", propOfDepth(513), "line 1, column 520: nested more than 512 levels deep"},
        {"very many levels", repeated("[", 5'000'000),
         "line 1, column 513: nested more than 512 levels deep"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(refusalOf<Prop>(row.document), (Refusal{"", row.message}));
    }
}

// Boost.JSON 1.81 refuses such an exponent as a syntax error; later versions hand the number over.
TEST(JSONSyntax, AnExponentOfMoreThanNineDigitsIsRefusedByTheParserOrWhereItIsUsed) {
    const std::optional<Refusal> refusal = refusalOf<Prop>(R"({"name":"n","count":1e99999999999})");
    ASSERT_TRUE(refusal);
    if (refusal->path.empty())
        EXPECT_EQ(refusal->message, "line 1, column 32: the number's exponent is too large");
    else
        EXPECT_EQ(*refusal,
                  (Refusal{"count", "count: expected an integer that fits 64 bits, found 1e99999999999"}));
}

TEST(JSONSyntax, TextThatIsNotUTF8IsRefusedAtItsPlace) {
    const std::string notUTF8 = "the text is not UTF-8";
    const Row rows[] = {
        {"in a value", "{\"name\":\"a\xFF\"}", "line 1, column 11: " + notUTF8},
        {"in a value, after a character of two bytes", "{\"name\":\"\xC3\xA9\xFF\"}",
         "line 1, column 11: " + notUTF8},
        {"in a key", "{\"n\xC0\xAFme\":1}", "line 1, column 4: " + notUTF8},
        {"a character cut short", "{\"name\":\"\xE2\x82\"}", "line 1, column 10: " + notUTF8},
        {"a surrogate", "{\"name\":\"\xED\xA0\x80\"}", "line 1, column 10: " + notUTF8},
        {"beyond the last character", "{\"name\":\"\xF4\x90\x80\x80\"}", "line 1, column 10: " + notUTF8},
        {"under an unknown key", "{\"other\":[\"\xFF\"]}", "line 1, column 12: " + notUTF8},
        {"after an escape", "{\"name\":\"\\n\xFF\"}", "line 1, column 12: " + notUTF8},
        {"after an escaped quotation mark", "{\"name\":\"\\\"\xFF\"}", "line 1, column 12: " + notUTF8},
        {"outside a string", "{\xFF}", "line 1, column 2: " + notUTF8},
        {"another encoding altogether", "\xFF\xFE{\0}\0"s, "line 1, column 1: " + notUTF8},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(refusalOf<Prop>(row.document), (Refusal{"", row.message}));
    }
}

TEST(JSONSyntax, TheFirstMistakeIsTheOneReported) {
    const std::string notJSON = "this is not valid JSON";
    const Row rows[] = {
        {"a letter before a byte that is not UTF-8", "{x \xFF}", "line 1, column 2: " + notJSON},
        {"a line break in a string, before such a byte", "{\"name\":\"a\n\xFF\"}",
         "line 1, column 11: " + notJSON},
        {"a line break in a string, before such a byte in the next", "{\"name\":\"a\n\",\"\xFF\":1}",
         "line 1, column 11: " + notJSON},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(refusalOf<Prop>(row.document), (Refusal{"", row.message}));
    }
}

TEST(JSONSyntax, AStringIsTakenExactlyWhenItIsUTF8) {
    std::mt19937 random(20260314);
    std::uniform_int_distribution<std::size_t> anyLength(0, 12);
    // Mostly bytes beyond ASCII, from a few groups, so that whole sequences come up often.
    const std::string bytes =
        "aZ\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE\xEF\xF0\xF1\xF3\xF4\xF5\xFF";
    std::uniform_int_distribution<std::size_t> anyByte(0, bytes.size() - 1);
    std::size_t taken = 0;
    for (int attempt = 0; attempt < 50'000; ++attempt) {
        std::string text;
        for (std::size_t left = anyLength(random); left > 0; --left)
            text += bytes[anyByte(random)];
        const bool accepted = !refusalOf<std::string>('"' + text + '"').has_value();
        ASSERT_EQ(accepted, isUTF8(text)) << testing::PrintToString(text);
        taken += accepted ? 1 : 0;
    }
    EXPECT_GT(taken, 2'000U);
    EXPECT_LT(taken, 48'000U);
}

struct StringRow {
    const char* sentence;
    std::string document;
    std::string text;
};

TEST(JSONSyntax, StringsAreTakenWhole) {
    const StringRow rows[] = {
        {"nothing", R"("")", ""},
        {"every short escape", R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t"},
        {"a numbered escape", R"("\u0041\u00e9\u20AC")", "A\u00e9\u20ac"},
        {"a pair", R"("\ud83d\ude00")", "\U0001F600"},
        {"the last character", R"("\uDBFF\uDFFF")", "\U0010FFFF"},
        {"a NUL character", R"("a\u0000b")", "a\0b"s},
        {"characters that need no escape", "\"\x7F\u2028\uFEFF\"", "\x7F\u2028\uFEFF"},
        {"a slash", R"("a/b")", "a/b"},
        {"white space around it", " \t\r\n\"a\" \t\r\n", "a"},
        {"a byte-order mark before it", "\xEF\xBB\xBF\"a\"", "a"},
        {"a very long one", '"' + std::string(3'000'000, 'k') + '"', std::string(3'000'000, 'k')},
    };
    for (const StringRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(json::decode<std::string>(row.document), row.text);
    }
}

TEST(JSONSyntax, FiveHundredAndTwelveLevelsAreRead) {
    EXPECT_EQ(json::decode<Prop>(propOfDepth(512)), (Prop{"n", 1}));
}

} // namespace
} // namespace kinovane::test
