// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/film_project.hpp>
#include <kinovane/production_plan.hpp>
#include <kinovane/workspace.hpp>

/// What is different between two snapshots of one workspace, such as before and after a command of the film
/// tool.
namespace kinovane {

/// A record that appeared (`before` is absent), went (`after` is absent), or has another content.
template <class Record>
struct FilmRecordChange {
    std::string id; ///< What the two records have in common; see the list that holds the change.
    std::optional<Record> before; ///< Absent if the record is new.
    std::optional<Record> after;  ///< Absent if the record is gone.

    bool operator==(const FilmRecordChange&) const = default;
};

/// A text that changed.
struct KINOVANE_EXPORT FilmTextChange {
    std::string before; ///< In the first snapshot.
    std::string after;  ///< In the second snapshot.

    bool operator==(const FilmTextChange&) const = default;
};

/// The differences between two snapshots. Every list is ordered: first the records that went or changed, in
/// their order before; then those that appeared, in their order after. Records with the same id are compared
/// in the order in which they occur: the first with the first, and so on. An independent value.
struct KINOVANE_EXPORT FilmChanges {
    std::optional<FilmTextChange> phase = {};                            ///< FilmProject::phase
    std::optional<FilmTextChange> status = {};                           ///< FilmProject::status
    std::vector<FilmRecordChange<FilmApproval>> approvals = {};          ///< By gate name.
    std::vector<FilmRecordChange<FilmShotState>> shots = {};             ///< By the shot's id.
    std::vector<FilmRecordChange<FilmProductionShot>> plannedShots = {}; ///< By the shot's id.
    std::vector<FilmRecordChange<FilmArtifact>> artifacts = {};          ///< By the artifact's path.
    std::vector<FilmRecordChange<FilmIssue>> issues = {};                ///< By the issue's code.
    std::vector<FilmRecordChange<bool>> proofSteps = {};                 ///< By key; both states are present.

    /// Whether nothing that is compared is different.
    bool empty() const noexcept;

    bool operator==(const FilmChanges&) const = default;
};

/// Compares two snapshots. Does not touch the disk; the time taken is proportional to the number of records.
KINOVANE_EXPORT FilmChanges changes(const FilmWorkspaceSnapshot& before, const FilmWorkspaceSnapshot& after);

} // namespace kinovane
