// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/film_project.hpp>
#include <kinovane/workspace.hpp>

/// What is known about a publish before a file is touched: everything in a workspace's documents that
/// prevents a handoff, or that a film maker should know before it is made.
namespace kinovane {

/// What was found. The order is the order of the findings.
enum class PreflightCode {
    // Blocking: `build` or `write` cannot succeed.
    productionPlanMissing, ///< The workspace has no production plan.
    pathRecordedTwice,     ///< Two exported artifacts have one path; `build` would end the process.
    durationOutOfRange,    ///< A duration beyond 64 bits of milliseconds; `build` would end the process.
    timelineOutOfRange,    ///< The shots together are longer than that; `build` would end the process.
    unsafePath,            ///< An artifact's path is absolute, climbs, names the root, or holds a NUL byte.
    malformedDigest,       ///< A recorded digest is not "sha256:" and 64 lowercase hexadecimal digits.
    notEncodable,          ///< Text that is not UTF-8, or a number that is not finite.

    // Warnings: the handoff can be made, but the film may not be ready.
    gateNotApproved,     ///< An approval gate whose status is not "approved".
    blockingIssue,       ///< An open issue that the project marks as blocking.
    proofStepIncomplete, ///< One of the ten production steps is not complete.
    planOfOtherProject,  ///< The production plan has another project's id.
    shotIdRepeated,      ///< Several planned shots have one id, and so share key frame and clip.
    keyframeMissing,     ///< No exported artifact has the path of a shot's key frame.
    clipMissing,         ///< No exported artifact has the path of a shot's clip.
    negativeDuration,    ///< A shot or the film has a duration below zero.
};

/// Whether a finding prevents the handoff.
enum class PreflightSeverity { blocking, warning };

/// One finding. An independent value.
struct KINOVANE_EXPORT PreflightFinding {
    PreflightCode code = PreflightCode::productionPlanMissing; ///< What was found.
    PreflightSeverity severity = PreflightSeverity::blocking;  ///< Whether it prevents the handoff.
    std::optional<FilmArtifact> artifact;                      ///< The artifact concerned, where one is.
    std::optional<std::string> shotId;                         ///< The planned shot concerned, where one is.
    std::string text; ///< For the user. May hold text of the documents, unchanged.

    bool operator==(const PreflightFinding&) const = default;
};

/// Whether any of the findings is blocking.
KINOVANE_EXPORT bool hasBlockingFinding(const std::vector<PreflightFinding>& findings) noexcept;

namespace VistrelHandoffBuilder {

/// Everything that is known without touching a file. The findings are ordered by code, and within one code by
/// the order of the documents. Without a blocking finding `build` ends with a handoff or an exception, and
/// what is left to fail is what only the files can tell.
///
/// `projectRoot` is the text that will be passed to `build`; its encoding is checked too. Does not block;
/// safe to call from several threads at once.
KINOVANE_EXPORT std::vector<PreflightFinding> preflight(const FilmWorkspaceSnapshot& snapshot,
                                                        const std::string& projectRoot = {});

} // namespace VistrelHandoffBuilder
} // namespace kinovane
