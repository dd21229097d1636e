// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "scenario/production.hpp"
#include "support/sample_film.hpp"
#include "support/task_failure.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

struct Gate {
    std::string name;
    std::string reply; ///< Of the run after its approval.
    std::string phase, status;
    int proven;
    std::size_t artifacts;
    const char* cut; ///< The playable cut after that run.
};

const std::vector<Gate>& gateRows() {
    static const std::vector<Gate> all{
        {"plan", R"({"ok":true,"phases":["frames"],"status":"waiting-for-approval","nextGate":"frames"})",
         "frames", "waiting-for-approval", 1, 7, nullptr},
        {"frames",
         R"({"ok":true,"phases":["clips","sound","rough-cut"],)"
         R"("status":"waiting-for-approval","nextGate":"rough-cut"})",
         "rough-cut", "waiting-for-approval", 7, 29, "cuts/rough-cut.mp4"},
        {"rough-cut",
         R"({"ok":true,"phases":["delivery"],"status":"waiting-for-approval","nextGate":"delivery"})",
         "delivery", "waiting-for-approval", 8, 38, "masters/final-master.mp4"},
        {"delivery", R"({"ok":true,"phases":["done"],"status":"completed"})", "done", "completed", 10, 42,
         "delivery/delivery-master.mp4"},
    };
    return all;
}

/// The gate stops the film until it is approved; nothing changes before.
void expectStopAndGo(const Production& production, const Gate& gate) {
    const std::string run = production.run.string();
    const FilmWorkspaceSnapshot before = production.checked();
    EXPECT_EQ(production.film.status(run).get().nextGate, gate.name);
    EXPECT_EQ(before.project.approvals.at(gate.name).status, "requested");
    const FilmToolError error = errorOf(production.film.advance(run));
    EXPECT_EQ(error, production.refusal({"run", run}, "The gate \"" + gate.name + "\" is not approved.\n"));
    EXPECT_EQ(error.errorDescription(), "The gate \"" + gate.name + "\" is not approved.\n");
    EXPECT_EQ(production.checked(), before);

    EXPECT_EQ(production.pass(gate.name), gate.reply + "\n");
    const FilmWorkspaceSnapshot film = production.checked();
    EXPECT_EQ(film.project.phase, gate.phase);
    EXPECT_EQ(film.project.status, gate.status);
    EXPECT_EQ(film.project.proof.completedCount(), gate.proven);
    EXPECT_EQ(film.project.artifacts.size(), gate.artifacts);
    EXPECT_EQ(film.playableCutURL(), gate.cut ? std::optional(film.root / gate.cut) : std::nullopt);

    // Approving the plan answers its open questions.
    EXPECT_EQ(film.project.brief.openQuestions, std::vector<std::string>{});
    FilmApproval approval = before.project.approvals.at(gate.name);
    approval.status = "approved";
    approval.approvedAt = Production::planned;
    approval.approvedBy = "Irène";
    approval.note = "fine, “go”";
    EXPECT_EQ(film.project.approvals.at(gate.name), approval);
    EXPECT_EQ(errorOf(production.film.approve(run, gate.name, "n", "m")),
              production.refusal({"approve", run, "--gate", gate.name, "--note", "n", "--approved-by", "m"},
                                 "The gate \"" + gate.name + "\" is approved already.\n"));
}

TEST(WholeFilm, GoesFromGateToGate) {
    const Production production;
    for (const Gate& gate : gateRows()) {
        SCOPED_TRACE(gate.name);
        expectStopAndGo(production, gate);
    }
    // A finished film stays unchanged.
    const FilmWorkspaceSnapshot film = production.checked();
    EXPECT_EQ(production.film.advance(production.run).get().stdout,
              R"({"ok":true,"phases":[],"status":"completed"})"
              "\n");
    EXPECT_EQ(production.checked(), film);
}

TEST(WholeFilm, IsFinishedInOneRunWhenApprovedAhead) {
    const Production production;
    for (const std::string& gate : gates())
        production.approve(gate);
    EXPECT_EQ(production.film.advance(production.run).get().stdout,
              R"({"ok":true,"phases":["frames","clips","sound","rough-cut","delivery","done"],)"
              R"("status":"completed"})"
              "\n");
    EXPECT_EQ(production.checked().project.proof.completedCount(), 10);
}

TEST(WholeFilm, ReachesVistrelAfterReviewRerollAndRecovery) {
    const Production production;
    const FilmToolClient& film = production.film;
    const Variable library("VISTREL_LIBRARY", (production.directory / "library").string());
    expectStopAndGo(production, gateRows()[0]);
    expectStopAndGo(production, gateRows()[1]);

    // The director sees the rough cut, and wants another take; the machine stops while it is made.
    film.review(production.run).get();
    film.reroll(production.run, "shot-02", "The lamp is too bright").get();
    const FilmWorkspaceSnapshot waiting = production.checked();
    production.cutOff();
    film.recover(production.run).get();
    EXPECT_EQ(production.checked(), waiting);
    film.advance(production.run).get();
    EXPECT_EQ(production.checked().project.phase, "rough-cut");
    production.pass("rough-cut");
    production.pass("delivery");

    const FilmWorkspaceSnapshot finished = production.checked();
    EXPECT_EQ(finished.project.proof.completedCount(), 10);
    EXPECT_EQ(finished.project.shots[1].take, 2);
    const fs::path manifest = production.directory / "handoff.json";
    HandoffBuildOptions options;
    options.workers = 2;
    const VistrelHandoff handoff =
        VistrelHandoffBuilder::build(finished, finished.root.string(), Production::planned, options);
    const std::string digest = VistrelHandoffBuilder::write(handoff, manifest);
    EXPECT_EQ(digest, VistrelHandoffBuilder::sha256(manifest));

    const VistrelClient vistrel(programPath("vistrel"));
    const VistrelImportReceipt receipt = vistrel.validate(manifest).get();
    EXPECT_FALSE(fs::exists(production.directory / "library"));
    EXPECT_EQ(vistrel.import(manifest).get(), receipt);
    EXPECT_TRUE(receipt.ok);
    EXPECT_EQ(receipt.importedShots, 3);
    const fs::path project = production.directory / "library" / receipt.projectId;
    EXPECT_EQ(contentOf(project / "assets/clips/shot-02.mp4"),
              contentOf(finished.root / "clips/shot-02.mp4"));
    // The archived take is not handed over.
    EXPECT_TRUE(fs::exists(finished.root / "takes/shot-02/take-1/clip.mp4"));
    EXPECT_FALSE(fs::exists(project / "assets/takes"));
}

} // namespace
} // namespace kinovane::test
