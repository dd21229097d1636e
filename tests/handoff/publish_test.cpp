// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <kinovane/publish.hpp>

#include "support/forked_process.hpp"
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

TEST_F(Publish, GivesTheImporterAnEmptyStandardInput) {
    const fs::path importer = directory_.write("importer", R"sh(#!/bin/sh
[ -z "$(cat)" ] || exit 9
echo '{"ok":true,"project_id":"p"}'
)sh");
    fs::permissions(importer, fs::perms::owner_all);
    const std::string input = directory_.write("input", "words of the user").string();
    EXPECT_EQ(inForkedProcess([&] {
                  ::close(0);
                  if (::open(input.c_str(), O_RDONLY) != 0)
                      return std::string("the input was not opened");
                  return publish(snapshot_, sampleFilm().string(), manifest_,
                                 VistrelClient(importer.string()))
                      .get()
                      .validation.projectId;
              }),
              "p");
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

TEST_F(Publish, ReportsTheReceiptAfterEveryStep) {
    std::vector<std::pair<PublishStep, PublishReceipt>> done;
    PublishOptions options;
    options.onStepDone = [&](PublishStep step, const PublishReceipt& receipt) {
        done.emplace_back(step, receipt);
    };
    const PublishReceipt receipt = start(options).get();
    PublishReceipt expected;
    expected.manifest = manifest_;
    expected.warnings = receipt.warnings;
    std::vector<std::pair<PublishStep, PublishReceipt>> rows{{PublishStep::preflight, expected},
                                                             {PublishStep::build, expected}};
    expected.manifestDigest = receipt.manifestDigest;
    rows.emplace_back(PublishStep::write, expected);
    expected.validation = receipt.validation;
    rows.emplace_back(PublishStep::validate, expected);
    rows.emplace_back(PublishStep::import, receipt);
    EXPECT_EQ(done, rows);
}

TEST_F(Publish, ReportsNoStepThatFailedAsDone) {
    const Variable how("VISTREL_MISBEHAVE", "not-ok");
    std::vector<PublishStep> done;
    PublishOptions options;
    options.onStepDone = [&](PublishStep step, const PublishReceipt&) { done.push_back(step); };
    EXPECT_THROW(start(options).get(), PublishError);
    EXPECT_THAT(done, ElementsAre(PublishStep::preflight, PublishStep::build, PublishStep::write));
}

TEST_F(Publish, ReportsAllDamagedFilesWhenAsked) {
    WorkspaceMaker workspace;
    workspace.list("poster", "first.png");
    workspace.add("poster", "sound.png", "a poster");
    workspace.list("poster", "second.png");
    std::vector<std::string> damaged;
    PublishOptions options;
    options.examineAll = true;
    options.onOutcome = [&](const ArtifactOutcome& outcome) {
        if (!outcome.sound())
            damaged.push_back(outcome.artifact.path);
    };
    EXPECT_EQ(messageOf(publish(workspace.snapshot, workspace.directory.path().string(), manifest_,
                                VistrelClient(programPath("vistrel")), options)),
              "The handoff artifact is missing: first.png");
    EXPECT_THAT(damaged, ElementsAre("first.png", "second.png"));
    EXPECT_FALSE(fs::exists(manifest_));
}

TEST_F(Publish, EndsWithWhatACallbackThrows) {
    PublishOptions options;
    options.onStep = [](PublishStep) { throw std::runtime_error("enough"); };
    EXPECT_EQ(messageOf(start(options)), "enough");
}

} // namespace
} // namespace kinovane::test
