// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

std::string idOf(const FilmWorkspaceSnapshot& snapshot) {
    return VistrelHandoffBuilder::build(snapshot, "/r").assets.at(0).id;
}

// The expected identifiers were computed with other programs: printf '{"path":"…","sha256":"sha256:…"}' |
// sha256sum
TEST(AssetIdentity, IsComputedFromPathAndDigest) {
    struct Row {
        std::string_view sentence;
        std::string path;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"slashes are not escaped", "score/score.m4a", "film_asset_457a92e4ca2552bd3a24"},
        {"the path is used unchanged", "./frames//a.png", "film_asset_6f624234bf873e7ac304"},
        {"quotation marks", "a \"quoted\" name.wav", "film_asset_3bd67ae326d76fcc318b"},
        {"a backslash", "back\\slash.wav", "film_asset_449a0ed36d8152aa27fa"},
        {"control characters with short escapes", "line\nbreak\ttab\r.wav",
         "film_asset_2d4774557c2038288144"},
        {"control characters without short escapes", "\x01\x1f\b\f.wav", "film_asset_f668581f1000b7ccf5de"},
        {"a control character that is not escaped", "del\x7f.wav", "film_asset_a1f5233bfb4c1b1eba9a"},
        {"letters that are not ASCII are not escaped", "Brèmes/été – 灯.wav",
         "film_asset_f9807babc37c2d7e32a1"},
        {"characters of four bytes", "🎬.mp4", "film_asset_fdb83797433d2de7a15d"},
        {"HTML characters are not escaped", "a&<b>'c.wav", "film_asset_291901c0e09ea4a2ed6e"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        WorkspaceMaker maker;
        maker.add("score", row.path, "content");
        EXPECT_EQ(idOf(maker.snapshot), row.expected);
    }
}

TEST(AssetIdentity, DependsOnNothingElseOfTheArtifact) {
    WorkspaceMaker maker;
    maker.add("score", "score/score.m4a", "content");
    FilmArtifact& artifact = maker.snapshot.project.artifacts[0];
    artifact = {0, "other/type", "another time", "poster", artifact.path, artifact.sha256, "someone else"};
    EXPECT_EQ(idOf(maker.snapshot), "film_asset_457a92e4ca2552bd3a24");
    maker.add("dialogue", "another.wav", "another");
    std::swap(maker.snapshot.project.artifacts[0], maker.snapshot.project.artifacts[1]);
    EXPECT_EQ(VistrelHandoffBuilder::build(maker.snapshot, "/r").assets.at(1).id,
              "film_asset_457a92e4ca2552bd3a24");
}

TEST(AssetIdentity, ChangesWithTheContent) {
    WorkspaceMaker maker;
    maker.add("score", "score/score.m4a", "other content");
    EXPECT_NE(idOf(maker.snapshot), "film_asset_457a92e4ca2552bd3a24");
}

TEST(AssetIdentity, StaysTheSameWhenTheProjectMoves) {
    WorkspaceMaker maker;
    maker.add("score", "film/score/score.m4a", "content");
    maker.snapshot.project.artifacts[0].path = "score/score.m4a";
    maker.snapshot.root = maker.directory / "film";
    const std::string before = idOf(maker.snapshot);
    fs::rename(maker.directory / "film", maker.directory / "elsewhere");
    maker.snapshot.root = maker.directory / "elsewhere";
    EXPECT_EQ(idOf(maker.snapshot), before);
    EXPECT_EQ(before, "film_asset_457a92e4ca2552bd3a24");
}

TEST(AssetIdentity, RefusesAPathThatIsNotUTF8) {
    WorkspaceMaker maker;
    maker.add("score", "caf\xe9.wav", "content");
    try {
        idOf(maker.snapshot);
        FAIL() << "an identifier was made of text that is not UTF-8";
    } catch (const JSONEncodingError& error) {
        EXPECT_STREQ(error.what(), "path: the text is not UTF-8");
    }
}

} // namespace
} // namespace kinovane::test
