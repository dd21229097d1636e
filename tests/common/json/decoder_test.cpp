// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <gtest/gtest.h>

#include "common/json/example_record.hpp"

namespace kinovane::test {
namespace {

/// The full scene's text with one part of it replaced.
std::string sceneWith(std::string_view part, std::string_view replacement) {
    std::string text(fullSceneText);
    const std::size_t position = text.find(part);
    if (position == std::string::npos)
        throw std::logic_error("no such part");
    return text.replace(position, part.size(), replacement);
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

TEST(JSONDecoder, ReadsAMatchingDocument) {
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
        {"a map with unusual keys", sceneWith(R"({"sailors":3})", R"({"":1,"a.b":2,"\u0000":3})"),
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
        EXPECT_TRUE(decodeInTwoPasses<Scene>(row.document) == row.scene);
    }
}

TEST(JSONDecoder, UsesTheLastOfEqualKeys) {
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
        EXPECT_TRUE(decodeInTwoPasses<Scene>(row.document) == row.scene);
    }
}

struct ErrorRow {
    const char* sentence;
    std::string document;
    ErrorTexts texts;
};

TEST(JSONDecoder, ReportsAWrongValueWithItsPath) {
    const ErrorRow rows[] = {
        {"the document is a list", "[]", {"", "expected an object, found a list"}},
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
    for (const ErrorRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(decodingErrorOf<Scene>(row.document), row.texts);
    }
}

} // namespace
} // namespace kinovane::test
