// SPDX-License-Identifier: Apache-2.0

#include <array>
#include <ctime>

#include <gmock/gmock.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(HandoffBuilder, RequiresAPlanBeforeAnythingElse) {
    WorkspaceMaker maker;
    maker.list("score", "/absolute/and/unsafe.wav");
    maker.list("score", "missing.wav");
    maker.snapshot.productionPlan.reset();
    try {
        VistrelHandoffBuilder::build(maker.snapshot, "/r");
        FAIL() << "a handoff was built without a plan";
    } catch (const VistrelHandoffError& error) {
        EXPECT_EQ(error, VistrelHandoffError(VistrelHandoffError::productionPlanMissing{}));
    }
}

TEST(HandoffBuilder, BuildsTheWholeHandoffOfASmallFilm) {
    WorkspaceMaker maker;
    FilmProject& project = maker.snapshot.project;
    project.proof = {true, false, true, false, true, false, true, false, true, true};
    maker.add("shot-keyframe", "frames/s1.png", "content");
    maker.add("prompt-log", "logs/prompts.txt", "not for others");
    maker.add("shot-clip", "clips/s1.mp4", "moving").source = "slow-camera";
    maker.snapshot.treatment = FilmTreatment{"t", "logline", "synopsis", "theme", {"beat"}, "v", "s"};
    FilmProductionPlan& plan = *maker.snapshot.productionPlan;
    plan.target.fps = 25;
    plan.target.aspectRatio = "4:3";
    plan.target.width = 640;
    plan.target.height = 480;
    plan.cast = {{"c", "n", "v", "w", "o", 5}};
    plan.locations = {{"l", "n", "v", "a", {}}};
    FilmProductionShot& shot = plan.shots[0];
    shot = {"s1",
            "purpose",
            "frame",
            "prompt",
            1.5,
            7,
            {"c"},
            "l",
            {{"c", "text", 0.5, "glad"}},
            {{"bell", 0, 1, -3, 4}},
            "cut",
            "accepted",
            2,
            1,
            99};

    const VistrelHandoff handoff =
        VistrelHandoffBuilder::build(maker.snapshot, "as/named by ~the caller", "now");

    ASSERT_EQ(handoff.assets.size(), 2U);
    const FilmArtifact& frame = project.artifacts[0];
    const FilmArtifact& clip = project.artifacts[2];
    VistrelHandoff expected;
    expected.contractVersion = "quexrun/film-vistrel-handoff.v1";
    expected.exportedAt = "now";
    expected.source = {"p", "as/named by ~the caller", "run.json", "quexrun/film-project.v1", "u"};
    expected.project = {"t", "i", "logline", "synopsis", "theme", 1500, 25, "4:3", 640, 480};
    expected.cast = plan.cast;
    expected.locations = plan.locations;
    expected.shots = {{"s1",
                       0,
                       "purpose",
                       "prompt",
                       "frame",
                       0,
                       1500,
                       {"c"},
                       "l",
                       "cut",
                       2,
                       99,
                       handoff.assets[0].id,
                       handoff.assets[1].id,
                       shot.dialogue,
                       shot.soundEffects}};
    expected.assets = {{handoff.assets[0].id, "shot-keyframe", "frames/s1.png", frame.sha256, 7,
                        "application/octet-stream", "test"},
                       {handoff.assets[1].id, "shot-clip", "clips/s1.mp4", clip.sha256, 6,
                        "application/octet-stream", "slow-camera"}};
    expected.proof = project.proof;
    EXPECT_EQ(handoff, expected);
}

TEST(HandoffBuilder, FillsInTheDefaultsOfTheTarget) {
    WorkspaceMaker maker;
    const VistrelHandoffProject project = VistrelHandoffBuilder::build(maker.snapshot, "/r").project;
    EXPECT_EQ(project, (VistrelHandoffProject{"t", "i", {}, {}, {}, 1500, 24, "16:9", {}, {}}));
}

TEST(HandoffBuilder, KeepsASingleDimension) {
    WorkspaceMaker maker;
    maker.snapshot.productionPlan->target.height = 1080;
    const VistrelHandoffProject project = VistrelHandoffBuilder::build(maker.snapshot, "/r").project;
    EXPECT_EQ(project.width, std::nullopt);
    EXPECT_EQ(project.height, 1080);
}

TEST(HandoffBuilder, WritesNoKeysForAnAbsentTreatment) {
    WorkspaceMaker maker;
    const std::string document = encodeJSON(VistrelHandoffBuilder::build(maker.snapshot, "/r", "now"));
    for (const char* key :
         {"logline", "synopsis", "theme", "keyframeAssetId", "clipAssetId", "width", "null"})
        EXPECT_EQ(document.find(key), std::string::npos) << key;
}

TEST(HandoffBuilder, SkipsKindsThatAreNotExported) {
    WorkspaceMaker maker;
    maker.add("archived-take", "frames/s1.png", "content");
    maker.list("treatment", "../unsafe and missing");
    const VistrelHandoff handoff = VistrelHandoffBuilder::build(maker.snapshot, "/r");
    EXPECT_THAT(handoff.assets, IsEmpty());
    EXPECT_EQ(handoff.shots.at(0).keyframeAssetId, std::nullopt);
    EXPECT_EQ(handoff.shots.at(0).clipAssetId, std::nullopt);
}

TEST(HandoffBuilder, LinksShotsByExactPath) {
    struct Row {
        std::string_view sentence;
        std::string path;
        bool isFrame;
        bool isClip;
    };
    const std::vector<Row> rows{
        {"the key frame", "frames/s1.png", true, false},
        {"the clip", "clips/s1.mp4", false, true},
        {"another extension", "frames/s1.jpg", false, false},
        {"an extension in capitals", "frames/s1.PNG", false, false},
        {"the same file under another path", "./frames/s1.png", false, false},
        {"a double slash", "clips//s1.mp4", false, false},
        {"a longer shot id", "frames/s11.png", false, false},
        {"in another directory", "takes/frames/s1.png", false, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        WorkspaceMaker maker;
        maker.add("poster", row.path, "content"); // The kind does not matter.
        const VistrelHandoff handoff = VistrelHandoffBuilder::build(maker.snapshot, "/r");
        ASSERT_EQ(handoff.assets.size(), 1U);
        const std::optional<std::string> id = handoff.assets[0].id;
        EXPECT_EQ(handoff.shots[0].keyframeAssetId, row.isFrame ? id : std::nullopt);
        EXPECT_EQ(handoff.shots[0].clipAssetId, row.isClip ? id : std::nullopt);
    }
}

TEST(HandoffBuilder, PrefersTheSelectedSeed) {
    WorkspaceMaker maker;
    auto& shots = maker.snapshot.productionPlan->shots;
    shots.push_back(shotOf("s2", 1));
    shots.push_back(shotOf("s3", 1));
    shots[1].selectedSeed = 42;
    shots[2].selectedSeed = 0;
    const VistrelHandoff handoff = VistrelHandoffBuilder::build(maker.snapshot, "/r");
    EXPECT_EQ(handoff.shots[0].seed, 7);
    EXPECT_EQ(handoff.shots[1].seed, 42);
    EXPECT_EQ(handoff.shots[2].seed, 0);
}

TEST(HandoffBuilder, RecordsTheCallersExportTime) {
    WorkspaceMaker maker;
    for (const std::string text : {"", "yesterday", "2026-03-01T14:05:09+01:00"})
        EXPECT_EQ(VistrelHandoffBuilder::build(maker.snapshot, "/r", text).exportedAt, text);
}

std::time_t timeOf(const std::string& text) {
    std::tm parts{};
    const char* end = ::strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    EXPECT_TRUE(end != nullptr && *end == '\0') << text;
    return ::timegm(&parts);
}

std::string textOf(std::time_t time) {
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

TEST(HandoffBuilder, RecordsTheCurrentTimeByDefault) {
    WorkspaceMaker maker;
    const std::time_t before = std::time(nullptr);
    const std::string text = VistrelHandoffBuilder::build(maker.snapshot, "/r").exportedAt;
    const std::time_t after = std::time(nullptr);
    EXPECT_EQ(text, textOf(timeOf(text)));
    EXPECT_LE(before, timeOf(text));
    EXPECT_LE(timeOf(text), after);
}

TEST(HandoffBuilder, RecordsAFixedNameOfTheRunManifest) {
    WorkspaceMaker maker;
    maker.snapshot.runManifest = "/somewhere/else/other.json";
    EXPECT_EQ(VistrelHandoffBuilder::build(maker.snapshot, "/r").source.runManifest, "run.json");
}

TEST(HandoffBuilder, OnlyRecordsTheProjectRoot) {
    WorkspaceMaker maker;
    maker.add("score", "score.wav", "content");
    const std::vector<std::string> roots{"", "/does/not/exist", "relative/..", maker.snapshot.root.string()};
    for (const std::string& root : roots)
        EXPECT_EQ(VistrelHandoffBuilder::build(maker.snapshot, root).source.projectRoot, root);
}

TEST(HandoffBuilder, KeepsTheOrderOfTheArtifacts) {
    WorkspaceMaker maker;
    for (const char* path : {"z.wav", "a.wav", "m.wav", "B.wav"})
        maker.add("dialogue", path, path);
    std::vector<std::string> paths;
    for (const VistrelHandoffAsset& asset : VistrelHandoffBuilder::build(maker.snapshot, "/r").assets)
        paths.push_back(asset.relativePath);
    EXPECT_THAT(paths, ElementsAre("z.wav", "a.wav", "m.wav", "B.wav"));
}

TEST(HandoffBuilder, BuildsEqualDocumentsTwice) {
    const FilmWorkspaceSnapshot snapshot = FilmProjectLoader::load(sampleFilm() / "run.json");
    const VistrelHandoff first = VistrelHandoffBuilder::build(snapshot, "/r", "now");
    const VistrelHandoff second = VistrelHandoffBuilder::build(snapshot, "/r", "now");
    EXPECT_EQ(first, second);
    EXPECT_EQ(encodeJSON(first), encodeJSON(second));
}

TEST(HandoffBuilder, OmitsTheTimeOfAnArtifact) {
    WorkspaceMaker maker;
    maker.add("score", "score.wav", "content").createdAt = "a time of its own";
    const VistrelHandoff handoff = VistrelHandoffBuilder::build(maker.snapshot, "/r", "now");
    EXPECT_EQ(encodeJSON(handoff).find("a time of its own"), std::string::npos);
}

} // namespace
} // namespace kinovane::test
