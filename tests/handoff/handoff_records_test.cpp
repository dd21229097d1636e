#include <kinovane/handoff.hpp>

#include "handoff/record_fields.hpp"

namespace kinovane::test {
namespace {

TEST(HandoffRecords, Source) {
    checkRecord<VistrelHandoffSource>({{"projectId", R"("p")"},
                                       {"projectRoot", R"("/films/p")"},
                                       {"runManifest", R"("run.json")"},
                                       {"projectContractVersion", R"("v")"},
                                       {"updatedAt", R"("u")"}},
                                      {"p", "/films/p", "run.json", "v", "u"});
}

TEST(HandoffRecords, Project) {
    checkRecord<VistrelHandoffProject>({{"title", R"("t")"},
                                        {"idea", R"("i")"},
                                        {"logline", R"("l")", Holds::text, true},
                                        {"synopsis", R"("s")", Holds::text, true},
                                        {"theme", R"("m")", Holds::text, true},
                                        {"durationMilliseconds", "-9223372036854775808", Holds::integer},
                                        {"fps", "25", Holds::integer},
                                        {"aspectRatio", R"("4:3")"},
                                        {"width", "640", Holds::integer, true},
                                        {"height", "480", Holds::integer, true}},
                                       {"t", "i", "l", "s", "m", INT64_MIN, 25, "4:3", 640, 480});
}

const std::vector<FieldRow>& shotFields() {
    static const std::vector<FieldRow> fields{
        {"id", R"("s1")"},
        {"order", "1", Holds::integer},
        {"purpose", R"("p")"},
        {"prompt", R"("m")"},
        {"framePrompt", R"("f")"},
        {"timelineStartMilliseconds", "1500", Holds::integer},
        {"durationMilliseconds", "9223372036854775807", Holds::integer},
        {"characterIds", R"(["noor","aurelien"])", Holds::list},
        {"locationId", R"("quay")"},
        {"transition", R"("cut")"},
        {"take", "2", Holds::integer},
        {"seed", "-3", Holds::integer},
        {"keyframeAssetId", R"("k")", Holds::text, true},
        {"clipAssetId", R"("c")", Holds::text, true},
        {"dialogue", R"([{"speaker":"noor","text":"Seven!","startSeconds":0.5,"delivery":"glad"}])",
         Holds::list},
        {"soundEffects",
         R"([{"prompt":"bell","startSeconds":0,"durationSeconds":5,"levelDb":-9.25,"seed":4}])",
         Holds::list}};
    return fields;
}

TEST(HandoffRecords, Shot) {
    VistrelHandoffShot shot{"s1",   1,     "p", "m", "f", 1500, INT64_MAX, {"noor", "aurelien"},
                            "quay", "cut", 2,   -3,  "k", "c",  {},        {}};
    shot.dialogue = {{"noor", "Seven!", 0.5, "glad"}};
    shot.soundEffects = {{"bell", 0, 5, -9.25, 4}};
    checkRecord<VistrelHandoffShot>(shotFields(), shot);
}

TEST(HandoffRecords, EmptyListsOfAShotAreWritten) {
    VistrelHandoffShot shot;
    shot.id = "s1";
    EXPECT_EQ(
        encodeJSON(shot),
        R"({"id":"s1","order":0,"purpose":"","prompt":"","framePrompt":"","timelineStartMilliseconds":0,)"
        R"("durationMilliseconds":0,"characterIds":[],"locationId":"","transition":"","take":0,"seed":0,)"
        R"("dialogue":[],"soundEffects":[]})");
}

TEST(HandoffRecords, WhatIsWrongInAListIsNamedWithItsPlace) {
    struct Row {
        std::string_view sentence;
        std::string_view key;
        std::string value;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"a character that is no text", "characterIds", R"(["a",1])",
         "characterIds[1]: expected a string, found a number"},
        {"a line without its text", "dialogue",
         R"([{"speaker":"a","text":"b","startSeconds":0,"delivery":"c"},{"speaker":"a"}])",
         "dialogue[1].text is missing"},
        {"a line that begins at a word", "dialogue",
         R"([{"speaker":"a","text":"b","startSeconds":"0","delivery":"c"}])",
         "dialogue[0].startSeconds: expected a number, found a string"},
        {"an effect with half a seed", "soundEffects",
         R"([{"prompt":"a","startSeconds":0,"durationSeconds":1,"levelDb":0,"seed":0.5}])",
         "soundEffects[0].seed: expected an integer, found 0.5"},
        {"an effect that lasts longer than a number can say", "soundEffects",
         R"([{"prompt":"a","startSeconds":0,"durationSeconds":1e999,"levelDb":0,"seed":1}])",
         "soundEffects[0].durationSeconds: expected a number that fits a double, found 1e999"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(refusalOf<VistrelHandoffShot>(documentOf(shotFields(), {{row.key, row.value}})),
                  row.expected);
    }
}

TEST(HandoffRecords, Asset) {
    checkRecord<VistrelHandoffAsset>(
        {{"id", R"("film_asset_0")"},
         {"kind", R"("score")"},
         {"relativePath", R"("score/score.m4a")"},
         {"sha256", R"("sha256:0")"},
         {"bytes", "9007199254740993", Holds::integer},
         {"contentType", R"("audio/mp4")"},
         {"source", R"("composer")"}},
        {"film_asset_0", "score", "score/score.m4a", "sha256:0", 9007199254740993, "audio/mp4", "composer"});
}

TEST(HandoffRecords, Receipt) {
    checkRecord<VistrelImportReceipt>({{"ok", "true", Holds::flag},
                                       {"project_id", R"("vp")"},
                                       {"episode_id", R"("ve")", Holds::text, true},
                                       {"imported_scenes", "1", Holds::integer, true},
                                       {"imported_shots", "2", Holds::integer, true},
                                       {"imported_assets", "3", Holds::integer, true},
                                       {"project_url", R"("vistrel://projects/vp")", Holds::text, true}},
                                      {true, "vp", "ve", 1, 2, 3, "vistrel://projects/vp"});
}

TEST(HandoffRecords, CamelCaseKeysOfAReceiptMeanNothing) {
    EXPECT_EQ(refusalOf<VistrelImportReceipt>(R"({"ok":true,"projectId":"p"})"), "project_id is missing");
    const auto receipt = decodeJSON<VistrelImportReceipt>(
        R"({"ok":true,"project_id":"p","episodeId":"e","importedShots":4,"projectURL":"u","project_URL":"u"})");
    EXPECT_EQ(receipt, (VistrelImportReceipt{true, "p", {}, {}, {}, {}, {}}));
    EXPECT_EQ(encodeJSON(receipt), R"({"ok":true,"project_id":"p"})");
}

} // namespace
} // namespace kinovane::test
