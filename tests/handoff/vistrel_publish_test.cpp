// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"
#include "support/task_failure.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

/// The client runs the simulator of Vistrel on a manifest of the sample film.
class VistrelPublish : public testing::Test {
  protected:
    VistrelPublish() {
        const FilmWorkspaceSnapshot snapshot = FilmProjectLoader::load(sampleFilm() / "run.json");
        VistrelHandoffBuilder::write(VistrelHandoffBuilder::build(snapshot, sampleFilm()), manifest_);
    }

    const TemporaryDirectory directory_;
    const fs::path manifest_ = directory_ / "the film/hand off.json";
    const Variable library_{"VISTREL_LIBRARY", directory_ / "library"};
    const VistrelClient client_{programPath("vistrel")};
};

TEST_F(VistrelPublish, ValidatesThenImports) {
    const VistrelImportReceipt validated = client_.validate(manifest_).get();
    EXPECT_TRUE(validated.ok);
    EXPECT_EQ(validated.importedScenes, 3);
    EXPECT_EQ(validated.importedShots, 7);
    EXPECT_EQ(validated.importedAssets, 59);
    EXPECT_FALSE(fs::exists(directory_ / "library"));

    EXPECT_EQ(client_.import(manifest_).get(), validated);
    EXPECT_EQ(contentOf(directory_ / "library" / validated.projectId / "manifest.json"),
              contentOf(manifest_));
}

TEST_F(VistrelPublish, ReportsAMisbehavingImporter) {
    const VistrelImportReceipt sample{
        true, "vistrel_sample", "vistrel_sample_episode_1", 2, 3, 5, "vistrel://projects/vistrel_sample"};
    VistrelImportReceipt refusal = sample;
    refusal.ok = false;
    {
        const Variable misbehaviour("VISTREL_MISBEHAVE", "not-ok");
        EXPECT_EQ(client_.validate(manifest_).get(), refusal);
    }
    {
        const Variable misbehaviour("VISTREL_MISBEHAVE", "flood");
        EXPECT_EQ(client_.import(manifest_).get(), sample);
    }
    struct Row {
        std::string misbehaviour;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"not-json", "Film command returned invalid JSON: line 1, column 1: this is not valid JSON"},
        {"camel-case", "Film command returned invalid JSON: project_id is missing"},
        {"noise", "Film command returned invalid JSON: line 1, column 2: this is not valid JSON"},
        {"exit-3", "Film command exited 3."},
        {"killed", "Film command exited 9."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.misbehaviour);
        const Variable misbehaviour("VISTREL_MISBEHAVE", row.misbehaviour);
        EXPECT_EQ(errorOf(client_.validate(manifest_)).errorDescription(), row.expected);
        EXPECT_EQ(errorOf(client_.import(manifest_)).errorDescription(), row.expected);
    }
}

TEST_F(VistrelPublish, ReportsTheWholeFailedCommand) {
    const Variable misbehaviour("VISTREL_MISBEHAVE", "exit-3");
    const FilmToolError error = errorOf(client_.import(manifest_));
    EXPECT_EQ(error, FilmToolError(FilmToolError::commandFailed{
                         {programPath("vistrel"),
                          {"production", "import-film", manifest_, "--output", "json"},
                          3,
                          "",
                          ""}}));
}

TEST_F(VistrelPublish, ReportsTheErrorTextOfTheImporter) {
    EXPECT_EQ(errorOf(client_.validate("/nowhere/h.json")).errorDescription(),
              "cannot open \"/nowhere/h.json\": No such file or directory\n");
}

} // namespace
} // namespace kinovane::test
