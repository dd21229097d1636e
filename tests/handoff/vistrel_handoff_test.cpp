// SPDX-License-Identifier: Apache-2.0

#include <utility>

#include <gtest/gtest.h>

#include "handoff/handoff_records.hpp"

namespace kinovane::test {
namespace {

TEST(VistrelHandoff, NamesThePositionOfAnError) {
    struct Row {
        std::string_view sentence;
        std::string key;
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
        EXPECT_EQ(refusalOf<VistrelHandoff>(handoffRow().documentWith(row.key, row.value)), row.expected);
    }
}

TEST(VistrelHandoff, ReadsAnyContractVersion) {
    for (const std::string version : {"quexrun/film-vistrel-handoff.v2", "", "something else"}) {
        const std::string document = handoffRow().documentWith("contractVersion", '"' + version + '"');
        EXPECT_EQ(decodeJSON<VistrelHandoff>(document).contractVersion, version);
    }
}

TEST(VistrelHandoff, DiffersWhenTheAssetsAreReordered) {
    const VistrelHandoff handoff = fullHandoff();
    VistrelHandoff other = handoff;
    std::swap(other.assets[0], other.assets[1]);
    EXPECT_NE(handoff, other);
}

TEST(VistrelHandoff, SortsTheKeysOfEveryObjectWhenPrettyPrinted) {
    VistrelHandoff handoff = fullHandoff();
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
  "contractVersion": "contractVersion",
  "exportedAt": "exportedAt",
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
