// SPDX-License-Identifier: Apache-2.0

#include <algorithm>

#include "changes.hpp"
#include "common/refusal.hpp"
#include "phases.hpp"
#include "shots.hpp"

namespace simulator::film {
namespace {

constexpr const char* queued = "queued";

std::string issueCode(const std::string& shotId) { return "new-take-" + shotId; }

void clearIssue(json::object& project, const std::string& code) {
    json::array& issues = listOf(project, "issues");
    for (auto place = issues.begin(); place != issues.end();)
        place = textOf(asRecord(*place), "code") == code ? issues.erase(place) : place + 1;
}

std::string noteOn(const Shot& shot) {
    return "Stay on the face until the line “" + shot.lines.front().text + "” is over.";
}

/// Each review has a file of its own, so that earlier ones stay what they were.
std::string freshPath(Step& step, const std::string& kind) {
    std::int64_t number = countKind(step.project(), kind) + 1;
    const auto path = [&] { return "review/" + kind + "-" + std::to_string(number) + ".json"; };
    while (step.has(path()))
        ++number;
    return path();
}

} // namespace

void addRequest(json::object& project, const std::string& shotId, const std::string& note,
                const std::string& recordedAt, std::optional<std::int64_t> archivedTake) {
    json::object request{{"shotId", shotId}, {"note", note}, {"status", queued}, {"recordedAt", recordedAt}};
    if (archivedTake) {
        request["archivedTake"] = *archivedTake;
        clearIssue(project, issueCode(shotId));
        listOf(project, "issues")
            .emplace_back(json::object{{"code", issueCode(shotId)},
                                       {"message", "The shot " + shotId + " waits for a new take."},
                                       {"blocking", true},
                                       {"recordedAt", recordedAt}});
    }
    listOf(project, "reviewRequests").emplace_back(std::move(request));
}

bool isRequested(const json::object& project, const std::string& shotId, const std::string& note) {
    return std::ranges::any_of(listOf(project, "reviewRequests"), [&](const json::value& value) {
        const json::object& request = asRecord(value);
        return textOf(request, "shotId") == shotId && textOf(request, "note") == note &&
               textOf(request, "status") == queued;
    });
}

void applyRequests(json::object& project, const std::string& shotId, const std::string& appliedAt) {
    for (json::value& value : listOf(project, "reviewRequests")) {
        json::object& request = asRecord(value);
        if (textOf(request, "shotId") == shotId && textOf(request, "status") == queued) {
            request["status"] = "applied";
            request["appliedAt"] = appliedAt;
        }
    }
    clearIssue(project, issueCode(shotId));
}

void makeReviews(Step& step) {
    json::array measured;
    json::array remarks;
    for (const Shot& shot : shotsOf(step.project(), step.plan())) {
        measured.emplace_back(json::object{{"shotId", shot.id},
                                           {"take", shot.take},
                                           {"durationMilliseconds", shot.milliseconds},
                                           {"hasClip", step.has(shot.clipPath())}});
        if (!shot.lines.empty())
            remarks.emplace_back(json::object{{"shotId", shot.id}, {"remark", noteOn(shot)}});
    }
    step.makeJson("technical-review", freshPath(step, "technical-review"), "simulator-vision",
                  {{"reviewedAt", step.startedAt()}, {"shots", std::move(measured)}});
    step.makeJson("creative-review", freshPath(step, "creative-review"), "simulator-vision",
                  {{"reviewedAt", step.startedAt()}, {"remarks", std::move(remarks)}});
}

std::string review(Workspace& workspace) {
    expectNoJournal(workspace);
    phaseAfter(textOf(workspace.project(), "phase"));
    if (latestPath(workspace.project(), "shot-clip").empty())
        throw Refusal("There are no clips to review yet.");
    Step step(workspace, "review");
    makeReviews(step);
    std::size_t requests = 0;
    for (const Shot& shot : shotsOf(step.project(), step.plan())) {
        if (shot.lines.empty() || isRequested(step.project(), shot.id, noteOn(shot)))
            continue;
        addRequest(step.project(), shot.id, noteOn(shot), step.startedAt(), std::nullopt);
        ++requests;
    }
    step.commit();
    return "The film has been reviewed; " + std::to_string(requests) + " new notes are waiting.";
}

} // namespace simulator::film
