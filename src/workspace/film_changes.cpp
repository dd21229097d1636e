// SPDX-License-Identifier: Apache-2.0

#include <cstddef>
#include <map>
#include <span>
#include <string_view>
#include <unordered_map>

#include <kinovane/film_changes.hpp>

namespace kinovane {

namespace {

/// Records of one id, as positions in a list, in their order.
struct Positions {
    std::vector<std::size_t> all;
    std::size_t used = 0;
};

/// The differences between two lists of records; `idOf` gives a view of the id that a record has.
template <class Record, class IdOf>
std::vector<FilmRecordChange<Record>> changesOf(std::span<const Record> before, std::span<const Record> after,
                                                IdOf idOf) {
    std::unordered_map<std::string_view, Positions> afterById;
    for (std::size_t position = 0; position < after.size(); ++position)
        afterById[idOf(after[position])].all.push_back(position);

    std::vector<FilmRecordChange<Record>> result;
    std::vector<bool> existed(after.size(), false);
    for (const Record& record : before) {
        const auto found = afterById.find(idOf(record));
        if (found == afterById.end() || found->second.used == found->second.all.size()) {
            result.push_back({std::string(idOf(record)), record, std::nullopt});
            continue;
        }
        const std::size_t position = found->second.all[found->second.used++];
        existed[position] = true;
        if (!(after[position] == record))
            result.push_back({std::string(idOf(record)), record, after[position]});
    }
    for (std::size_t position = 0; position < after.size(); ++position)
        if (!existed[position])
            result.push_back({std::string(idOf(after[position])), std::nullopt, after[position]});
    return result;
}

std::vector<FilmRecordChange<FilmApproval>> changesOf(const std::map<std::string, FilmApproval>& before,
                                                      const std::map<std::string, FilmApproval>& after) {
    std::vector<FilmRecordChange<FilmApproval>> result;
    for (const auto& [gate, approval] : before) {
        const auto found = after.find(gate);
        if (found == after.end())
            result.push_back({gate, approval, std::nullopt});
        else if (!(found->second == approval))
            result.push_back({gate, approval, found->second});
    }
    for (const auto& [gate, approval] : after)
        if (!before.contains(gate))
            result.push_back({gate, std::nullopt, approval});
    return result;
}

std::optional<FilmTextChange> changeOf(const std::string& before, const std::string& after) {
    if (before == after)
        return std::nullopt;
    return FilmTextChange{before, after};
}

std::vector<FilmRecordChange<bool>> changesOf(const FilmProof& before, const FilmProof& after) {
    std::vector<FilmRecordChange<bool>> result;
    const auto stepsBefore = before.steps();
    const auto stepsAfter = after.steps();
    for (std::size_t index = 0; index < stepsBefore.size(); ++index)
        if (stepsBefore[index].complete != stepsAfter[index].complete)
            result.push_back({std::string(stepsBefore[index].key), stepsBefore[index].complete,
                              stepsAfter[index].complete});
    return result;
}

std::span<const FilmProductionShot> plannedShotsOf(const FilmWorkspaceSnapshot& snapshot) {
    if (!snapshot.productionPlan)
        return {};
    return snapshot.productionPlan->shots;
}

} // namespace

bool FilmChanges::empty() const noexcept {
    return !phase && !status && approvals.empty() && shots.empty() && plannedShots.empty() &&
           artifacts.empty() && issues.empty() && proofSteps.empty();
}

FilmChanges changes(const FilmWorkspaceSnapshot& before, const FilmWorkspaceSnapshot& after) {
    const FilmProject& from = before.project;
    const FilmProject& to = after.project;
    const auto idOfShot = [](const auto& shot) { return std::string_view(shot.id); };
    return {
        .phase = changeOf(from.phase, to.phase),
        .status = changeOf(from.status, to.status),
        .approvals = changesOf(from.approvals, to.approvals),
        .shots = changesOf<FilmShotState>(from.shots, to.shots, idOfShot),
        .plannedShots =
            changesOf<FilmProductionShot>(plannedShotsOf(before), plannedShotsOf(after), idOfShot),
        .artifacts = changesOf<FilmArtifact>(
            from.artifacts, to.artifacts,
            [](const FilmArtifact& artifact) { return std::string_view(artifact.path); }),
        .issues = changesOf<FilmIssue>(from.issues, to.issues,
                                       [](const FilmIssue& issue) { return std::string_view(issue.code); }),
        .proofSteps = changesOf(from.proof, to.proof),
    };
}

} // namespace kinovane
