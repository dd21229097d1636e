// SPDX-License-Identifier: Apache-2.0

#include "commands/inspect.hpp"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/json.hpp>

#include <kinovane/workspace.hpp>

#include "film/document_faults.hpp"
#include "film/film_location.hpp"
#include "film/gates.hpp"
#include "film/next_step.hpp"
#include "film/overview.hpp"
#include "film/workspace_summary.hpp"
#include "json/json_output.hpp"
#include "session/console.hpp"
#include "session/failure.hpp"
#include "terminal/display_width.hpp"
#include "terminal/human_text.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"
#include "terminal/text_table.hpp"

namespace kinovane::tool {

namespace json = boost::json;

namespace {

using enum TextTable::Alignment;

const char* presence(bool present) { return present ? "present" : "not there yet"; }

std::string proofText(const FilmProof& proof, const WorkspaceSummary& summary) {
    std::string text = std::to_string(proof.completedCount()) + " of 10 steps";
    const char* separator = "; missing: ";
    for (const FilmProofStep& step : summary.missingSteps) {
        text += separator + std::string(proofStepName(step.key));
        separator = ", ";
    }
    return text;
}

std::string factsText(const FilmWorkspaceSnapshot& workspace, const WorkspaceSummary& summary,
                      std::size_t columns) {
    const FilmProject& project = workspace.project;
    const auto& plan = workspace.productionPlan;
    TextTable facts({left, left});
    facts.add({"Phase", fitted(shown(project.phase), columns)});
    facts.add({"Status", fitted(shown(project.status), columns)});
    facts.add({"Proof", proofText(project.proof, summary)});
    facts.add({"Shots", shotsText(workspace, summary)});
    facts.add(
        {"Running time", plan ? durationText(plan->plannedDurationSeconds) + " planned" : "not planned yet"});
    facts.add({"Treatment", presence(workspace.treatment.has_value())});
    facts.add({"Plan", presence(plan.has_value())});
    facts.addUnwrapped(
        {"Playable cut", summary.playableCut ? shownPath(summary.playableCut->string()) : "none yet"});
    return facts.text(columns);
}

/// Adds sections with a table to the text about a film.
class Sections {
  public:
    explicit Sections(std::size_t columns) : columns_(columns) {}

    void add(std::string_view title, const TextTable& table, bool empty) {
        text_ += "\n" + styled(Style::heading, title) + "\n" + (empty ? "  none\n" : table.text(columns_));
    }

    /// Adds nothing when the table is empty: for what most films do not have.
    void addIfAny(std::string_view title, const TextTable& table, bool empty) {
        if (!empty)
            add(title, table, empty);
    }

    const std::string& text() const { return text_; }

  private:
    std::size_t columns_;
    std::string text_;
};

void addApprovals(Sections& sections, const FilmProject& project) {
    TextTable table({left, left, left});
    for (const auto& [gate, approval] : gatesInOrder(project))
        table.add({shown(gate), shown(approval.status),
                   approval.approvedBy ? "by " + shown(*approval.approvedBy) : ""});
    sections.add("Approvals", table, project.approvals.empty());
}

void addQuestions(Sections& sections, const FilmProject& project) {
    TextTable table({left});
    for (const std::string& question : project.brief.openQuestions)
        table.add({shown(question)});
    sections.addIfAny("Open questions", table, project.brief.openQuestions.empty());
}

void addFaults(Sections& sections, const std::vector<PreflightFinding>& faults) {
    TextTable table({left});
    for (const PreflightFinding& fault : faults)
        table.add({styled(Style::bad, shown(fault.text))});
    sections.addIfAny("Prevents the handoff", table, faults.empty());
}

void addFailedJobs(Sections& sections, const std::vector<FilmJob>& jobs) {
    TextTable table({left, left, left});
    for (const FilmJob& job : jobs)
        table.add({shown(job.id), shown(job.shotId.value_or("")), shown(job.error.value_or("no reason"))});
    sections.addIfAny("Failed jobs", table, jobs.empty());
}

void addIssues(Sections& sections, const WorkspaceSummary& summary) {
    const bool marked = !summary.issues.empty() && summary.issues.front().blocking;
    TextTable table(marked ? std::vector{left, left, left} : std::vector{left, left});
    for (const FilmIssue& issue : summary.issues) {
        std::vector<std::string> row{shown(issue.code), shown(issue.message)};
        if (marked)
            row.insert(row.begin(), issue.blocking ? styled(Style::bad, "BLOCKING") : "");
        table.add(std::move(row));
    }
    sections.add("Open issues", table, summary.issues.empty());
}

void addRequests(Sections& sections, const WorkspaceSummary& summary) {
    TextTable table({left, left, left});
    for (const FilmReviewRequest& request : summary.waitingRequests)
        table.add({shown(request.shotId), shown(request.status), shown(request.note)});
    sections.add("Review requests waiting", table, summary.waitingRequests.empty());
}

void addArtifacts(Sections& sections, const WorkspaceSummary& summary) {
    TextTable table({left, right, right});
    table.add({"kind", "files", "size"});
    for (const auto& [kind, counted] : summary.artifactsByKind)
        table.add({shown(kind), std::to_string(counted.files), sizeText(counted.bytes)});
    table.add({"total", std::to_string(summary.artifacts.files), sizeText(summary.artifacts.bytes)});
    sections.add("Artifacts", table, summary.artifactsByKind.empty());
}

json::object artifactsJSON(const WorkspaceSummary& summary) {
    json::array byKind;
    for (const auto& [kind, counted] : summary.artifactsByKind)
        byKind.push_back({{"kind", kind}, {"count", counted.files}, {"bytes", counted.bytes}});
    return {{"count", summary.artifacts.files}, {"bytes", summary.artifacts.bytes}, {"byKind", byKind}};
}

json::object filmJSON(const FilmWorkspaceSnapshot& workspace, const WorkspaceSummary& summary) {
    const FilmProject& project = workspace.project;
    json::array approvals;
    for (const auto& [gate, approval] : gatesInOrder(project))
        approvals.push_back({{"gate", gate},
                             {"status", approval.status},
                             {"approvedBy", optionalValue(approval.approvedBy)}});
    json::array jobs;
    for (const FilmJob& job : failedJobs(project))
        jobs.push_back({{"id", job.id},
                        {"kind", optionalValue(job.kind)},
                        {"shotId", optionalValue(job.shotId)},
                        {"error", optionalValue(job.error)}});
    json::array issues;
    for (const FilmIssue& issue : summary.issues)
        issues.push_back({{"code", issue.code}, {"message", issue.message}, {"blocking", issue.blocking}});
    json::array faults;
    for (const PreflightFinding& fault : documentFaults(workspace))
        faults.emplace_back(fault.text);
    json::array requests;
    for (const FilmReviewRequest& request : summary.waitingRequests)
        requests.push_back({{"shotId", request.shotId},
                            {"status", request.status},
                            {"note", request.note},
                            {"recordedAt", request.recordedAt}});
    const std::vector<std::string>& questions = project.brief.openQuestions;
    const auto& cut = summary.playableCut;
    return {{"film", workspace.root.string()},
            {"title", project.title},
            {"projectId", project.projectId},
            {"phase", project.phase},
            {"status", project.status},
            {"proof", proofJSON(project.proof, summary)},
            {"shots", shotsJSON(workspace, summary)},
            {"hasTreatment", workspace.treatment.has_value()},
            {"hasPlan", workspace.productionPlan.has_value()},
            {"playableCut", cut ? json::value(cut->string()) : nullptr},
            {"approvals", approvals},
            {"openQuestions", json::array(questions.begin(), questions.end())},
            {"preventsHandoff", faults},
            {"failedJobs", jobs},
            {"issues", issues},
            {"reviewRequestsWaiting", requests},
            {"artifacts", artifactsJSON(summary)}};
}

std::string humanText(const FilmWorkspaceSnapshot& workspace, const WorkspaceSummary& summary,
                      std::size_t columns) {
    Sections sections(columns);
    addApprovals(sections, workspace.project);
    addQuestions(sections, workspace.project);
    addFaults(sections, documentFaults(workspace));
    addIssues(sections, summary);
    addFailedJobs(sections, failedJobs(workspace.project));
    addRequests(sections, summary);
    addArtifacts(sections, summary);
    return titleLine(workspace.project.title, columns) + shownPath(workspace.root.string()) + "\n\n" +
           factsText(workspace, summary, columns) + sections.text();
}

} // namespace

ExitStatus inspect(const InspectRequest& request, const Session& session) {
    const Console& console = session.console;
    const bool isJSON = console.options().json;
    const bool isSingle = request.films.size() == 1;
    ExitStatus status = ExitStatus::success;
    json::array films;
    const char* separator = "";
    for (const std::filesystem::path& film : request.films) {
        std::optional<FilmWorkspaceSnapshot> workspace;
        try {
            workspace = loadFilm(film);
        } catch (const CommandError& error) {
            if (isSingle)
                throw;
            const ExitStatus failure = reportCurrentException(console);
            status = status == ExitStatus::success ? failure : status;
            films.push_back({{"film", film.string()}, {"error", error.what()}});
            continue;
        }
        const WorkspaceSummary summary(*workspace);
        if (status == ExitStatus::success && !documentFaults(*workspace).empty())
            status = ExitStatus::handoff;
        if (isJSON)
            films.emplace_back(filmJSON(*workspace, summary));
        else
            console.result(separator + humanText(*workspace, summary, console.columns()));
        separator = "\n";
    }
    if (isJSON)
        console.result(json::value(json::object{{"version", 1}, {"films", films}}));
    return status;
}

} // namespace kinovane::tool
