// SPDX-License-Identifier: Apache-2.0

#include <algorithm>

#include <gtest/gtest.h>

#include "scenario/production.hpp"
#include "support/task_failure.hpp"

namespace kinovane::test {
namespace {

constexpr const char* later = "2026-03-02T09:00:00Z";

const FilmArtifact& artifactAt(const FilmWorkspaceSnapshot& film, const std::string& path) {
    const auto found = std::ranges::find(film.project.artifacts, path, &FilmArtifact::path);
    if (found == film.project.artifacts.end())
        throw std::runtime_error("no artifact " + path);
    return *found;
}

bool has(const FilmWorkspaceSnapshot& film, const std::string& path) {
    return std::ranges::find(film.project.artifacts, path, &FilmArtifact::path) !=
           film.project.artifacts.end();
}

std::string lineOf(const FilmWorkspaceSnapshot& film, std::size_t shot) {
    return film.productionPlan->shots.at(shot).dialogue.at(0).text;
}

TEST(Review, AddsANoteAboutEveryShotWithDialogue) {
    const Production production;
    production.passUpTo("frames");
    const FilmWorkspaceSnapshot before = production.checked();
    {
        const Variable clock("FILM_CLOCK", later);
        EXPECT_EQ(production.film.review(production.run).get().stdout,
                  "The film has been reviewed; 2 new notes are waiting.\n");
    }
    const FilmWorkspaceSnapshot after = production.checked();
    const auto note = [&](std::size_t shot) {
        return FilmReviewRequest{before.project.shots[shot].id,
                                 "Stay on the face until the line “" + lineOf(before, shot) + "” is over.",
                                 "queued",
                                 later,
                                 std::nullopt,
                                 std::nullopt};
    };
    EXPECT_EQ(after.project.reviewRequests, (std::vector<FilmReviewRequest>{note(0), note(2)}));
    EXPECT_EQ(after.project.updatedAt, later);
    EXPECT_EQ(after.project.approvals, before.project.approvals);
    EXPECT_TRUE(has(after, "review/technical-review-1.json"));
    EXPECT_TRUE(has(after, "review/creative-review-1.json"));

    EXPECT_EQ(production.film.review(production.run).get().stdout,
              "The film has been reviewed; 0 new notes are waiting.\n");
    EXPECT_EQ(production.checked().project.reviewRequests, after.project.reviewRequests);
}

TEST(Reroll, ArchivesTheTake) {
    const Production production;
    production.passUpTo("delivery");
    const FilmWorkspaceSnapshot before = production.checked();
    {
        const Variable clock("FILM_CLOCK", later);
        EXPECT_EQ(production.film.reroll(production.run, "shot-02", "Slower, and “closer”").get().stdout,
                  "Take 1 of shot-02 has been put aside. Run the film to make the next one.\n");
    }
    const FilmWorkspaceSnapshot film = production.checked();
    for (const auto& [from, to] : {std::pair{"frames/shot-02.png", "takes/shot-02/take-1/frame.png"},
                                   std::pair{"clips/shot-02.mp4", "takes/shot-02/take-1/clip.mp4"}}) {
        SCOPED_TRACE(to);
        EXPECT_FALSE(has(film, from));
        FilmArtifact archived = artifactAt(before, from);
        archived.kind = "archived-take";
        archived.path = to;
        EXPECT_EQ(artifactAt(film, to), archived);
    }
    // Files made from the take are gone; the others are unchanged.
    for (const char* path :
         {"cuts/rough-cut.mp4", "masters/final-master.mp4", "delivery/delivery-master.mp4"})
        EXPECT_FALSE(has(film, path)) << path;
    for (const char* path : {"frames/shot-01.png", "clips/shot-03.mp4", "score/score.wav"})
        EXPECT_EQ(artifactAt(film, path), artifactAt(before, path));
    EXPECT_EQ(film.playableCutURL(), std::nullopt);

    EXPECT_EQ(film.project.phase, "plan");
    EXPECT_EQ(film.project.status, "in-production");
    EXPECT_EQ(film.project.shots[1], (FilmShotState{"shot-02", "new-take", 1, 0}));
    EXPECT_EQ(film.project.reviewRequests,
              (std::vector<FilmReviewRequest>{
                  {"shot-02", "Slower, and “closer”", "queued", later, std::nullopt, 1}}));
    EXPECT_EQ(film.project.issues,
              (std::vector<FilmIssue>{
                  {"new-take-shot-02", "The shot shot-02 waits for a new take.", true, later}}));
    FilmProof sounds;
    sounds.dialogue = sounds.sound = sounds.captions = true;
    EXPECT_EQ(film.project.proof, sounds);
    EXPECT_EQ(film.project.approvals.at("frames"), before.project.approvals.at("frames"));
    EXPECT_EQ(film.project.approvals.at("rough-cut").status, "pending");
    EXPECT_EQ(film.project.approvals.at("delivery").status, "pending");

    const std::string run = production.run.string();
    EXPECT_EQ(errorOf(production.film.reroll(run, "shot-02", "Again")),
              production.refusal({"reroll", run, "--shot", "shot-02", "--note", "Again"},
                                 "The shot \"shot-02\" is waiting for a new take already.\n"));
    EXPECT_EQ(production.checked(), film);
}

TEST(Reroll, MakesAnotherTakeInTheNextRun) {
    const Production production;
    production.passUpTo("delivery");
    const FilmWorkspaceSnapshot first = production.checked();
    production.film.reroll(production.run, "shot-02", "Slower").get();
    {
        const Variable clock("FILM_CLOCK", later);
        EXPECT_EQ(production.film.advance(production.run).get().stdout,
                  R"({"ok":true,"phases":["frames","clips","sound","rough-cut"],)"
                  R"("status":"waiting-for-approval","nextGate":"rough-cut"})"
                  "\n");
    }
    const FilmWorkspaceSnapshot film = production.checked();
    EXPECT_EQ(film.project.shots[1], (FilmShotState{"shot-02", "accepted", 2, 0}));
    EXPECT_EQ(film.productionPlan->shots[1].take, 2);
    EXPECT_EQ(film.project.shots[0], first.project.shots[0]);
    for (const char* path : {"frames/shot-02.png", "clips/shot-02.mp4", "cuts/rough-cut.mp4"}) {
        EXPECT_NE(artifactAt(film, path).sha256, artifactAt(first, path).sha256) << path;
        EXPECT_EQ(artifactAt(film, path).createdAt, later) << path;
    }
    EXPECT_EQ(artifactAt(film, "takes/shot-02/take-1/clip.mp4").sha256,
              artifactAt(first, "clips/shot-02.mp4").sha256);
    EXPECT_EQ(artifactAt(film, "clips/shot-01.mp4"), artifactAt(first, "clips/shot-01.mp4"));
    EXPECT_EQ(film.project.issues, std::vector<FilmIssue>{});
    EXPECT_EQ(film.project.reviewRequests, (std::vector<FilmReviewRequest>{{"shot-02", "Slower", "applied",
                                                                            Production::planned, later, 1}}));

    production.pass("rough-cut");
    production.pass("delivery");
    const FilmWorkspaceSnapshot delivered = production.checked();
    EXPECT_EQ(delivered.project.proof.completedCount(), 10);
    EXPECT_EQ(delivered.project.status, "completed");

    // A third take keeps both earlier ones.
    production.film.reroll(production.run, "shot-02", "Slower still").get();
    production.film.advance(production.run).get();
    const FilmWorkspaceSnapshot third = production.checked();
    EXPECT_EQ(third.project.shots[1].take, 3);
    EXPECT_EQ(artifactAt(third, "takes/shot-02/take-2/frame.png").sha256,
              artifactAt(film, "frames/shot-02.png").sha256);
    EXPECT_EQ(artifactAt(third, "takes/shot-02/take-1/frame.png").sha256,
              artifactAt(first, "frames/shot-02.png").sha256);
}

} // namespace
} // namespace kinovane::test
