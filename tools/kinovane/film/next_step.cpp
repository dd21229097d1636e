// SPDX-License-Identifier: Apache-2.0

#include "film/next_step.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include "film/gates.hpp"
#include "film/workspace_summary.hpp"
#include "terminal/human_text.hpp"

namespace kinovane::tool {

namespace {

constexpr std::string_view next = "Next";
constexpr std::string_view alternative = "Or";

std::string inQuotes(const std::string& text) { return "“" + text + "”"; }

/// The text as a sentence.
std::string sentence(std::string text) {
    if (text.empty() || std::string_view(".!?").find(text.back()) == std::string_view::npos)
        text += '.';
    return text;
}

const FilmReviewRequest* requestForNewTake(const std::vector<FilmReviewRequest>& waiting) {
    const auto found = std::ranges::find_if(
        waiting, [](const FilmReviewRequest& request) { return request.archivedTake.has_value(); });
    return found == waiting.end() ? nullptr : &*found;
}

std::optional<NextStep> blocked(const FilmProject& project, const std::vector<FilmReviewRequest>& waiting) {
    const auto issue = std::ranges::find_if(project.issues, &FilmIssue::blocking);
    if (issue == project.issues.end())
        return std::nullopt;
    NextStep step{sentence(issue->message.empty() ? issue->code : issue->message), {{next, "recover"}}};
    if (requestForNewTake(waiting) != nullptr)
        step.commands = {{next, "advance"}, {alternative, "recover"}};
    return step;
}

/// Whether another job did what this one failed to do. The order of the jobs says nothing about it.
bool wasRepeated(const FilmJob& failed, const std::vector<FilmJob>& jobs) {
    return std::ranges::any_of(jobs, [&](const FilmJob& job) {
        return job.status == "completed" && job.kind == failed.kind && job.shotId == failed.shotId;
    });
}

std::optional<NextStep> failedJob(const FilmProject& project) {
    const std::vector<FilmJob> failed = failedJobs(project);
    if (failed.empty())
        return std::nullopt;
    const FilmJob& job = failed.front();
    std::string text = "The job " + job.id + " failed";
    if (failed.size() > 1)
        text = countText(failed.size(), "job", "jobs") + " failed; the first is " + job.id;
    return NextStep{sentence(job.error ? text + ": " + *job.error : text), {{next, "recover"}}};
}

std::string questionsText(const std::vector<std::string>& questions) {
    if (questions.empty())
        return {};
    std::string text =
        questions.size() == 1 ? "The brief has an open question:" : "The brief has open questions:";
    for (const std::string& question : questions)
        text += " " + inQuotes(question);
    return text;
}

std::optional<NextStep> approval(const FilmProject& project) {
    const std::optional<std::string> gate = waitingGate(project);
    if (!gate)
        return std::nullopt;
    std::string text = "The film waits for the approval of " + inQuotes(*gate);
    if (const auto& summary = project.approvals.at(*gate).summary; summary && !summary->empty())
        text += ": " + *summary;
    text = sentence(std::move(text));
    if (const std::string questions = questionsText(project.brief.openQuestions); !questions.empty())
        text += " " + questions + " Answer in the note (--note).";
    return NextStep{text, {{next, "approve", {*gate}}}};
}

std::string noteText(const FilmReviewRequest& request) {
    return "A review note waits for " + inQuotes(request.shotId) + ": " + sentence(request.note);
}

NextStep production(const FilmProject& project, const std::vector<FilmReviewRequest>& waiting) {
    std::string text = "The production can continue.";
    if (!project.brief.openQuestions.empty())
        text = questionsText(project.brief.openQuestions);
    else if (const FilmReviewRequest* request = requestForNewTake(waiting))
        text =
            sentence("The shot " + inQuotes(request->shotId) + " waits for another take: " + request->note);
    else if (!waiting.empty())
        text = noteText(waiting.front());
    return {text, {{next, "advance"}}};
}

NextStep finished(const std::vector<FilmReviewRequest>& waiting) {
    const FilmCommand publish{alternative, "publish"};
    if (const FilmReviewRequest* request = requestForNewTake(waiting))
        return {
            sentence("The shot " + inQuotes(request->shotId) + " waits for another take: " + request->note),
            {{next, "advance"}, publish}};
    if (!waiting.empty()) {
        const FilmReviewRequest& request = waiting.front();
        return {noteText(request), {{next, "reroll", {request.shotId}, {"--note", request.note}}, publish}};
    }
    return {"The film is complete.", {{next, "verify"}, {"Then", "publish"}}};
}

} // namespace

std::vector<FilmJob> failedJobs(const FilmProject& project) {
    std::vector<FilmJob> failed;
    for (const FilmJob& job : project.jobs)
        if (job.status == "failed" && !wasRepeated(job, project.jobs))
            failed.push_back(job);
    return failed;
}

NextStep nextStep(const FilmWorkspaceSnapshot& film) {
    const FilmProject& project = film.project;
    const std::vector<FilmReviewRequest> waiting = waitingRequestsOf(project);
    if (std::optional<NextStep> step = blocked(project, waiting))
        return *std::move(step);
    if (std::optional<NextStep> step = failedJob(project))
        return *std::move(step);
    if (std::optional<NextStep> step = approval(project))
        return *std::move(step);
    const bool isComplete = std::ranges::all_of(project.proof.steps(), &FilmProofStep::complete);
    return isComplete ? finished(waiting) : production(project, waiting);
}

} // namespace kinovane::tool
