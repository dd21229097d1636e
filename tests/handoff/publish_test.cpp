// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <kinovane/publish.hpp>

#include "support/sample_film.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

/// The text of the error with which a publish fails.
std::string messageOf(Task<PublishReceipt> task) {
    try {
        (void)task.get();
        return "no error";
    } catch (const std::exception& error) {
        return error.what();
    }
}

/// A publish of the sample film to the simulator of Vistrel.
class Publish : public testing::Test {
  protected:
    Task<PublishReceipt> start(PublishOptions options = {}) {
        return publish(snapshot_, sampleFilm().string(), manifest_, VistrelClient(programPath("vistrel")),
                       std::move(options));
    }

    const TemporaryDirectory directory_;
    const fs::path library_ = directory_ / "library";
    const fs::path manifest_ = directory_ / "out/handoff.json";
    const Variable libraryVariable_{"VISTREL_LIBRARY", library_};
    FilmWorkspaceSnapshot snapshot_ = FilmProjectLoader::load(sampleFilm() / "run.json");
};

TEST_F(Publish, DoesEveryStepInOrder) {
    std::vector<PublishStep> steps;
    std::size_t filesDone = 0;
    PublishOptions options;
    options.onStep = [&](PublishStep step) { steps.push_back(step); };
    options.onProgress = [&](const VerificationProgress& progress) { filesDone = progress.filesDone; };
    const PublishReceipt receipt = start(options).get();
    EXPECT_THAT(steps, ElementsAre(PublishStep::preflight, PublishStep::build, PublishStep::write,
                                   PublishStep::validate, PublishStep::import));
    EXPECT_EQ(filesDone, 59U);
    EXPECT_EQ(receipt.manifest, manifest_);
    EXPECT_EQ(receipt.manifestDigest, VistrelHandoffBuilder::sha256(manifest_));
    EXPECT_TRUE(receipt.validation.ok);
    ASSERT_TRUE(receipt.imported);
    EXPECT_EQ(receipt.imported->importedShots, 7);
    EXPECT_TRUE(fs::exists(library_ / receipt.imported->projectId / "manifest.json"));
}

TEST_F(Publish, EndsAfterTheDryRunWhenAsked) {
    PublishOptions options;
    options.dryRun = true;
    const PublishReceipt receipt = start(options).get();
    EXPECT_TRUE(receipt.validation.ok);
    EXPECT_FALSE(receipt.imported);
    EXPECT_FALSE(fs::exists(library_));
}

TEST_F(Publish, IsBlockedByPreflightBeforeAnyFileIsTouched) {
    const FilmArtifact poster = snapshot_.latestArtifact("poster").value();
    snapshot_.project.artifacts.push_back(poster);
    EXPECT_EQ(messageOf(start()),
              "The film cannot be published.\nThe project records this file twice: " + poster.path);
    EXPECT_FALSE(fs::exists(manifest_));
}

TEST_F(Publish, FailsWithoutAnImporterBeforeAnyFileIsTouched) {
    struct Row {
        std::string_view sentence;
        std::string importer;
        bool dryRun;
        std::string expected;
    };
    const std::string textFile = (sampleFilm() / "run.json").string();
    const std::vector<Row> rows{
        {"no program of this name", "no-such-vistrel", false,
         "Required executable not found: no-such-vistrel"},
        {"no program at this path, for a dry run", "/no/such/vistrel", true,
         "Required executable not found: /no/such/vistrel"},
        {"not a program", textFile, false, "Required executable not found: " + textFile},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        std::vector<PublishStep> steps;
        PublishOptions options;
        options.dryRun = row.dryRun;
        options.onStep = [&](PublishStep step) { steps.push_back(step); };
        EXPECT_EQ(messageOf(publish(snapshot_, sampleFilm().string(), manifest_, VistrelClient(row.importer),
                                    options)),
                  row.expected);
        EXPECT_THAT(steps, ElementsAre(PublishStep::preflight));
        EXPECT_FALSE(fs::exists(manifest_));
    }
}

TEST_F(Publish, IsBlockedByPreflightBeforeTheImporterIsLookedUp) {
    snapshot_.productionPlan.reset();
    EXPECT_THAT(
        messageOf(publish(snapshot_, sampleFilm().string(), manifest_, VistrelClient("no-such-vistrel"))),
        testing::StartsWith("The film cannot be published.\n"));
}

TEST_F(Publish, IsBlockedByAWarningWhenAsked) {
    snapshot_.project.approvals.begin()->second.status = "pending";
    const std::string gate = snapshot_.project.approvals.begin()->first;
    PublishOptions options;
    EXPECT_EQ(start(options).get().warnings.size(), 1U);
    options.refuseWarnings = true;
    EXPECT_EQ(messageOf(start(options)), "The film cannot be published.\nThe gate \"" + gate +
                                             "\" is not approved; its status is \"pending\".");
}

TEST_F(Publish, CannotOverlookARefusal) {
    {
        const Variable how("VISTREL_MISBEHAVE", "not-ok");
        EXPECT_EQ(messageOf(start()), "Vistrel refused the film in the dry run.");
    }
    const Variable how("VISTREL_MISBEHAVE", "exit");
    EXPECT_THAT(messageOf(start()), testing::HasSubstr("Vistrel refused the film in the dry run: "));
    EXPECT_FALSE(fs::exists(library_));
}

TEST_F(Publish, StopsBeforeTheNextStep) {
    StopSource source;
    PublishOptions options;
    options.stop = source.token();
    options.onStep = [&](PublishStep step) {
        if (step == PublishStep::write)
            source.requestStop();
    };
    EXPECT_THROW(start(options).get(), std::system_error);
    EXPECT_FALSE(fs::exists(library_));
}

TEST_F(Publish, EndsWithWhatACallbackThrows) {
    PublishOptions options;
    options.onStep = [](PublishStep) { throw std::runtime_error("enough"); };
    EXPECT_EQ(messageOf(start(options)), "enough");
}

} // namespace
} // namespace kinovane::test
