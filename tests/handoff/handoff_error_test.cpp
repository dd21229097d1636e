// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

using Error = VistrelHandoffError;

const std::string contentDigest = "sha256:ed7002b439e9ac845f22357d822bac1444730fbdb6016d3ec9432297b9ec9f73";

TEST(HandoffError, HasADescriptionForEveryCase) {
    struct Row {
        std::string_view sentence;
        Error error;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"an unsafe path", Error::unsafeArtifactPath{"../x.png"},
         "The handoff contains an unsafe artifact path: ../x.png"},
        {"an empty unsafe path", Error::unsafeArtifactPath{""},
         "The handoff contains an unsafe artifact path: "},
        {"a missing file", Error::missingArtifact{"frames/Brèmes.png"},
         "The handoff artifact is missing: frames/Brèmes.png"},
        {"another digest", Error::hashMismatch{"a.png", "sha256:1", "sha256:2"},
         "Artifact hash mismatch for a.png. Expected sha256:1, got sha256:2."},
        {"no plan", Error::productionPlanMissing{},
         "An accepted production plan is required before publishing to Vistrel."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(row.error.errorDescription(), row.expected);
        EXPECT_EQ(row.error.what(), row.expected);
        for (const Row& other : rows)
            EXPECT_EQ(row.error == other.error, &row == &other);
    }
    EXPECT_NE(Error(Error::hashMismatch{"a", "1", "2"}), Error(Error::hashMismatch{"a", "1", "3"}));
}

/// The error of building this workspace.
Error errorOf(const FilmWorkspaceSnapshot& snapshot) {
    try {
        VistrelHandoffBuilder::build(snapshot, "/r");
    } catch (const Error& error) {
        return error;
    }
    throw std::logic_error("the handoff was built");
}

TEST(HandoffError, ReportsEveryDifferenceInTheTextOfADigest) {
    struct Row {
        std::string_view sentence;
        std::string recorded;
    };
    std::string capitals = contentDigest;
    for (std::size_t index = 7; index < capitals.size(); ++index)
        capitals[index] = static_cast<char>(std::toupper(capitals[index]));
    const std::vector<Row> rows{
        {"in capitals", capitals},
        {"with a prefix in capitals", "SHA256:" + contentDigest.substr(7)},
        {"without the prefix", contentDigest.substr(7)},
        {"one digit short", contentDigest.substr(0, contentDigest.size() - 1)},
        {"one digit more", contentDigest + "0"},
        {"with a blank", contentDigest + " "},
        {"nothing", ""},
        {"another file's", std::string(emptyDigest)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        WorkspaceMaker maker;
        maker.add("score", "./score//a.wav", "").sha256 = row.recorded;
        maker.directory.write("score/a.wav", "content");
        EXPECT_EQ(errorOf(maker.snapshot),
                  Error(Error::hashMismatch{"./score//a.wav", row.recorded, contentDigest}));
    }
}

TEST(HandoffError, FollowsTheOrderOfTheChecks) {
    struct Row {
        std::string_view sentence;
        std::string path;
        Error expected;
    };
    const std::vector<Row> rows{
        {"absolute comes before missing", "/nowhere/a.png", Error::unsafeArtifactPath{"/nowhere/a.png"}},
        {"climbing comes before missing", "nowhere/../a.png", Error::unsafeArtifactPath{"nowhere/../a.png"}},
        {"leading out comes before missing", "out/nothing.png", Error::unsafeArtifactPath{"out/nothing.png"}},
        {"leading out comes before the digest", "out/film.txt", Error::unsafeArtifactPath{"out/film.txt"}},
        {"missing comes before the digest", "nothing.png", Error::missingArtifact{"nothing.png"}},
        {"the digest comes last", "film.txt",
         Error::hashMismatch{"film.txt", std::string(emptyDigest), contentDigest}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        WorkspaceMaker maker;
        maker.directory.write("project/film.txt", "content");
        maker.directory.write("elsewhere/film.txt", "content");
        maker.snapshot.root = maker.directory / "project";
        std::filesystem::create_symlink("../elsewhere", maker.directory / "project/out");
        maker.list("score", row.path);
        EXPECT_EQ(errorOf(maker.snapshot), row.expected);
    }
}

} // namespace
} // namespace kinovane::test
