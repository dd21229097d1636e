// SPDX-License-Identifier: Apache-2.0

#include "film/next_step.hpp"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "film/next_step_text.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::tool {

namespace {

FilmProof completeProof() { return {true, true, true, true, true, true, true, true, true, true}; }

FilmReviewRequest requestOf(const std::string& shot, std::optional<std::int64_t> archivedTake = {}) {
    return {shot, "Darker", "queued", "2026-03-01", {}, archivedTake};
}

FilmJob jobOf(const std::string& id, const std::string& status, std::optional<std::string> error = {}) {
    return {id, "clip", status, "s1", std::move(error)};
}

struct Row {
    const char* sentence;
    std::function<void(FilmProject&)> change;
    NextStep expected;
};

TEST(NextStep, IsTheFirstThatTheDocumentsAskFor) {
    const FilmCommand advance{"Next", "advance"};
    const FilmCommand recover{"Next", "recover"};
    const FilmCommand publish{"Or", "publish"};
    const std::vector<Row> rows{
        {"a film in production continues", [](FilmProject&) {}, {"The production can continue.", {advance}}},
        {"a blocking issue comes before everything else",
         [](FilmProject& project) {
             project.proof = completeProof();
             project.approvals["plan"] = {"requested", {}, {}, {}, {}, {}};
             project.issues = {{"quiet", "The door is silent.", false, {}},
                               {"key", "No key frame", true, {}}};
             project.jobs = {jobOf("j1", "failed")};
         },
         {"No key frame.", {recover}}},
        {"an issue without a message is named by its code",
         [](FilmProject& project) { project.issues = {{"no-key", "", true, {}}}; },
         {"no-key.", {recover}}},
        {"an issue that does not block is no step",
         [](FilmProject& project) { project.issues = {{"quiet", "The door is silent.", false, {}}}; },
         {"The production can continue.", {advance}}},
        {"a blocking issue about a take that was put aside is solved by the next take",
         [](FilmProject& project) {
             project.issues = {{"new-take-s1", "The shot s1 waits for a new take.", true, {}}};
             project.reviewRequests = {requestOf("s1", 1)};
         },
         {"The shot s1 waits for a new take.", {advance, {"Or", "recover"}}}},
        {"a failed job comes before a gate",
         [](FilmProject& project) {
             project.jobs = {jobOf("j1", "failed", "no memory")};
             project.approvals["plan"] = {"requested", {}, {}, {}, {}, {}};
         },
         {"The job j1 failed: no memory.", {recover}}},
        {"several failed jobs are counted",
         [](FilmProject& project) { project.jobs = {jobOf("j1", "failed"), jobOf("j2", "failed")}; },
         {"2 jobs failed; the first is j1.", {recover}}},
        {"a failed job that was repeated is no step",
         [](FilmProject& project) { project.jobs = {jobOf("j2", "completed"), jobOf("j1", "failed")}; },
         {"The production can continue.", {advance}}},
        {"a gate waits",
         [](FilmProject& project) {
             project.approvals["rough-cut"] = {"requested", "All shots are in place", {}, {}, {}, {}};
         },
         {"The film waits for the approval of “rough-cut”: All shots are in place.",
          {{"Next", "approve", {"rough-cut"}}}}},
        {"a question can be answered with an approval",
         [](FilmProject& project) {
             project.approvals["plan"] = {"requested", {}, {}, {}, {}, {}};
             project.brief.openQuestions = {"Who sees it?", "When?"};
         },
         {"The film waits for the approval of “plan”. The brief has open questions: “Who sees it?” “When?” "
          "Answer in the note (--note).",
          {{"Next", "approve", {"plan"}}}}},
        {"a question is open",
         [](FilmProject& project) { project.brief.openQuestions = {"Who sees it?"}; },
         {"The brief has an open question: “Who sees it?”", {advance}}},
        {"a question of a complete film is no step",
         [](FilmProject& project) {
             project.proof = completeProof();
             project.brief.openQuestions = {"Who sees it?"};
         },
         {"The film is complete.", {{"Next", "verify"}, {"Then", "publish"}}}},
        {"a shot waits for another take",
         [](FilmProject& project) { project.reviewRequests = {requestOf("s2"), requestOf("s1", 1)}; },
         {"The shot “s1” waits for another take: Darker.", {advance}}},
        {"a note waits during the production",
         [](FilmProject& project) { project.reviewRequests = {requestOf("s1")}; },
         {"A review note waits for “s1”: Darker.", {advance}}},
        {"a complete film waits for another take",
         [](FilmProject& project) {
             project.proof = completeProof();
             project.reviewRequests = {requestOf("s1", 2)};
         },
         {"The shot “s1” waits for another take: Darker.", {advance, publish}}},
        {"a note on a complete film needs another take",
         [](FilmProject& project) {
             project.proof = completeProof();
             project.reviewRequests = {requestOf("s1")};
         },
         {"A review note waits for “s1”: Darker.",
          {{"Next", "reroll", {"s1"}, {"--note", "Darker"}}, publish}}},
        {"a note that was applied or dismissed does not wait",
         [](FilmProject& project) {
             project.proof = completeProof();
             FilmReviewRequest applied = requestOf("s1", 1);
             applied.appliedAt = "2026-03-02";
             FilmReviewRequest dismissed = requestOf("s1");
             dismissed.status = "dismissed";
             project.reviewRequests = {applied, dismissed};
         },
         {"The film is complete.", {{"Next", "verify"}, {"Then", "publish"}}}},
    };
    for (const auto& [sentence, change, expected] : rows) {
        FilmWorkspaceSnapshot film;
        change(film.project);
        const NextStep actual = nextStep(film);
        EXPECT_EQ(actual, expected) << sentence << ": " << nextStepText(actual, "film", 100);
    }
}

TEST(NextStep, IsShownAsACommandToType) {
    struct {
        const char* sentence;
        FilmCommand command;
        const char* film;
        const char* expected;
    } const rows[]{
        {"a film elsewhere", {"Next", "advance"}, "films/ferry", "kinovane advance films/ferry"},
        {"a film in the current folder", {"Next", "advance"}, ".", "kinovane advance"},
        {"the run manifest of the current folder", {"Next", "advance"}, "run.json", "kinovane advance"},
        {"a run manifest", {"Next", "advance"}, "films/ferry/run.json", "kinovane advance films/ferry"},
        {"a run manifest with another name",
         {"Next", "advance"},
         "ferry/r.json",
         "kinovane advance ferry/r.json"},
        {"a path with blanks", {"Next", "verify"}, "my film", "kinovane verify 'my film'"},
        {"a path like an option", {"Next", "verify"}, "-film", "kinovane verify ./-film"},
        {"a gate with blanks", {"Next", "approve", {"rough cut"}}, "f", "kinovane approve 'rough cut' f"},
        {"a gate like an option", {"Next", "approve", {"-x"}}, "f", "kinovane approve -- -x f"},
        {"a gate with an escape", {"Next", "approve", {"\x1b[m"}}, "f", "kinovane approve $'\\x1b[m' f"},
        {"an option",
         {"Next", "reroll", {"s1"}, {"--note", "It's"}},
         "f",
         "kinovane reroll s1 f --note 'It'\\''s'"},
        {"an option and a shot like one",
         {"Next", "reroll", {"-s"}, {"--note", "n"}},
         "f",
         "kinovane reroll --note n -- -s f"},
    };
    for (const auto& [sentence, command, film, expected] : rows)
        EXPECT_EQ(shellLine(commandLine(command, film)), expected) << sentence;
}

TEST(NextStep, IsWrappedAndCut) {
    const NextStep step{"One two three.", {{"Next", "advance"}, {"Or", "recover"}}};
    EXPECT_EQ(nextStepText(step, "f", 10),
              "One two\nthree.\nNext: \xef\xb7\x90kinovane advance f\xef\xb7\x95\n"
              "Or: \xef\xb7\x90kinovane recover f\xef\xb7\x95\n");
    const std::string text = nextStepText({std::string(1'000'000, 'x'), {{"Next", "advance"}}}, "f", 80);
    EXPECT_LT(text.size(), 1000U);
}

TEST(NextStep, IsAnObjectInJSON) {
    EXPECT_EQ(boost::json::serialize(nextStepJSON({"Why.", {{"Next", "approve", {"a b"}}}}, "f g")),
              R"({"reason":"Why.","commands":[["kinovane","approve","a b","f g"]]})");
}

} // namespace

} // namespace kinovane::tool
