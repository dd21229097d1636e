// SPDX-License-Identifier: Apache-2.0

#include "handoff/handoff_records.hpp"

#include <cstdint>

namespace kinovane::test {

namespace {

const char* const source =
    R"({"projectId":"p","projectRoot":"/r","runManifest":"run.json","projectContractVersion":"v","updatedAt":"u"})";
const char* const project =
    R"({"title":"t","idea":"i","durationMilliseconds":1,"fps":24,"aspectRatio":"16:9"})";
const char* const proof =
    R"({"creation":true,"clips":false,"assembly":true,"dialogue":false,"sound":true,"captions":false,)"
    R"("inspection":true,"review":false,"humanReview":true,"delivery":false})";

} // namespace

std::string assetOf(const std::string& id) {
    return R"({"id":")" + id + R"(","kind":"score","relativePath":")" + id +
           R"(.wav","sha256":"sha256:0","bytes":7,"contentType":"audio/wav","source":"s"})";
}

std::string shotOfTake(const std::string& take) {
    return R"({"id":"s","order":0,"purpose":"","prompt":"","framePrompt":"","timelineStartMilliseconds":0,)"
           R"("durationMilliseconds":1,"characterIds":[],"locationId":"","transition":"")" +
           (take.empty() ? take : ",\"take\":" + take) + R"(,"seed":0,"dialogue":[],"soundEffects":[]})";
}

RecordRow shotRow() {
    VistrelHandoffShot full{"id", 1,         "purpose",         "prompt",      "framePrompt",
                            1500, INT64_MAX, {"noor", "remi"},  "locationId",  "transition",
                            2,    -3,        "keyframeAssetId", "clipAssetId", {},
                            {}};
    full.dialogue = {{"noor", "Seven!", 0.5, "glad"}};
    full.soundEffects = {{"bell", 0, 5, -9.25, 4}};
    return recordRow(
        "VistrelHandoffShot",
        {text("id"), integer("order", "1"), text("purpose"), text("prompt"), text("framePrompt"),
         integer("timelineStartMilliseconds", "1500"), integer("durationMilliseconds", "9223372036854775807"),
         list("characterIds", R"(["noor","remi"])"), text("locationId"), text("transition"),
         integer("take", "2"), integer("seed", "-3"), optional(text("keyframeAssetId")),
         optional(text("clipAssetId")),
         list("dialogue", R"([{"speaker":"noor","text":"Seven!","startSeconds":0.5,"delivery":"glad"}])"),
         list("soundEffects",
              R"([{"prompt":"bell","startSeconds":0,"durationSeconds":5,"levelDb":-9.25,"seed":4}])")},
        full);
}

VistrelHandoff fullHandoff() {
    VistrelHandoff handoff;
    handoff.contractVersion = "contractVersion";
    handoff.exportedAt = "exportedAt";
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

RecordRow handoffRow() {
    return recordRow(
        "VistrelHandoff",
        {text("contractVersion"), text("exportedAt"), object("source", source), object("project", project),
         list("cast", R"([{"id":"c","name":"n","visual":"v","wardrobe":"w","voice":"o","seed":5}])"),
         list("locations", R"([{"id":"l","name":"n","visual":"v","ambience":"a"}])"),
         list("shots", "[" + shotOfTake("1") + "]"),
         list("assets", "[" + assetOf("a") + "," + assetOf("b") + "]"), object("proof", proof)},
        fullHandoff());
}

std::vector<RecordRow> handoffRecords() {
    return {
        recordRow("VistrelHandoffSource",
                  {text("projectId"), text("projectRoot"), text("runManifest"),
                   text("projectContractVersion"), text("updatedAt")},
                  VistrelHandoffSource{"projectId", "projectRoot", "runManifest", "projectContractVersion",
                                       "updatedAt"}),
        recordRow("VistrelHandoffProject",
                  {text("title"), text("idea"), optional(text("logline")), optional(text("synopsis")),
                   optional(text("theme")), integer("durationMilliseconds", "-9223372036854775808"),
                   integer("fps", "25"), text("aspectRatio"), optional(integer("width", "640")),
                   optional(integer("height", "480"))},
                  VistrelHandoffProject{"title", "idea", "logline", "synopsis", "theme", INT64_MIN, 25,
                                        "aspectRatio", 640, 480}),
        shotRow(),
        recordRow("VistrelHandoffAsset",
                  {text("id"), text("kind"), text("relativePath"), text("sha256"),
                   integer("bytes", "9007199254740993"), text("contentType"), text("source")},
                  VistrelHandoffAsset{"id", "kind", "relativePath", "sha256", 9007199254740993, "contentType",
                                      "source"}),
        handoffRow(),
        recordRow("VistrelImportReceipt",
                  {boolean("ok", "true"), text("project_id"), optional(text("episode_id")),
                   optional(integer("imported_scenes", "1")), optional(integer("imported_shots", "2")),
                   optional(integer("imported_assets", "3")), optional(text("project_url"))},
                  VistrelImportReceipt{true, "project_id", "episode_id", 1, 2, 3, "project_url"}),
    };
}

} // namespace kinovane::test
