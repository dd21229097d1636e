#include <utility>

#include <kinovane/handoff.hpp>

#include "handoff/record_fields.hpp"

namespace kinovane::test {
namespace {

const char* const source =
    R"({"projectId":"p","projectRoot":"/r","runManifest":"run.json","projectContractVersion":"v","updatedAt":"u"})";
const char* const project =
    R"({"title":"t","idea":"i","durationMilliseconds":1,"fps":24,"aspectRatio":"16:9"})";
const char* const proof =
    R"({"creation":true,"clips":false,"assembly":true,"dialogue":false,"sound":true,"captions":false,)"
    R"("inspection":true,"review":false,"humanReview":true,"delivery":false})";

std::string assetOf(const std::string& id) {
    return R"({"id":")" + id + R"(","kind":"score","relativePath":")" + id +
           R"(.wav","sha256":"sha256:0","bytes":7,"contentType":"audio/wav","source":"s"})";
}

std::string shotOfTake(const std::string& take) {
    return R"({"id":"s","order":0,"purpose":"","prompt":"","framePrompt":"","timelineStartMilliseconds":0,)"
           R"("durationMilliseconds":1,"characterIds":[],"locationId":"","transition":"")" +
           (take.empty() ? take : ",\"take\":" + take) + R"(,"seed":0,"dialogue":[],"soundEffects":[]})";
}

std::vector<FieldRow> handoffFields() {
    return {
        {"contractVersion", R"("quexrun/film-vistrel-handoff.v1")"},
        {"exportedAt", R"("now")"},
        {"source", source, Holds::record},
        {"project", project, Holds::record},
        {"cast", R"([{"id":"c","name":"n","visual":"v","wardrobe":"w","voice":"o","seed":5}])", Holds::list},
        {"locations", R"([{"id":"l","name":"n","visual":"v","ambience":"a"}])", Holds::list},
        {"shots", "[" + shotOfTake("1") + "]", Holds::list},
        {"assets", "[" + assetOf("a") + "," + assetOf("b") + "]", Holds::list},
        {"proof", proof, Holds::record}};
}

VistrelHandoff handoffOfFields() {
    VistrelHandoff handoff;
    handoff.contractVersion = "quexrun/film-vistrel-handoff.v1";
    handoff.exportedAt = "now";
    handoff.source = {"p", "/r", "run.json", "v", "u"};
    handoff.project = {"t", "i", {}, {}, {}, 1, 24, "16:9", {}, {}};
    handoff.cast = {{"c", "n", "v", "w", "o", 5}};
    handoff.locations = {{"l", "n", "v", "a", {}}};
    handoff.shots.resize(1);
    handoff.shots[0].id = "s";
    handoff.shots[0].durationMilliseconds = 1;
    handoff.shots[0].take = 1;
    handoff.assets = {{"a", "score", "a.wav", "sha256:0", 7, "audio/wav", "s"},
                      {"b", "score", "b.wav", "sha256:0", 7, "audio/wav", "s"}};
    handoff.proof = {true, false, true, false, true, false, true, false, true, false};
    return handoff;
}

TEST(VistrelHandoff, Document) { checkRecord<VistrelHandoff>(handoffFields(), handoffOfFields()); }

TEST(VistrelHandoff, WhatIsWrongInsideIsNamedWithItsPlace) {
    struct Row {
        std::string_view sentence;
        std::string_view key;
        std::string value;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"a source without its project", "source", "{}", "source.projectId is missing"},
        {"a project whose speed is a word", "project",
         R"({"title":"t","idea":"i","durationMilliseconds":1,"fps":"24","aspectRatio":"16:9"})",
         "project.fps: expected an integer, found a string"},
        {"a shot without a take", "shots", "[" + shotOfTake("") + "]", "shots[0].take is missing"},
        {"a second shot whose take is null", "shots", "[" + shotOfTake("1") + "," + shotOfTake("null") + "]",
         "shots[1].take: expected an integer, found null"},
        {"an asset that is a list", "assets", "[" + assetOf("a") + ",[]]",
         "assets[1]: expected an object, found a list"},
        {"an asset that is null", "assets", "[null]", "assets[0]: expected an object, found null"},
        {"a cast member without a name", "cast", R"([{"id":"c"}])", "cast[0].name is missing"},
        {"a location whose seed has a fraction", "locations",
         R"([{"id":"l","name":"n","visual":"v","ambience":"a","seed":2.25}])",
         "locations[0].seed: expected an integer, found 2.25"},
        {"a proof flag that is a number", "proof", R"({"creation":1})",
         "proof.creation: expected true or false, found a number"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(refusalOf<VistrelHandoff>(documentOf(handoffFields(), {{row.key, row.value}})),
                  row.expected);
    }
}

TEST(VistrelHandoff, AnyContractVersionIsRead) {
    for (const std::string version : {"quexrun/film-vistrel-handoff.v2", "", "something else"}) {
        const std::string document = documentOf(handoffFields(), {{"contractVersion", '"' + version + '"'}});
        EXPECT_EQ(decodeJSON<VistrelHandoff>(document).contractVersion, version);
    }
}

TEST(VistrelHandoff, TheOrderOfTheAssetsCounts) {
    const VistrelHandoff handoff = handoffOfFields();
    VistrelHandoff other = handoff;
    std::swap(other.assets[0], other.assets[1]);
    EXPECT_NE(handoff, other);
}

TEST(VistrelHandoff, PrettyPrintedKeysAreSortedInEveryObject) {
    VistrelHandoff handoff = handoffOfFields();
    handoff.assets.clear();
    handoff.shots.clear();
    handoff.cast[0].seed.reset();
    EXPECT_EQ(encodeJSON(handoff, JSONFormat::pretty), R"({
  "assets": [],
  "cast": [
    {
      "id": "c",
      "name": "n",
      "visual": "v",
      "voice": "o",
      "wardrobe": "w"
    }
  ],
  "contractVersion": "quexrun/film-vistrel-handoff.v1",
  "exportedAt": "now",
  "locations": [
    {
      "ambience": "a",
      "id": "l",
      "name": "n",
      "visual": "v"
    }
  ],
  "project": {
    "aspectRatio": "16:9",
    "durationMilliseconds": 1,
    "fps": 24,
    "idea": "i",
    "title": "t"
  },
  "proof": {
    "assembly": true,
    "captions": false,
    "clips": false,
    "creation": true,
    "delivery": false,
    "dialogue": false,
    "humanReview": true,
    "inspection": true,
    "review": false,
    "sound": true
  },
  "shots": [],
  "source": {
    "projectContractVersion": "v",
    "projectId": "p",
    "projectRoot": "/r",
    "runManifest": "run.json",
    "updatedAt": "u"
  }
})");
}

} // namespace
} // namespace kinovane::test
