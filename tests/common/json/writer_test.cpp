// SPDX-License-Identifier: Apache-2.0

#include "common/json/writer.hpp"

#include <bit>
#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "common/json/example_record.hpp"

namespace kinovane::test {
namespace {

using namespace std::string_literals;

TEST(JSONWriter, WritesCompactTextInDeclaredOrder) {
    EXPECT_EQ(json::encode(fullScene(), JSONFormat::compact), fullSceneText);
    EXPECT_EQ(json::encode(Scene{}, JSONFormat::compact),
              R"({"title":"","take":0,"length":0,"night":false,"props":[],"extras":{}})");
}

TEST(JSONWriter, WritesPrettyTextIndentedAndSorted) {
    Scene scene = fullScene();
    scene.props.push_back({"rope", 1});
    scene.extras = {{"b", 1}, {"a", 2}, {"B", 3}, {"é", 4}};
    EXPECT_EQ(json::encode(scene, JSONFormat::pretty), R"({
  "extras": {
    "B": 3,
    "a": 2,
    "b": 1,
    "é": 4
  },
  "length": 1.5,
  "night": true,
  "note": "fog",
  "props": [
    {
      "count": 7,
      "name": "lamp"
    },
    {
      "count": 1,
      "name": "rope"
    }
  ],
  "star": {
    "count": 1,
    "name": "ferry"
  },
  "take": 2,
  "title": "Quay"
})");
    EXPECT_EQ(json::encode(Scene{}, JSONFormat::pretty), R"({
  "extras": {},
  "length": 0,
  "night": false,
  "props": [],
  "take": 0,
  "title": ""
})");
}

TEST(JSONWriter, WritesWhatReadsBackEqual) {
    for (const JSONFormat format : {JSONFormat::compact, JSONFormat::pretty})
        EXPECT_TRUE(json::decode<Scene>(json::encode(fullScene(), format)) == fullScene());
}

// Deeper than the spaces that the writer appends at once.
TEST(JSONWriter, IndentsManyLevels) {
    using Levels4 =
        std::map<std::string, std::map<std::string, std::map<std::string, std::map<std::string, Prop>>>>;
    using Levels8 =
        std::map<std::string, std::map<std::string, std::map<std::string, std::map<std::string, Levels4>>>>;
    using Levels12 =
        std::map<std::string, std::map<std::string, std::map<std::string, std::map<std::string, Levels8>>>>;
    Levels12 levels;
    levels["a"]["b"]["c"]["d"]["e"]["f"]["g"]["h"]["i"]["j"]["k"]["l"] = {"lamp", 7};
    const std::string text = json::encode(levels, JSONFormat::pretty);
    EXPECT_NE(
        text.find("\n" + std::string(24, ' ') + "\"l\": {\n" + std::string(26, ' ') + "\"count\": 7,\n"),
        std::string::npos)
        << text;
}

struct TextRow {
    const char* sentence;
    std::string text;
    std::string written;
};

TEST(JSONWriter, EscapesOnlyWhatJSONRequires) {
    const TextRow rows[] = {
        {"nothing", "", R"("")"},
        {"a slash", "a/b", R"("a/b")"},
        {"quotation mark and backslash", "\"\\", R"("\"\\")"},
        {"control characters with a name", "\b\f\n\r\t", R"("\b\f\n\r\t")"},
        {"control characters without", "\x01\x0B\x1F"s, R"("\u0001\u000b\u001f")"},
        {"NUL", "\0"s, R"("\u0000")"},
        {"delete", "\x7F", "\"\x7F\""},
        {"characters beyond ASCII", "é—\u2028\U0001F600", "\"é—\u2028\U0001F600\""},
    };
    for (const TextRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(json::encode(row.text, JSONFormat::compact), row.written);
        EXPECT_EQ(json::encode(row.text, JSONFormat::pretty), row.written);
    }
}

TEST(JSONWriter, WritesEveryASCIICharacter) {
    std::string text;
    for (int character = 0; character < 0x80; ++character)
        text += static_cast<char>(character);
    EXPECT_EQ(json::decode<std::string>(json::encode(text, JSONFormat::compact)), text);
}

struct RealRow {
    double value;
    const char* written;
};

TEST(JSONWriter, WritesRealsInTheShortestForm) {
    const RealRow rows[] = {
        {5.0, "5"},         {0.0, "0"},     {-0.0, "-0"},
        {0.1, "0.1"},       {-2.5, "-2.5"}, {1.0 / 3, "0.3333333333333333"},
        {1e300, "1e+300"},  {24.0, "24"},   {5e-324, "5e-324"},
        {-18.25, "-18.25"},
    };
    for (const RealRow& row : rows)
        EXPECT_EQ(json::encode(row.value, JSONFormat::compact), row.written);
    EXPECT_EQ(json::encode(std::numeric_limits<std::int64_t>::min(), JSONFormat::compact),
              "-9223372036854775808");
}

TEST(JSONWriter, WritesEveryFiniteRealExactly) {
    std::mt19937_64 random(3);
    for (int attempt = 0; attempt < 100'000; ++attempt) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        const std::string text = json::encode(value, JSONFormat::compact);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(json::decode<double>(text)),
                  std::bit_cast<std::uint64_t>(value))
            << text;
    }
}

struct ErrorRow {
    const char* sentence;
    void (*spoil)(Scene&);
    ErrorTexts texts;
};

TEST(JSONWriter, RefusesWhatJSONCannotHold) {
    const ErrorRow rows[] = {
        {"not a number",
         [](Scene& scene) { scene.length = std::nan(""); },
         {"length", "length: the number is not finite"}},
        {"infinity",
         [](Scene& scene) { scene.length = HUGE_VAL; },
         {"length", "length: the number is not finite"}},
        {"minus infinity",
         [](Scene& scene) { scene.length = -HUGE_VAL; },
         {"length", "length: the number is not finite"}},
        {"a text", [](Scene& scene) { scene.title = "a\xFF"; }, {"title", "title: the text is not UTF-8"}},
        {"a text cut short",
         [](Scene& scene) { scene.title = "\xE2\x82"; },
         {"title", "title: the text is not UTF-8"}},
        {"in an optional",
         [](Scene& scene) { scene.note = "\xC0\x80"; },
         {"note", "note: the text is not UTF-8"}},
        {"in a nested record",
         [](Scene& scene) { scene.star->name = "\xFF"; },
         {"star.name", "star.name: the text is not UTF-8"}},
        {"in a list",
         [](Scene& scene) { scene.props.push_back({"\xED\xA0\x80", 1}); },
         {"props[1].name", "props[1].name: the text is not UTF-8"}},
        {"a key of a map",
         [](Scene& scene) { scene.extras["\xFF"] = 1; },
         {"extras", "extras: a key is not UTF-8"}},
    };
    for (const ErrorRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        Scene scene = fullScene();
        row.spoil(scene);
        for (const JSONFormat format : {JSONFormat::compact, JSONFormat::pretty}) {
            try {
                FAIL() << "was written: " << json::encode(scene, format);
            } catch (const JSONEncodingError& error) {
                EXPECT_EQ((ErrorTexts{error.path(), error.what()}), row.texts);
            }
        }
    }
}

/// Decimal commas, and points between thousands.
class CommaNumbers : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// Sets the global locale to one with a decimal comma, in the C++ library and, where the system has one, in
/// the C library too.
class CommaLocale {
  public:
    CommaLocale() : cxx_(std::locale::global(std::locale(std::locale::classic(), new CommaNumbers))) {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de_DE", "fr_FR", "es_ES.UTF-8"})
            if (std::setlocale(LC_ALL, name) != nullptr)
                return;
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() {
        std::setlocale(LC_ALL, c_.c_str());
        std::locale::global(cxx_);
    }

  private:
    std::string c_ = std::setlocale(LC_ALL, nullptr);
    std::locale cxx_;
};

TEST(JSONWriter, IgnoresTheLocale) {
    const CommaLocale locale;
    std::ostringstream stream;
    stream << 1234.5;
    ASSERT_EQ(stream.str(), "1.234,5"); // The locale is in effect.
    testing::Test::RecordProperty("decimalPointOfC", std::localeconv()->decimal_point);

    Scene scene = fullScene();
    scene.length = 1234567.5;
    scene.take = 1234567;
    const std::string text = json::encode(scene, JSONFormat::compact);
    EXPECT_NE(text.find(R"("take":1234567,"length":1234567.5,)"), std::string::npos) << text;
    EXPECT_TRUE(json::decode<Scene>(text) == scene);
    EXPECT_EQ(json::decode<double>("1234.5"), 1234.5);
}

} // namespace
} // namespace kinovane::test
