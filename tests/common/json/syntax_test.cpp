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

/// A prop with lists in lists under an unknown key, so that the document has this many levels.
std::string propOfDepth(std::size_t levels) {
    return R"({"deep":)" + repeated("[", levels - 1) + repeated("]", levels - 1) +
           R"(,"name":"n","count":1})";
}

struct Row {
    const char* sentence;
    std::string document;
    std::string message;
};

TEST(JSONSyntax, ReportsAnErrorWithLineAndColumn) {
    const Row rows[] = {
        {"nothing at all", "", "line 1, column 1: the document ends too early"},
        {"only white space", "  \n ", "line 2, column 2: the document ends too early"},
        {"only a byte-order mark", "\xEF\xBB\xBF", "line 1, column 1: the document ends too early"},
        {"an object that is not closed", R"({"name":"n")", "line 1, column 12: the document ends too early"},
        {"a string that is not closed", R"({"name":"n)", "line 1, column 11: the document ends too early"},
        {"half an escape", R"({"name":"\u00)", "line 1, column 14: the document ends too early"},
        {"half a word", R"({"name":tru)", "line 1, column 12: the document ends too early"},
        {"a word that JSON does not have", R"({"name": yes})", "line 1, column 10: this is not valid JSON"},
        {"single quotes", "{'name':1}", "line 1, column 2: this is not valid JSON"},
        {"a comma too many in an object", R"({"name":"n",})", "line 1, column 13: this is not valid JSON"},
        {"a comma too many in a list", "[1,]", "line 1, column 4: this is not valid JSON"},
        {"a comma missing, on the third line", "{\"name\":\"n\"\n\n  \"count\":1}",
         "line 3, column 3: this is not valid JSON"},
        {"line breaks of CR and LF", "{\r\n  x}", "line 2, column 3: this is not valid JSON"},
        {"characters beyond ASCII count as one column", R"({"name":"Brèmes — é" x})",
         "line 1, column 22: this is not valid JSON"},
        {"a byte-order mark is not counted", "\xEF\xBB\xBF{x", "line 1, column 2: this is not valid JSON"},
        {"a byte-order mark in the middle", "{\xEF\xBB\xBF}", "line 1, column 2: this is not valid JSON"},
        {"a second byte-order mark", "\xEF\xBB\xBF\xEF\xBB\xBF{}",
         "line 1, column 1: this is not valid JSON"},
        {"a comment", "{/* none */}", "line 1, column 2: this is not valid JSON"},
        {"a line break inside a string", "{\"name\":\"a\nb\"}", "line 1, column 11: this is not valid JSON"},
        {"a NUL byte inside a string", "{\"name\":\"a\0b\"}"s, "line 1, column 11: this is not valid JSON"},
        {"a NUL byte after the document", "{\"name\":\"n\",\"count\":1}\0"s,
         "line 1, column 23: something follows the end of the document"},
        {"an escape that JSON does not have", R"({"name":"\x41"})",
         "line 1, column 11: this is not valid JSON"},
        {"a number with a leading zero", R"({"count":01})", "line 1, column 11: this is not valid JSON"},
        {"a number with a plus sign", R"({"count":+1})", "line 1, column 10: this is not valid JSON"},
        {"a number that ends with a point", R"({"count":1.})", "line 1, column 12: this is not valid JSON"},
        {"not a number", R"({"count":NaN})", "line 1, column 10: this is not valid JSON"},
        {"a second value", R"({"name":"n","count":1} 5)",
         "line 1, column 24: something follows the end of the document"},
        {"a bracket too many", R"({"name":"n","count":1}})",
         "line 1, column 23: something follows the end of the document"},
        {"a high surrogate alone", R"({"name":"\ud83d"})", "line 1, column 16: this is not valid JSON"},
        {"a high surrogate and a letter", R"({"name":"\ud83dx"})",
         "line 1, column 16: this is not valid JSON"},
        {"two high surrogates", R"({"name":"\ud83d\ud83d"})",
         "line 1, column 18: an escape in a string stands for no character"},
        {"a low surrogate alone", R"({"name":"\ude00"})",
         "line 1, column 16: an escape in a string stands for no character"},
        {"513 levels", propOfDepth(513), "line 1, column 520: nested more than 512 levels deep"},
        {"very many levels", repeated("[", 5'000'000),
         "line 1, column 513: nested more than 512 levels deep"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(decodingErrorOf<Prop>(row.document), (ErrorTexts{"", row.message}));
    }
}

// Depending on its version, Boost.JSON stops at the first letter of such a word.
TEST(JSONSyntax, ReportsAMisspeltWordAtItsFirstWrongLetter) {
    const Row rows[] = {
        {"the whole document", "nope", "line 1, column 2: this is not valid JSON"},
        {"followed by the right letters", "nnull", "line 1, column 2: this is not valid JSON"},
        {"in an object", R"({"name": trve})", "line 1, column 12: this is not valid JSON"},
        {"first in a list", R"({"deep":[ fals]})", "line 1, column 15: this is not valid JSON"},
        {"further on in a list", R"({"deep":[[],"[\"{",nul1]})", "line 1, column 23: this is not valid JSON"},
        {"after a list", R"({"deep":[1],"name":nuul})", "line 1, column 22: this is not valid JSON"},
        {"with a byte that is not UTF-8", "{\"name\":tr\xFF}", "line 1, column 11: the text is not UTF-8"},
        {"with more letters", R"({"name":truely})", "line 1, column 13: this is not valid JSON"},
        {"in place of a key", R"({trve})", "line 1, column 2: this is not valid JSON"},
        {"in place of the next key", R"({"count":1,trve})", "line 1, column 12: this is not valid JSON"},
        {"in place of a colon", R"({"name"trve})", "line 1, column 8: this is not valid JSON"},
        {"in place of a comma", R"({"deep":[1 trve]})", "line 1, column 12: this is not valid JSON"},
        {"after a number", R"({"count":1trve})", "line 1, column 11: this is not valid JSON"},
        {"in a string with a line break", "{\"name\":\"trve\n\"}",
         "line 1, column 14: this is not valid JSON"},
        {"in a string with an unknown escape", R"({"name":"[trve\x"})",
         "line 1, column 16: this is not valid JSON"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(decodingErrorOf<Prop>(row.document), (ErrorTexts{"", row.message}));
    }
}

// Boost.JSON before 1.83 refuses such exponents, and the document is then parsed in another way.
TEST(JSONSyntax, ReportsAnErrorBesideALongExponentWithLineAndColumn) {
    const std::string number = "1e" + std::string(30, '9');
    const Row rows[] = {
        {"an error further on", R"({"deep":)" + number + R"(,"name": yes})",
         "line 1, column 50: this is not valid JSON"},
        {"an error just behind it", R"({"deep":)" + number + "x}",
         "line 1, column 41: this is not valid JSON"},
        {"an error on the next line", R"({"deep":)" + number + ",\n}",
         "line 2, column 1: this is not valid JSON"},
        {"the end of the document", R"({"deep":)" + number, "line 1, column 41: the document ends too early"},
        {"something after the document", R"({"name":"n","count":1})" + number,
         "line 1, column 23: something follows the end of the document"},
        {"an error between two of them", R"({"deep":[)" + number + ",, " + number + "]}",
         "line 1, column 43: this is not valid JSON"},
        {"text that is not UTF-8", R"({"deep":)" + number + ",\"name\":\"a\xFF\"}",
         "line 1, column 51: the text is not UTF-8"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(decodingErrorOf<Prop>(row.document), (ErrorTexts{"", row.message}));
    }
}

TEST(JSONSyntax, ReportsTheFirstByteThatIsNotUTF8) {
    const Row rows[] = {
        {"in a value", "{\"name\":\"a\xFF\"}", "line 1, column 11: the text is not UTF-8"},
        {"in a value, after a character of two bytes", "{\"name\":\"\xC3\xA9\xFF\"}",
         "line 1, column 11: the text is not UTF-8"},
        {"in a key", "{\"n\xC0\xAFme\":1}", "line 1, column 4: the text is not UTF-8"},
        {"a character cut short", "{\"name\":\"\xE2\x82\"}", "line 1, column 10: the text is not UTF-8"},
        {"a surrogate", "{\"name\":\"\xED\xA0\x80\"}", "line 1, column 10: the text is not UTF-8"},
        {"beyond the last character", "{\"name\":\"\xF4\x90\x80\x80\"}",
         "line 1, column 10: the text is not UTF-8"},
        {"under an unknown key", "{\"other\":[\"\xFF\"]}", "line 1, column 12: the text is not UTF-8"},
        {"after an escape", "{\"name\":\"\\n\xFF\"}", "line 1, column 12: the text is not UTF-8"},
        {"after an escaped quotation mark", "{\"name\":\"\\\"\xFF\"}",
         "line 1, column 12: the text is not UTF-8"},
        {"outside a string", "{\xFF}", "line 1, column 2: the text is not UTF-8"},
        {"UTF-16", "\xFF\xFE{\0}\0"s, "line 1, column 1: the text is not UTF-8"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(decodingErrorOf<Prop>(row.document), (ErrorTexts{"", row.message}));
    }
}

TEST(JSONSyntax, ReportsTheFirstOfSeveralErrors) {
    const Row rows[] = {
        {"a letter before a byte that is not UTF-8", "{x \xFF}", "line 1, column 2: this is not valid JSON"},
        {"a line break in a string, before such a byte", "{\"name\":\"a\n\xFF\"}",
         "line 1, column 11: this is not valid JSON"},
        {"a line break in a string, before such a byte in the next", "{\"name\":\"a\n\",\"\xFF\":1}",
         "line 1, column 11: this is not valid JSON"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(decodingErrorOf<Prop>(row.document), (ErrorTexts{"", row.message}));
    }
}

TEST(JSONSyntax, AcceptsAStringOnlyIfItIsUTF8) {
    std::mt19937 random(20260314);
    std::uniform_int_distribution<std::size_t> anyLength(0, 12);
    // Mostly bytes beyond ASCII, at the limits of their ranges, so that many sequences are complete.
    const std::string bytes =
        "aZ\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE\xEF\xF0\xF1\xF3\xF4\xF5\xFF";
    std::uniform_int_distribution<std::size_t> anyByte(0, bytes.size() - 1);
    std::size_t acceptedCount = 0;
    for (int attempt = 0; attempt < 50'000; ++attempt) {
        std::string text;
        for (std::size_t left = anyLength(random); left > 0; --left)
            text += bytes[anyByte(random)];
        const bool accepted = !decodingErrorOf<std::string>('"' + text + '"').has_value();
        ASSERT_EQ(accepted, isUTF8(text)) << testing::PrintToString(text);
        acceptedCount += accepted ? 1 : 0;
    }
    EXPECT_GT(acceptedCount, 2'000U);
    EXPECT_LT(acceptedCount, 48'000U);
}

struct StringRow {
    const char* sentence;
    std::string document;
    std::string text;
};

TEST(JSONSyntax, DecodesStrings) {
    const StringRow rows[] = {
        {"nothing", R"("")", ""},
        {"every short escape", R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t"},
        {"a numbered escape", R"("\u0041\u00e9\u20AC")", "A\u00e9\u20ac"},
        {"a surrogate pair", R"("\ud83d\ude00")", "\U0001F600"},
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

TEST(JSONSyntax, Accepts512Levels) { EXPECT_EQ(json::decode<Prop>(propOfDepth(512)), (Prop{"n", 1})); }

} // namespace
} // namespace kinovane::test
