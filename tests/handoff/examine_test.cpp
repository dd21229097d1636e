// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> descriptionsOf(const std::vector<ArtifactOutcome>& outcomes) {
    std::vector<std::string> descriptions;
    for (const ArtifactOutcome& outcome : outcomes)
        descriptions.push_back(outcome.description());
    return descriptions;
}

TEST(Examine, ExaminesEveryKindInTheOrderGiven) {
    WorkspaceMaker maker;
    maker.add("prompt-log", "small", "1");
    maker.add("", "large", std::string(2'000'000, 'a'));
    maker.list("archived-take", "gone");
    maker.add("poster", "last", "22");
    maker.add("poster", "last", "22");
    for (const unsigned workers : {1U, 3U}) {
        SCOPED_TRACE(workers);
        EXPECT_THAT(
            descriptionsOf(VistrelHandoffBuilder::examine(
                maker.snapshot.root, maker.snapshot.project.artifacts, {.workers = workers})),
            ElementsAre("The handoff artifact is sound: small", "The handoff artifact is sound: large",
                        "The handoff artifact is missing: gone", "The handoff artifact is sound: last",
                        "The handoff artifact is sound: last"));
    }
}

TEST(Examine, GivesTheOutcomesOfAnAuditForExportedArtifacts) {
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(sampleFilm() / "run.json");
    const std::vector<ArtifactOutcome> audited = VistrelHandoffBuilder::audit(film);
    ASSERT_FALSE(audited.empty());
    std::vector<FilmArtifact> exported;
    for (const ArtifactOutcome& outcome : audited)
        exported.push_back(outcome.artifact);
    EXPECT_EQ(VistrelHandoffBuilder::examine(film.root, exported), audited);
}

TEST(Examine, ExaminesACopyOfAWorkspace) {
    WorkspaceMaker maker;
    maker.add("poster", "a", "1");
    maker.add("poster", "b", "2");
    const TemporaryDirectory copy;
    copy.write("a", "1");
    EXPECT_THAT(descriptionsOf(VistrelHandoffBuilder::examine(copy.path(), maker.snapshot.project.artifacts)),
                ElementsAre("The handoff artifact is sound: a", "The handoff artifact is missing: b"));
}

TEST(Examine, OpensTheRootOnlyForAFile) {
    const FilmArtifact unsafe{.bytes = 0,
                              .contentType = {},
                              .createdAt = {},
                              .kind = "poster",
                              .path = "../a",
                              .sha256 = std::string(emptyDigest),
                              .source = {}};
    EXPECT_THAT(VistrelHandoffBuilder::examine("", {}), ElementsAre());
    EXPECT_THAT(descriptionsOf(VistrelHandoffBuilder::examine("", {&unsafe, 1})),
                ElementsAre("The handoff contains an unsafe artifact path: ../a"));
}

TEST(Examine, ReportsTheErrorsOfTheRoot) {
    WorkspaceMaker maker;
    maker.add("poster", "a", "1");
    const std::vector<FilmArtifact>& artifacts = maker.snapshot.project.artifacts;
    EXPECT_THAT(descriptionsOf(VistrelHandoffBuilder::examine(maker.directory / "nothing", artifacts)),
                ElementsAre("The handoff artifact is missing: a"));
    struct Row {
        const char* sentence;
        std::string root;
    };
    const Row rows[] = {{"an empty root", ""}, {"a NUL byte in the root", std::string("a\0b", 3)}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        try {
            VistrelHandoffBuilder::examine(row.root, artifacts);
            ADD_FAILURE() << "no exception";
        } catch (const std::filesystem::filesystem_error& error) {
            EXPECT_EQ(error.code(), std::errc::invalid_argument);
            EXPECT_EQ(error.path1().native(), row.root);
        }
    }
}

TEST(Examine, EndsOnAStop) {
    WorkspaceMaker maker;
    maker.add("prompt-log", "a", "1");
    StopSource stop;
    stop.requestStop();
    try {
        VistrelHandoffBuilder::examine(maker.snapshot.root, maker.snapshot.project.artifacts,
                                       {.stop = stop.token()});
        FAIL() << "no exception";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::operation_canceled);
    }
}

} // namespace
} // namespace kinovane::test
