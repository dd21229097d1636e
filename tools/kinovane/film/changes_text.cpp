// SPDX-License-Identifier: Apache-2.0

#include "film/changes_text.hpp"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include <kinovane/json.hpp>

#include "film/workspace_summary.hpp"
#include "json/json_output.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"
#include "terminal/text_table.hpp"

namespace kinovane::tool {

namespace json = boost::json;

namespace {

constexpr const char* arrow = " → ";

void append(std::string& list, const std::string& item) { list += (list.empty() ? "" : ", ") + item; }

std::string changeText(const std::string& before, const std::string& after) {
    return before == after ? after : before + arrow + after;
}

std::string approvalText(const FilmRecordChange<FilmApproval>& change) {
    const std::string gate = shown(change.id) + ": ";
    if (!change.after)
        return gate + "removed";
    const FilmApproval& after = *change.after;
    std::string text =
        gate + changeText(shown(change.before ? change.before->status : after.status), shown(after.status));
    if (after.approvedBy && (!change.before || after.approvedBy != change.before->approvedBy))
        text += ", by " + shown(*after.approvedBy);
    return text;
}

std::string stateText(const std::optional<FilmShotState>& state) {
    if (!state)
        return "none";
    std::string text = state->status ? shown(*state->status) : "no status";
    if (state->take)
        text += ", take " + std::to_string(*state->take);
    return text;
}

/// Shots with the same change share a line: a film may have hundreds.
void addShots(TextTable& table, const std::vector<FilmRecordChange<FilmShotState>>& shots) {
    std::vector<std::pair<std::string, std::string>> lines; // The change, and the shots.
    for (const FilmRecordChange<FilmShotState>& shot : shots) {
        const std::string before = stateText(shot.before);
        const std::string after = stateText(shot.after);
        const std::string change = shot.before && shot.after ? changeText(before, after)
                                   : shot.after              ? "new, " + after
                                                             : "removed";
        const auto line =
            std::find_if(lines.begin(), lines.end(), [&](const auto& each) { return each.first == change; });
        if (line == lines.end())
            lines.emplace_back(change, shown(shot.id));
        else
            append(line->second, shown(shot.id));
    }
    for (auto& [change, ids] : lines)
        table.add({"Shots", ids.append(": ").append(change)});
}

/// The plan repeats the state of a shot, which `addShots` tells.
bool isPlannedAnew(const FilmRecordChange<FilmProductionShot>& shot) {
    if (!shot.before || !shot.after)
        return true;
    FilmProductionShot before = *shot.before;
    before.status = shot.after->status;
    before.take = shot.after->take;
    before.selectedCandidate = shot.after->selectedCandidate;
    before.selectedSeed = shot.after->selectedSeed;
    return before != *shot.after;
}

void addPlan(TextTable& table, const std::vector<FilmRecordChange<FilmProductionShot>>& shots) {
    std::string ids;
    for (const FilmRecordChange<FilmProductionShot>& shot : shots)
        if (isPlannedAnew(shot))
            append(ids, shown(shot.id));
    if (!ids.empty())
        table.add({"Plan", "different for " + ids});
}

/// "7 new: poster, 6×shot-clip". A count and its kind are one word, so that no line break separates them.
std::string filesText(const std::map<std::string, std::uint64_t>& byKind, const char* what) {
    std::uint64_t count = 0;
    std::string kinds;
    for (const auto& [kind, files] : byKind) {
        count += files;
        append(kinds, (files > 1 ? std::to_string(files) + "×" : "") + shown(kind));
    }
    return std::to_string(count) + " " + what + ": " + kinds;
}

void addFiles(TextTable& table, const std::vector<FilmRecordChange<FilmArtifact>>& artifacts) {
    std::map<std::string, std::uint64_t> added;
    std::map<std::string, std::uint64_t> changed;
    std::map<std::string, std::uint64_t> removed;
    for (const FilmRecordChange<FilmArtifact>& artifact : artifacts) {
        auto& counts = !artifact.before ? added : !artifact.after ? removed : changed;
        if (const std::optional<FilmArtifact>& record = artifact.after ? artifact.after : artifact.before)
            ++counts[record->kind];
    }
    for (const auto& [counts, what] :
         {std::pair{&added, "new"}, {&changed, "changed"}, {&removed, "removed"}})
        if (!counts->empty())
            table.add({"Files", filesText(*counts, what)});
}

void addIssues(TextTable& table, const std::vector<FilmRecordChange<FilmIssue>>& issues) {
    for (const FilmRecordChange<FilmIssue>& issue : issues)
        if (!issue.after)
            table.add({"Issue", "solved: " + (issue.before ? shown(issue.before->message) : "")});
        else
            table.add({"Issue", (issue.after->blocking ? styled(Style::bad, "BLOCKING") + " " : "") +
                                    shown(issue.after->message)});
}

void addProof(TextTable& table, const std::vector<FilmRecordChange<bool>>& steps) {
    std::string complete;
    std::string missing;
    for (const FilmRecordChange<bool>& step : steps)
        append(step.after.value_or(false) ? complete : missing, std::string(proofStepName(step.id)));
    if (!complete.empty())
        table.add({"Proof", "complete: " + complete});
    if (!missing.empty())
        table.add({"Proof", "to be done again: " + missing});
}

json::value valueOf(const std::optional<FilmTextChange>& change) {
    if (!change)
        return nullptr;
    return json::object{{"before", change->before}, {"after", change->after}};
}

json::value valueOf(bool value) { return value; }

template <class Record>
json::value valueOf(const Record& record) {
    return parsedJSON(encodeJSON(record));
}

template <class Record>
json::array listJSON(const std::vector<FilmRecordChange<Record>>& changes) {
    json::array list;
    for (const FilmRecordChange<Record>& change : changes)
        list.push_back({{"id", change.id},
                        {"before", change.before ? valueOf(*change.before) : nullptr},
                        {"after", change.after ? valueOf(*change.after) : nullptr}});
    return list;
}

} // namespace

std::string changesText(const FilmChanges& changes, std::size_t columns) {
    using enum TextTable::Alignment;
    if (changes.empty())
        return "Nothing changed.\n";
    TextTable table({left, left});
    if (changes.phase)
        table.add({"Phase", changeText(shown(changes.phase->before), shown(changes.phase->after))});
    if (changes.status)
        table.add({"Status", changeText(shown(changes.status->before), shown(changes.status->after))});
    for (const FilmRecordChange<FilmApproval>& approval : changes.approvals)
        table.add({"Approval", approvalText(approval)});
    addShots(table, changes.shots);
    addPlan(table, changes.plannedShots);
    addFiles(table, changes.artifacts);
    addIssues(table, changes.issues);
    addProof(table, changes.proofSteps);
    return table.text(columns);
}

json::object changesJSON(const FilmChanges& changes) {
    return {{"phase", valueOf(changes.phase)},
            {"status", valueOf(changes.status)},
            {"approvals", listJSON(changes.approvals)},
            {"shots", listJSON(changes.shots)},
            {"plannedShots", listJSON(changes.plannedShots)},
            {"artifacts", listJSON(changes.artifacts)},
            {"issues", listJSON(changes.issues)},
            {"proofSteps", listJSON(changes.proofSteps)}};
}

} // namespace kinovane::tool
