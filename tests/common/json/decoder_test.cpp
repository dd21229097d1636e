// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <gtest/gtest.h>

#include "common/json/example_record.hpp"

namespace kinovane::test {
namespace {

/// The full scene's text with one piece of it replaced.
std::string sceneWith(std::string_view piece, std::string_view replacement) {
    std::string text(fullSceneText);
    const std::size_t position = text.find(piece);
    if (position == std::string::npos)
        throw std::logic_error("no such piece");
    return text.replace(position, piece.size(), replacement);
}

struct SceneRow {
    const char* sentence;
    std::string document;
    Scene scene;
};

Scene changed(void (*change)(Scene&)) {
    Scene scene = fullScene();
    change(scene);
    return scene;
}

TEST(JSONDecoder, ReadsWhatFits) {
    const SceneRow rows[] = {
        {"every member", std::string(fullSceneText), fullScene()},
        {"keys in another order",
         R"({"note":"fog","star":{"count":1,"name":"ferry"},"extras":{"sailors":3},)"
         R"("props":[{"count":7,"name":"lamp"}],"night":true,"length":1.5,"take":2,"title":"Quay"})",
         fullScene()},
        {"an optional member that is null", sceneWith(R"("note":"fog")", R"("note":null)"),
         changed([](Scene& scene) { scene.note.reset(); })},
        {"an optional member that is missing", sceneWith(R"(,"note":"fog")", ""),
         changed([](Scene& scene) { scene.note.reset(); })},
        {"an optional record that is null", sceneWith(R"({"name":"ferry","count":1})", "null"),
         changed([](Scene& scene) { scene.star.reset(); })},
        {"an empty list", sceneWith(R"([{"name":"lamp","count":7}])", "[]"),
         changed([](Scene& scene) { scene.props.clear(); })},
        {"an empty map", sceneWith(R"({"sailors":3})", "{}"),
         changed([](Scene& scene) { scene.extras.clear(); })},
        {"a map whose keys are odd", sceneWith(R"({"sailors":3})", R"({"":1,"a.b":2,"\u0000":3})"),
         changed([](Scene& scene) { scene.extras = {{"", 1}, {"a.b", 2}, {std::string(1, '\0'), 3}}; })},
        {"a whole number for a real", sceneWith("1.5", "3"), changed([](Scene& scene) { scene.length = 3; })},
        {"unknown keys of any content",
         sceneWith(R"("take":2)",
                   R"("x":null,"y":[1e400,{"title":5}],"z":123456789012345678901234567890,"take":2,)"
                   R"("":{"take":[]},"Title":1,"titl":2,"titles":3)"),
         fullScene()},
        {"an unknown key at the end", sceneWith(R"("note":"fog")", R"("note":"fog","more":-1E+999)"),
         fullScene()},
        {"a key written with escapes", sceneWith(R"("title")", R"("\u0074itle")"), fullScene()},
    };
    for (const SceneRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_TRUE(json::decode<Scene>(row.document) == row.scene);
        EXPECT_TRUE(checkedAndDecoded<Scene>(row.document) == row.scene);
    }
}

TEST(JSONDecoder, TheLastOfTwoEqualKeysWins) {
    const SceneRow rows[] = {
        {"plain values", sceneWith(R"("take":2)", R"("take":1,"take":2)"), fullScene()},
        {"the first was wrong", sceneWith(R"("take":2)", R"("take":"one","take":2)"), fullScene()},
        {"the first was null", sceneWith(R"("take":2)", R"("take":null,"take":2)"), fullScene()},
        {"the first was a longer list",
         sceneWith(R"("props":)", R"("props":[{"name":"a","count":1},)"
                                  R"({"name":"b","count":2}],"props":)"),
         fullScene()},
        {"the first was a list with a wrong element",
         sceneWith(R"("props":)", R"("props":[{"name":"a","count":1},5],"props":)"), fullScene()},
        {"the first was a larger map", sceneWith(R"("extras":)", R"("extras":{"a":1,"b":2},"extras":)"),
         fullScene()},
        {"the first was a map with a wrong value",
         sceneWith(R"("extras":)", R"("extras":{"a":"1"},"extras":)"), fullScene()},
        {"the first was a whole record, the last lacks nothing",
         sceneWith(R"("star":)", R"("star":{"name":"old","count":9},"star":)"), fullScene()},
        {"the last is null and the member optional",
         sceneWith(R"("note":"fog")", R"("note":"fog","note":null)"),
         changed([](Scene& scene) { scene.note.reset(); })},
        {"the last is null and the record optional", sceneWith(R"("note":)", R"("star":null,"note":)"),
         changed([](Scene& scene) { scene.star.reset(); })},
        {"in a map", sceneWith(R"({"sailors":3})", R"({"sailors":1,"cooks":1,"sailors":3})"),
         changed([](Scene& scene) { scene.extras["cooks"] = 1; })},
        {"in a map, the first was wrong", sceneWith(R"({"sailors":3})", R"({"sailors":"many","sailors":3})"),
         fullScene()},
        {"three times", sceneWith(R"("take":2)", R"("take":[],"take":7,"take":2)"), fullScene()},
    };
    for (const SceneRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_TRUE(json::decode<Scene>(row.document) == row.scene);
        EXPECT_TRUE(checkedAndDecoded<Scene>(row.document) == row.scene);
    }
}

struct RefusalRow {
    const char* sentence;
    std::string document;
    Refusal refusal;
};

TEST(JSONDecoder, SaysWhatIsWrongAndWhere) {
    const RefusalRow rows[] = {
        {"the document is another thing", "[]", {"", "expected an object, found a list"}},
        {"the document is null", "null", {"", "expected an object, found null"}},
        {"the document is a number", "5", {"", "expected an object, found a number"}},
        {"an empty object", "{}", {"title", "title is missing"}},
        {"a number for a text",
         sceneWith(R"("Quay")", "5"),
         {"title", "title: expected a string, found a number"}},
        {"a text for a number",
         sceneWith("1.5", R"("1.5")"),
         {"length", "length: expected a number, found a string"}},
        {"a boolean for an integer",
         sceneWith(R"("take":2)", R"("take":true)"),
         {"take", "take: expected an integer, found true"}},
        {"a number for a boolean",
         sceneWith(R"("night":true)", R"("night":1)"),
         {"night", "night: expected true or false, found a number"}},
        {"an object for a list",
         sceneWith(R"([{"name":"lamp","count":7}])", "{}"),
         {"props", "props: expected a list, found an object"}},
        {"a list for a map",
         sceneWith(R"({"sailors":3})", "[]"),
         {"extras", "extras: expected an object, found a list"}},
        {"null for a required member",
         sceneWith(R"("Quay")", "null"),
         {"title", "title: expected a string, found null"}},
        {"null in a list",
         sceneWith(R"({"name":"lamp","count":7})", "null"),
         {"props[0]", "props[0]: expected an object, found null"}},
        {"null in a map",
         sceneWith(R"("sailors":3)", R"("sailors":null)"),
         {"extras.sailors", "extras.sailors: expected an integer, found null"}},
        {"inside a list",
         sceneWith(R"("count":7)", R"("count":7.5)"),
         {"props[0].count", "props[0].count: expected an integer, found 7.5"}},
        {"missing inside a list",
         sceneWith(R"({"name":"lamp","count":7})", R"({"name":"a","count":1},{"name":"b"})"),
         {"props[1].count", "props[1].count is missing"}},
        {"a wrong optional member",
         sceneWith(R"("fog")", "false"),
         {"note", "note: expected a string, found false"}},
        {"a wrong optional record",
         sceneWith(R"("name":"ferry",)", ""),
         {"star.name", "star.name is missing"}},
        {"two are wrong: the one declared first",
         R"({"note":1,"length":"x","title":"t"})",
         {"take", "take is missing"}},
        {"two are wrong, the later key declared first",
         sceneWith(R"("title":"Quay","take":2)", R"("take":"x","title":1)"),
         {"title", "title: expected a string, found a number"}},
        {"wrong before missing",
         R"({"take":1,"title":[]})",
         {"title", "title: expected a string, found a list"}},
        {"two elements are wrong: the first",
         sceneWith(R"({"name":"lamp","count":7})", R"({"count":1},5)"),
         {"props[0].name", "props[0].name is missing"}},
        {"the last of two equal keys is wrong",
         sceneWith(R"("take":2)", R"("take":2,"take":"x")"),
         {"take", "take: expected an integer, found a string"}},
        {"the last of two equal keys is null",
         sceneWith(R"("take":2)", R"("take":2,"take":null)"),
         {"take", "take: expected an integer, found null"}},
        {"the last of two equal keys in a map is wrong",
         sceneWith(R"("sailors":3)", R"("sailors":3,"sailors":{})"),
         {"extras.sailors", "extras.sailors: expected an integer, found an object"}},
        {"the last of two equal records lacks what the first had",
         sceneWith(R"("note":)", R"("star":{"name":"moon"},"note":)"),
         {"star.count", "star.count is missing"}},
        {"a syntax error after a wrong member",
         R"({"title":5,"take":})",
         {"", "line 1, column 19: this is not valid JSON"}},
        {"text after a wrong document",
         "[] []",
         {"", "line 1, column 4: something follows the end of the document"}},
    };
    for (const RefusalRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(refusalOf<Scene>(row.document), row.refusal);
    }
}

TEST(JSONDecoder, AWrongElementIsFoundAnywhereInALongList) {
    for (const std::size_t wrong : {0U, 63U, 64U, 65U, 1000U}) {
        SCOPED_TRACE(wrong);
        std::string list = "[";
        for (std::size_t index = 0; index <= 1000; ++index) {
            list += index == 0 ? "" : ",";
            list += index == wrong ? "\"x\"" : "1";
        }
        const std::string path = "[" + std::to_string(wrong) + "]";
        EXPECT_EQ(refusalOf<std::vector<std::int64_t>>(list + "]"),
                  (Refusal{path, path + ": expected an integer, found a string"}));
    }
}

/// As many members as said, whose keys are numbers from `first` on.
std::string entries(int first, int count, const char* value) {
    std::string text;
    for (int key = first; key < first + count; ++key)
        text += '"' + std::to_string(key) + "\":" + value + ',';
    return text;
}

// More failures than are kept at once, so that it takes several passes to know the one to report.
TEST(JSONDecoder, OfVeryManyWrongValuesInAMapTheOneWithTheLeastKeyIsReported) {
    using Map = std::map<std::string, std::int64_t>;
    const auto refusal = [](const std::string& path, const char* found) {
        return Refusal{path, path + ": expected an integer, found " + found};
    };
    struct Row {
        const char* sentence;
        std::string entries;
        std::optional<Refusal> refusal;
    };
    const std::string wrong = entries(100, 900, "true");
    const Row rows[] = {
        {"all are wrong", wrong, refusal("100", "true")},
        {"the first is replaced", wrong + entries(100, 1, "1"), refusal("101", "true")},
        {"all but the last are replaced", wrong + entries(100, 899, "1"), refusal("999", "true")},
        {"all but the first are replaced", wrong + entries(101, 899, "1"), refusal("100", "true")},
        {"all but one in the middle", wrong + entries(100, 500, "1") + entries(601, 399, "1"),
         refusal("600", "true")},
        {"all are replaced", wrong + entries(100, 900, "1"), std::nullopt},
        {"all are replaced, and one is wrong again", wrong + entries(100, 900, "1") + entries(700, 1, "null"),
         refusal("700", "null")},
        {"all are wrong twice", wrong + entries(100, 900, "null"), refusal("100", "null")},
        {"the second half comes first, and is replaced",
         entries(500, 500, "true") + entries(100, 400, "true") + entries(100, 899, "1"),
         refusal("999", "true")},
        {"the keys after them are right", wrong + entries(100, 900, "1") + entries(1000, 900, "1"),
         std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const std::string text = "{" + row.entries + R"("0":0})";
        EXPECT_EQ(refusalOf<Map>(text), row.refusal);
    }
    const std::string text = "{" + wrong + entries(100, 900, "1") + R"("0":0})";
    const Map map = json::decode<Map>(text);
    EXPECT_EQ(map.size(), 901U);
    EXPECT_EQ(map, checkedAndDecoded<Map>(text));
}

TEST(JSONDecoder, MapsWithVeryManyWrongValuesAreToldApart) {
    using Maps = std::vector<std::map<std::string, std::int64_t>>;
    const std::string replaced = entries(100, 900, "true") + entries(100, 900, "1") + R"("0":0)";
    const std::string wrong = entries(100, 900, "true") + entries(100, 899, "1") + R"("0":0)";
    const std::string all = "{" + replaced + "},{" + replaced + "},{";
    EXPECT_EQ(refusalOf<Maps>("[" + all + wrong + "}]"),
              (Refusal{"[2].999", "[2].999: expected an integer, found true"}));
    EXPECT_EQ(refusalOf<Maps>("[" + all + replaced + "}]"), std::nullopt);
}

// Each element takes many times its text, so the values are stored only after a pass that checks them.
TEST(JSONDecoder, AListOfTheSmallestElementsIsReadWhole) {
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
    EXPECT_EQ(refusalOf<Texts>(text + ",[0]]"),
              (Refusal{"[100][0]", "[100][0]: expected a string, found a number"}));
    EXPECT_EQ(refusalOf<Texts>(text), (Refusal{"", "line 1, column " + std::to_string(text.size() + 1) +
                                                       ": the document ends too early"}));
}

TEST(JSONDecoder, ErrorsAreCopiedWithTheirTexts) {
    static_assert(std::is_nothrow_copy_constructible_v<JSONDecodingError>);
    static_assert(std::is_nothrow_copy_assignable_v<JSONDecodingError>);
    JSONDecodingError kept("", "");
    {
        const JSONDecodingError original("artifacts[3].bytes", "artifacts[3].bytes is missing");
        kept = original;
    }
    EXPECT_EQ(kept.path(), "artifacts[3].bytes");
    EXPECT_STREQ(kept.what(), "artifacts[3].bytes is missing");
}

} // namespace
} // namespace kinovane::test
