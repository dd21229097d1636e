// SPDX-License-Identifier: Apache-2.0

#include "commands/inspect.hpp"

#include <string>
#include <utility>
#include <vector>

#include <kinovane/workspace.hpp>

#include "terminal/human_text.hpp"
#include "json/json_text.hpp"
#include "session/output.hpp"
#include "terminal/text_table.hpp"
#include "film/workspace_summary.hpp"

namespace kinovane::tool {

namespace {

using enum TextTable::Alignment;

const char* presence(bool present) { return present ? "present" : "not there yet"; }

std::string proofText(const FilmProof& proof, const WorkspaceSummary& summary) {
    std::string text = std::to_string(proof.completedCount()) + " of 10 steps";
    const char* separator = "; missing: ";
    for (const ProofStep& step : summary.missingSteps) {
        text += separator + std::string(step.name);
        separator = ", ";
    }
    return text;
}

std::string shotsText(const FilmWorkspaceSnapshot& workspace, const WorkspaceSummary& summary) {
    const std::size_t count = workspace.project.shots.size();
    std::string text = std::to_string(count);
    if (summary.shotsWithoutStatus == 0 && summary.shotsByStatus.size() == 1 && count > 1) {
        text += ", all " + plainText(summary.shotsByStatus.begin()->first);
    } else {
        const char* separator = ": ";
        for (const auto& [status, shots] : summary.shotsByStatus) {
            text += separator + std::to_string(shots) + " " + plainText(status);
            separator = ", ";
        }
        if (summary.shotsWithoutStatus > 0)
            text += separator + std::to_string(summary.shotsWithoutStatus) + " without a status";
    }
    if (workspace.productionPlan && workspace.productionPlan->shots.size() != count)
        text += " (the plan has " + std::to_string(workspace.productionPlan->shots.size()) + ")";
    return text;
}

std::string factsText(const FilmWorkspaceSnapshot& workspace, const WorkspaceSummary& summary) {
    const FilmProject& project = workspace.project;
    const auto& plan = workspace.productionPlan;
    TextTable facts({left, left});
    facts.add({"Phase", plainText(project.phase)});
    facts.add({"Status", plainText(project.status)});
    facts.add({"Proof", proofText(project.proof, summary)});
    facts.add({"Shots", shotsText(workspace, summary)});
    facts.add(
        {"Running time", plan ? durationText(plan->plannedDurationSeconds) + " planned" : "not planned yet"});
    facts.add({"Treatment", presence(workspace.treatment.has_value())});
    facts.add({"Plan", presence(plan.has_value())});
    facts.addUnwrapped(
        {"Playable cut", summary.playableCut ? plainText(summary.playableCut->string()) : "none yet"});
    return facts.text();
}

std::string section(const std::string& title, const TextTable& table, bool empty) {
    return "\n" + title + "\n" + (empty ? "  none\n" : table.text());
}

std::string approvalsText(const FilmProject& project) {
    TextTable table({left, left, left});
    for (const auto& [gate, approval] : project.approvals)
        table.add({plainText(gate), plainText(approval.status),
                   approval.approvedBy ? "by " + plainText(*approval.approvedBy) : ""});
    return section("Approvals", table, project.approvals.empty());
}

std::string issuesText(const WorkspaceSummary& summary) {
    const bool marked = !summary.issues.empty() && summary.issues.front().blocking;
    TextTable table(marked ? std::vector{left, left, left} : std::vector{left, left});
    for (const FilmIssue& issue : summary.issues) {
        std::vector<std::string> row{plainText(issue.code), plainText(issue.message)};
        if (marked)
            row.insert(row.begin(), issue.blocking ? "BLOCKING" : "");
        table.add(std::move(row));
    }
    return section("Open issues", table, summary.issues.empty());
}

std::string requestsText(const WorkspaceSummary& summary) {
    TextTable table({left, left, left});
    for (const FilmReviewRequest& request : summary.waitingRequests)
        table.add({plainText(request.shotId), plainText(request.status), plainText(request.note)});
    return section("Review requests waiting", table, summary.waitingRequests.empty());
}

std::string artifactsText(const WorkspaceSummary& summary) {
    TextTable table({left, right, right});
    table.add({"kind", "files", "size"});
    for (const auto& [kind, counted] : summary.artifactsByKind)
        table.add({plainText(kind), std::to_string(counted.files), sizeText(counted.bytes)});
    table.add({"total", std::to_string(summary.artifacts.files), sizeText(summary.artifacts.bytes)});
    return section("Artifacts", table, summary.artifactsByKind.empty());
}

JSONObject proofJSON(const FilmProof& proof, const WorkspaceSummary& summary) {
    JSONList missing;
    for (const ProofStep& step : summary.missingSteps)
        missing.add(step.key);
    return JSONObject().add("completed", proof.completedCount()).add("total", 10).add("missing", missing);
}

JSONObject shotsJSON(const FilmWorkspaceSnapshot& workspace, const WorkspaceSummary& summary) {
    const auto& plan = workspace.productionPlan;
    JSONObject byStatus;
    for (const auto& [status, count] : summary.shotsByStatus)
        byStatus.add(status, count);
    return JSONObject()
        .add("count", workspace.project.shots.size())
        .add("byStatus", byStatus)
        .add("withoutStatus", summary.shotsWithoutStatus)
        .add("planned", plan ? JSONValue(plan->shots.size()) : JSONValue(nullptr))
        .add("plannedSeconds", plan ? JSONValue(plan->plannedDurationSeconds) : JSONValue(nullptr));
}

JSONObject artifactsJSON(const WorkspaceSummary& summary) {
    JSONList byKind;
    for (const auto& [kind, counted] : summary.artifactsByKind)
        byKind.add(JSONObject().add("kind", kind).add("count", counted.files).add("bytes", counted.bytes));
    return JSONObject()
        .add("count", summary.artifacts.files)
        .add("bytes", summary.artifacts.bytes)
        .add("byKind", byKind);
}

std::string jsonText(const FilmWorkspaceSnapshot& workspace, const WorkspaceSummary& summary) {
    const FilmProject& project = workspace.project;
    JSONList approvals;
    for (const auto& [gate, approval] : project.approvals)
        approvals.add(JSONObject()
                          .add("gate", gate)
                          .add("status", approval.status)
                          .add("approvedBy", approval.approvedBy));
    JSONList issues;
    for (const FilmIssue& issue : summary.issues)
        issues.add(JSONObject()
                       .add("code", issue.code)
                       .add("message", issue.message)
                       .add("blocking", issue.blocking));
    JSONList requests;
    for (const FilmReviewRequest& request : summary.waitingRequests)
        requests.add(JSONObject()
                         .add("shotId", request.shotId)
                         .add("status", request.status)
                         .add("note", request.note)
                         .add("recordedAt", request.recordedAt));
    const JSONValue document =
        JSONObject()
            .add("title", project.title)
            .add("projectId", project.projectId)
            .add("root", workspace.root.string())
            .add("phase", project.phase)
            .add("status", project.status)
            .add("proof", proofJSON(project.proof, summary))
            .add("shots", shotsJSON(workspace, summary))
            .add("hasTreatment", workspace.treatment.has_value())
            .add("hasPlan", workspace.productionPlan.has_value())
            .add("playableCut",
                 summary.playableCut ? JSONValue(summary.playableCut->string()) : JSONValue(nullptr))
            .add("approvals", approvals)
            .add("issues", issues)
            .add("reviewRequestsWaiting", requests)
            .add("artifacts", artifactsJSON(summary));
    return document.text() + "\n";
}

std::string humanText(const FilmWorkspaceSnapshot& workspace, const WorkspaceSummary& summary) {
    return plainText(workspace.project.title) + "\n" + plainText(workspace.root.string()) + "\n\n" +
           factsText(workspace, summary) + approvalsText(workspace.project) + issuesText(summary) +
           requestsText(summary) + artifactsText(summary);
}

} // namespace

void inspect(const InspectRequest& request) {
    const FilmWorkspaceSnapshot workspace = FilmProjectLoader::load(runManifestAt(request.runManifest));
    const WorkspaceSummary summary(workspace);
    printResult(request.json ? jsonText(workspace, summary) : humanText(workspace, summary));
}

} // namespace kinovane::tool
